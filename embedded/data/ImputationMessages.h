// What can be wrong with the numbers of imputations: identifiers with their English sentences, as
// in DataMessages.h.
#pragma once

#include "DataMessages.h"

namespace embedded::data::messages {

inline constexpr DataMessage imputationString{"Imputation number is a string ^1 ...",
                                              "The imputation number ^1 is a string variable; "
                                              "imputations are numbered 1, 2, ... in a numeric "
                                              "one, where 0 stands for the original data."};
inline constexpr DataMessage imputationSplit{
    "Imputation number among splits ^1 ...",
    "With --imputation, a numeric split variable cannot be named ^1: it would be taken for the "
    "imputation number."};
inline constexpr DataMessage imputationMissing{"Imputation number missing ^1 ...",
                                               "There are cases without an imputation number: "
                                               "every case needs one in ^1, 0 where it belongs to "
                                               "the original data."};
inline constexpr DataMessage imputationInvalid{
    "Imputation number invalid ^1 ^2 ...",
    "^2 in ^1 is no imputation number; imputations are numbered 1, 2, ..., and 0 stands for the "
    "original data."};
inline constexpr DataMessage imputationNoOriginal{
    "Imputation without original ^1 ...",
    "No case has the imputation number 0 in ^1; it stands for the original data, which are "
    "needed."};
inline constexpr DataMessage imputationTooFew{"Imputation too few ^1 ^2 ...",
                                              "The number of imputations in ^1, besides the "
                                              "original data, is ^2; pooling needs at least two."};
inline constexpr DataMessage imputationOtherSplit{
    "Imputation other splits ^1 ^2 ^3 ...",
    "Imputation ^2 of ^1 has the split group ^3, which the original data do not have; the split "
    "groups "
    "must be those of the original data."};
inline constexpr DataMessage imputationLacksSplit{"Imputation lacks split ^1 ^2 ^3 ...",
                                                  "The split group ^2 is in some imputations of ^1 "
                                                  "only, ^3 in number; it must be in all of them."};

inline constexpr std::array ofImputations{
    imputationString,     imputationSplit,  imputationMissing,    imputationInvalid,
    imputationNoOriginal, imputationTooFew, imputationOtherSplit, imputationLacksSplit};

}  // namespace embedded::data::messages
