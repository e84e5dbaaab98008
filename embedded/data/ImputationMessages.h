// What can be wrong with the numbers of imputations: identifiers, as in DataMessages.h.
#pragma once

#include "DataMessages.h"

namespace embedded::data::messages {

inline constexpr DataMessage imputationString{"Imputation number is a string ^1 ..."};
inline constexpr DataMessage imputationSplit{"Imputation number among splits ^1 ..."};
inline constexpr DataMessage imputationMissing{"Imputation number missing ^1 ..."};
inline constexpr DataMessage imputationInvalid{"Imputation number invalid ^1 ^2 ..."};
inline constexpr DataMessage imputationNoOriginal{"Imputation without original ^1 ..."};
inline constexpr DataMessage imputationTooFew{"Imputation too few ^1 ^2 ..."};
inline constexpr DataMessage imputationOtherSplit{"Imputation other splits ^1 ^2 ^3 ..."};
inline constexpr DataMessage imputationLacksSplit{"Imputation lacks split ^1 ^2 ^3 ..."};

inline constexpr std::array ofImputations{
    imputationString,     imputationSplit,  imputationMissing,    imputationInvalid,
    imputationNoOriginal, imputationTooFew, imputationOtherSplit, imputationLacksSplit};

}  // namespace embedded::data::messages
