// Everything that the host itself says about a command: a closed list of identifiers. The
// catalogue holds their sentences.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/command/Spot.h"
#include "embedded/output/Document.h"

namespace embedded::command {

struct CommandMessage {
  std::string_view id;  // ^1, ^2, ... are the arguments in their order
};

namespace messages {
inline constexpr CommandMessage badCharacter{"Command bad character ^1 ..."};
inline constexpr CommandMessage badEncoding{"Command bad encoding ..."};
inline constexpr CommandMessage openString{"Command open string ..."};
inline constexpr CommandMessage badNumber{"Command bad number ^1 ..."};
inline constexpr CommandMessage afterEnd{"Command text after end ..."};
inline constexpr CommandMessage noCommand{"Command missing ^1 ..."};
inline constexpr CommandMessage unknownCommand{"Command unknown ^1 ^2 ..."};
inline constexpr CommandMessage slashWanted{"Command slash wanted ^1 ..."};
inline constexpr CommandMessage nothingAfterSlash{"Command nothing after slash ..."};
inline constexpr CommandMessage unknownSubcommand{"Subcommand unknown ^1 ..."};
inline constexpr CommandMessage ambiguousName{"Name ambiguous ^1 [%1:, ^1:]2 ..."};
inline constexpr CommandMessage subcommandTwice{"Subcommand twice ^1 ..."};
inline constexpr CommandMessage listWanted{"Subcommand list wanted ^1 ..."};
inline constexpr CommandMessage listRefused{"Subcommand list refused ^1 ^2 ..."};
inline constexpr CommandMessage unknownParameter{"Parameter unknown ^1 ^2 ..."};
inline constexpr CommandMessage parameterTwice{"Parameter twice ^1 ^2 ..."};
inline constexpr CommandMessage valueWanted{"Parameter value wanted ^1 ..."};
inline constexpr CommandMessage oneValueWanted{"Parameter one value ^1 ^2 ..."};
inline constexpr CommandMessage keywordWanted{"Parameter keyword wanted ^1 ^2 ..."};
inline constexpr CommandMessage unknownKeyword{"Keyword unknown ^1 ^2 ..."};
inline constexpr CommandMessage numberWanted{"Parameter number wanted ^1 ^2 ..."};
inline constexpr CommandMessage numberTooLow{"Number too low ^1 ^2 ^3 ..."};
inline constexpr CommandMessage numberNotAbove{"Number not above ^1 ^2 ^3 ..."};
inline constexpr CommandMessage numberTooHigh{"Number too high ^1 ^2 ^3 ..."};
inline constexpr CommandMessage numberNotBelow{"Number not below ^1 ^2 ^3 ..."};
inline constexpr CommandMessage bareKeyword{"Keyword takes no values ^1 ..."};
inline constexpr CommandMessage openParenthesis{"Parenthesis open ..."};
inline constexpr CommandMessage notInParentheses{"Parenthesis content ^1 ..."};
inline constexpr CommandMessage emptyParentheses{"Parenthesis empty ..."};
inline constexpr CommandMessage badRange{"Range incomplete ..."};
inline constexpr CommandMessage subcommandMissing{"Subcommand missing ^1 ..."};
// Not an error by itself.
inline constexpr CommandMessage furtherMistakes{"Command further mistakes ..."};
// Of validators.
inline constexpr CommandMessage reservedWord{"Variable name reserved ^1 ..."};
inline constexpr CommandMessage unknownVariable{"Variable unknown ^1 ..."};
inline constexpr CommandMessage notAVariable{"Variable expected ^1 ..."};
inline constexpr CommandMessage backwardRange{"Range backward ^1 ^2 ..."};
inline constexpr CommandMessage emptyList{"Variable list empty ^1 ..."};
inline constexpr CommandMessage repeatedVariable{"Variable repeated ^1 ^2 ..."};
inline constexpr CommandMessage commonVariable{"Variable in common ^1 ^2 ^3 ..."};
inline constexpr CommandMessage oneVariable{"Variable one wanted ^1 ..."};
inline constexpr CommandMessage invalidValue{"Value invalid ^1 ^2 ..."};
inline constexpr CommandMessage qualifierRefused{"Qualifier refused ^1 ..."};

inline constexpr std::array all{
    badCharacter,      badEncoding,     openString,       badNumber,         afterEnd,
    noCommand,         unknownCommand,  slashWanted,      nothingAfterSlash, unknownSubcommand,
    ambiguousName,     subcommandTwice, listWanted,       listRefused,       unknownParameter,
    parameterTwice,    valueWanted,     oneValueWanted,   keywordWanted,     unknownKeyword,
    numberWanted,      numberTooLow,    numberNotAbove,   numberTooHigh,     numberNotBelow,
    bareKeyword,       openParenthesis, notInParentheses, badRange,          emptyParentheses,
    subcommandMissing, furtherMistakes, reservedWord,     unknownVariable,   notAVariable,
    backwardRange,     emptyList,       repeatedVariable, commonVariable,    oneVariable,
    invalidValue,      qualifierRefused};
}  // namespace messages

// The message at a place of the session's command. Arguments too long to be read are cut short.
output::Message messageOf(const CommandMessage& message, const std::vector<std::string>& arguments,
                          const Spot& where, std::string nearest = {});
// Adds it to the session's document, as an error.
void report(const CommandMessage& message, const std::vector<std::string>& arguments,
            const Spot& where, std::string nearest = {});
// The text as it can stand in a message.
std::string shortened(std::string_view text);

}  // namespace embedded::command
