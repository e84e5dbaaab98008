// The words of the command: names of subcommands, parameters and qualifiers.
//
// Names of methods do not stand here; they come from the tables of methods.
#pragma once

#include <string_view>

namespace prp {

inline constexpr std::string_view Command = "PROPORTIONS";
inline constexpr std::string_view Title = "Proportions";

inline constexpr std::string_view OneSample = "ONESAMPLE";
inline constexpr std::string_view PairedSamples = "PAIREDSAMPLES";
inline constexpr std::string_view IndependentSamples = "INDEPENDENTSAMPLES";
inline constexpr std::string_view Success = "SUCCESS";
inline constexpr std::string_view Missing = "MISSING";
inline constexpr std::string_view Criteria = "CRITERIA";

// No subcommands: what the validators of these variables are named after.
inline constexpr std::string_view SplitFile = "SPLIT FILE";
inline constexpr std::string_view Weight = "WEIGHT";

inline constexpr std::string_view TestVal = "TESTVAL";
inline constexpr std::string_view TestTypes = "TESTTYPES";
inline constexpr std::string_view CITypes = "CITYPES";
inline constexpr std::string_view Select = "SELECT";
inline constexpr std::string_view Value = "VALUE";
inline constexpr std::string_view Scope = "SCOPE";
inline constexpr std::string_view UserMissing = "USERMISSING";
inline constexpr std::string_view CILevel = "CILEVEL";

// Reserved in lists of variables, and the qualifier of a list after WITH.
inline constexpr std::string_view With = "WITH";
inline constexpr std::string_view By = "BY";
inline constexpr std::string_view Paired = "PAIRED";

inline constexpr std::string_view All = "ALL";
inline constexpr std::string_view None = "NONE";
inline constexpr std::string_view First = "FIRST";
inline constexpr std::string_view Last = "LAST";
inline constexpr std::string_view MidPoint = "MIDPOINT";
inline constexpr std::string_view CutPoint = "CUTPOINT";
inline constexpr std::string_view Level = "LEVEL";
inline constexpr std::string_view Analysis = "ANALYSIS";
inline constexpr std::string_view ListWise = "LISTWISE";
inline constexpr std::string_view Exclude = "EXCLUDE";
inline constexpr std::string_view Include = "INCLUDE";

}  // namespace prp
