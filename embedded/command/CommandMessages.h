// Everything that the host itself says about a command: a closed list of identifiers, each with
// its English sentence. The catalogue holds the same sentences; tests check identifiers alone.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/command/Spot.h"
#include "embedded/output/Document.h"

namespace embedded::command {

struct CommandMessage {
  std::string_view id;
  std::string_view english;  // ^1, ^2, ... are the arguments in their order
};

namespace messages {
inline constexpr CommandMessage badCharacter{"Command bad character ^1 ...",
                                             "The character ^1 has no meaning here."};
inline constexpr CommandMessage badEncoding{"Command bad encoding ...",
                                            "The command is not valid UTF-8 here."};
inline constexpr CommandMessage openString{"Command open string ...",
                                           "The quoted text that begins here has no end."};
inline constexpr CommandMessage badNumber{"Command bad number ^1 ...",
                                          "^1 is not a number that can be held."};
inline constexpr CommandMessage afterEnd{
    "Command text after end ...", "Nothing but blanks and comments may follow the semicolon."};
inline constexpr CommandMessage noCommand{"Command missing ^1 ...",
                                          "A command begins with its name, ^1."};
inline constexpr CommandMessage unknownCommand{"Command unknown ^1 ^2 ...",
                                               "There is no command ^1; the command here is ^2."};
inline constexpr CommandMessage slashWanted{
    "Command slash wanted ^1 ...",
    "A subcommand begins with a slash and its name; ^1 cannot stand here."};
inline constexpr CommandMessage nothingAfterSlash{"Command nothing after slash ...",
                                                  "The command ends after a slash; write the name "
                                                  "of a subcommand there, or leave the slash out."};
inline constexpr CommandMessage unknownSubcommand{
    "Subcommand unknown ^1 ...",
    "There is no subcommand ^1. Use one of the subcommands of the command."};
inline constexpr CommandMessage ambiguousName{
    "Name ambiguous ^1 [%1:, ^1:]2 ...",
    "^1 could stand for several names: [%1:, ^1:]2. Write more letters of it."};
inline constexpr CommandMessage subcommandTwice{"Subcommand twice ^1 ...",
                                                "The subcommand ^1 may stand only once."};
inline constexpr CommandMessage listWanted{
    "Subcommand list wanted ^1 ...",
    "The subcommand ^1 begins with a list of variables, which is missing."};
inline constexpr CommandMessage listRefused{
    "Subcommand list refused ^1 ^2 ...",
    "^2 cannot stand here: after the subcommand ^1 come parameters, written NAME=value."};
inline constexpr CommandMessage unknownParameter{"Parameter unknown ^1 ^2 ...",
                                                 "The subcommand ^2 has no parameter ^1."};
inline constexpr CommandMessage parameterTwice{"Parameter twice ^1 ^2 ...",
                                               "The parameter ^1 of ^2 may stand only once."};
inline constexpr CommandMessage valueWanted{"Parameter value wanted ^1 ...",
                                            "^1 wants a value, which is missing."};
inline constexpr CommandMessage oneValueWanted{"Parameter one value ^1 ^2 ...",
                                               "^1 takes one value; ^2 is too much."};
inline constexpr CommandMessage keywordWanted{"Parameter keyword wanted ^1 ^2 ...",
                                              "^1 takes keywords; ^2 is none."};
inline constexpr CommandMessage unknownKeyword{"Keyword unknown ^1 ^2 ...",
                                               "^1 is not a keyword that ^2 takes."};
inline constexpr CommandMessage numberWanted{"Parameter number wanted ^1 ^2 ...",
                                             "^1 takes a number; ^2 is none."};
inline constexpr CommandMessage numberTooLow{"Number too low ^1 ^2 ^3 ...",
                                             "The number ^2 of ^1 must be ^3 or more."};
inline constexpr CommandMessage numberNotAbove{"Number not above ^1 ^2 ^3 ...",
                                               "The number ^2 of ^1 must be more than ^3."};
inline constexpr CommandMessage numberTooHigh{"Number too high ^1 ^2 ^3 ...",
                                              "The number ^2 of ^1 must be ^3 or less."};
inline constexpr CommandMessage numberNotBelow{"Number not below ^1 ^2 ^3 ...",
                                               "The number ^2 of ^1 must be less than ^3."};
inline constexpr CommandMessage bareKeyword{"Keyword takes no values ^1 ...",
                                            "^1 takes no values in parentheses."};
inline constexpr CommandMessage openParenthesis{"Parenthesis open ...",
                                                "The parenthesis that begins here has no end."};
inline constexpr CommandMessage notInParentheses{"Parenthesis content ^1 ...",
                                                 "^1 cannot stand between parentheses."};
inline constexpr CommandMessage emptyParentheses{"Parenthesis empty ...",
                                                 "There is nothing between these parentheses."};
inline constexpr CommandMessage badRange{
    "Range incomplete ...", "A range is written with the names of two variables: first..last."};
inline constexpr CommandMessage subcommandMissing{"Subcommand missing ^1 ...",
                                                  "The subcommand ^1 is missing."};
// Not an error by itself.
inline constexpr CommandMessage furtherMistakes{
    "Command further mistakes ...",
    "There are more mistakes in the command; only the first ones are told."};
// Of validators.
inline constexpr CommandMessage reservedWord{
    "Variable name reserved ^1 ...",
    "The word ^1 is reserved and cannot stand here; a variable of that name is written in quotes."};
inline constexpr CommandMessage unknownVariable{"Variable unknown ^1 ...",
                                                "There is no variable ^1 in the data."};
inline constexpr CommandMessage notAVariable{
    "Variable expected ^1 ...",
    "^1 is not a variable; a name that is no plain word stands in quotes."};
inline constexpr CommandMessage backwardRange{
    "Range backward ^1 ^2 ...",
    "The range ^1..^2 runs backward: in the data, ^2 stands before ^1."};
inline constexpr CommandMessage emptyList{
    "Variable list empty ^1 ...", "The list of variables of ^1 stands for no variable at all."};
inline constexpr CommandMessage repeatedVariable{"Variable repeated ^1 ^2 ...",
                                                 "The variable ^1 is named more than once for ^2."};
inline constexpr CommandMessage commonVariable{
    "Variable in common ^1 ^2 ^3 ...",
    "The variable ^1 stands both in ^2 and as ^3; it can be only one of them."};
inline constexpr CommandMessage oneVariable{
    "Variable one wanted ^1 ...",
    "^1 stands for several variables or for none; one variable must stand here."};
inline constexpr CommandMessage invalidValue{"Value invalid ^1 ^2 ...",
                                             "^1 is not a valid value of ^2."};
inline constexpr CommandMessage qualifierRefused{"Qualifier refused ^1 ...",
                                                 "(^1) cannot stand here."};

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
