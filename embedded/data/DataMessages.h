// Everything that can be wrong with data: a closed list of identifiers, each with its English
// sentence. The catalogue holds the same sentences; tests check identifiers alone.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/errors/Error.h"

namespace embedded::data {

struct DataMessage {
  std::string_view id;
  std::string_view english;  // ^1, ^2, ... are the arguments in their order
};

// One line each; `all` lists them.
namespace messages {
inline constexpr DataMessage noSuchFile{"Data no such file ^1 ...", "There is no file ^1."};
inline constexpr DataMessage notAFile{"Data not a file ^1 ...", "^1 is not a regular file."};
inline constexpr DataMessage unknownKind{
    "Data unknown kind of file ^1 ...",
    "^1 is of no known kind; known are .csv, .tsv, .parquet, .json, and .duckdb with ?table=NAME."};
inline constexpr DataMessage refusedUrl{"Data refused address ^1 ...",
                                        "Addresses of this kind are not read: ^1."};
inline constexpr DataMessage emptyFile{"Data empty file ^1 ...", "The file ^1 is empty."};
inline constexpr DataMessage mixedFiles{"Data files of several kinds ^1 ...",
                                        "The pattern ^1 matches files of more than one kind."};
inline constexpr DataMessage otherHeader{"Data files with other columns ^1 ^2 ...",
                                         "The columns of ^1 differ from those of ^2; files that "
                                         "are read together have the same header."};
inline constexpr DataMessage unreadable{"Data cannot be read ^1 ^2 ...", "^1 cannot be read: ^2"};
inline constexpr DataMessage noTable{"Data no such table ^1 ^2 ^3 ...",
                                     "There is no table ^1 in ^2; it has: ^3."};
inline constexpr DataMessage tableWanted{
    "Data table name wanted ^1 ^2 ...",
    "Say which table of ^1 is meant, by ?table=NAME; it has: ^2."};
inline constexpr DataMessage badHeader{"Data bad header ^1 ^2 ...",
                                       "The first line of ^1 is not a line of column names: ^2."};
inline constexpr DataMessage duplicateColumn{
    "Data duplicate column ^1 ^2 ...",
    "^2 has more than one column named ^1; names differ by more than capital letters."};
inline constexpr DataMessage raggedRow{
    "Data ragged row ^1 ^2 ^3 ^4 ...",
    "^1, line ^2, column ^3: the row does not have as many fields as there are columns (^4)."};
inline constexpr DataMessage badQuotes{"Data bad quotes ^1 ^2 ^3 ...",
                                       "^1, line ^2, column ^3: the quotes do not match."};
inline constexpr DataMessage badEncoding{"Data bad encoding ^1 ^2 ^3 ...",
                                         "^1, line ^2, column ^3: the text is not valid UTF-8."};
inline constexpr DataMessage badCsv{"Data bad line ^1 ^2 ^3 ^4 ...", "^1, line ^2, column ^3: ^4"};
inline constexpr DataMessage badValue{
    "Data bad value ^1 ^2 ^3 ^4 ...",
    "^1, row ^2, column ^3: the value ^4 is not of the column's type; a schema can say another."};
inline constexpr DataMessage inexactNumber{
    "Data inexact number ^1 ^2 ^3 ^4 ...",
    "^1, row ^2, column ^3: the whole number ^4 is too large to be held exactly."};
inline constexpr DataMessage longString{
    "Data string too long ^1 ^2 ^3 ^4 ...",
    "^1, row ^2, column ^3: a string of ^4 bytes; no more than 32,767 can be held."};
inline constexpr DataMessage widerString{
    "Data string wider than declared ^1 ^2 ^3 ^4 ^5 ...",
    "^1, row ^2, column ^3: a string of ^4 bytes, where no more than ^5 are declared."};
inline constexpr DataMessage unsupportedType{
    "Data unsupported type ^1 ^2 ...",
    "The column ^1 cannot be analysed: its values are of type ^2."};
inline constexpr DataMessage dataChanged{"Data changed ^1 ...",
                                         "^1 changed while it was being read."};
inline constexpr DataMessage heavyPattern{
    "Data weights too large ^1 ...",
    "The weights of cases that agree in every value add up to more than 2^52 in ^1."};
inline constexpr DataMessage engineFailure{"Data engine failure ^1 ^2 ...",
                                           "Reading ^1 failed: ^2"};
inline constexpr DataMessage noTemporaryFolder{"Data no temporary folder ^1 ...",
                                               "No folder for temporary files can be made in ^1."};
inline constexpr DataMessage badMemory{"Data bad memory size ^1 ...",
                                       "^1 is no size of memory; write it like 512MB or 4GB."};
// The dictionary and its sidecar.
inline constexpr DataMessage schemaUnreadable{"Schema cannot be read ^1 ...",
                                              "The schema file ^1 cannot be read."};
inline constexpr DataMessage schemaSyntax{"Schema bad JSON ^1 ^2 ^3 ^4 ...",
                                          "^1, line ^2, column ^3: this is not valid JSON (^4)."};
inline constexpr DataMessage schemaShape{"Schema wrong form ^1 ^2 ^3 ...", "^1: ^2 should be ^3."};
inline constexpr DataMessage schemaNoResource{
    "Schema no resource ^1 ^2 ...", "The data package ^1 has no resource with a schema for ^2."};
inline constexpr DataMessage schemaUnknownField{
    "Schema unknown field ^1 ^2 ...", "^1 describes a field ^2, but the data have no such column."};
inline constexpr DataMessage schemaUnknownFieldNear{
    "Schema unknown field ^1 ^2 ^3 ...",
    "^1 describes a field ^2, but the data have no such column; the nearest is ^3."};
inline constexpr DataMessage schemaFieldTwice{"Schema field twice ^1 ^2 ...",
                                              "^1 describes the field ^2 twice."};
inline constexpr DataMessage schemaFieldsMatch{
    "Schema fields do not match ^1 ^2 ^3 ...",
    "The fields of ^1 do not match the columns of the data as fieldsMatch = ^2 asks: ^3."};
inline constexpr DataMessage schemaType{
    "Schema wrong type ^1 ^2 ^3 ^4 ...",
    "^1 gives the field ^2 the type ^3, but its values are of type ^4."};
inline constexpr DataMessage schemaValue{"Schema bad value ^1 ^2 ^3 ...",
                                         "^1: ^3 is no value that the field ^2 can have."};
inline constexpr DataMessage schemaUnknownVariable{
    "Schema unknown variable ^1 ^2 ^3 ...", "^1 names ^3 as ^2, but the data have no such column."};
inline constexpr DataMessage unknownVariable{"Data unknown variable ^1 ^2 ...",
                                             "The data have no variable ^2 for ^1."};
inline constexpr DataMessage unknownVariableNear{
    "Data unknown variable ^1 ^2 ^3 ...",
    "The data have no variable ^2 for ^1; the nearest is ^3."};
inline constexpr DataMessage stringWeight{"Data string weight ^1 ...",
                                          "The weight ^1 is a string; a weight is a number."};
inline constexpr DataMessage splitTwice{"Data split twice ^1 ...",
                                        "The split variable ^1 is named twice."};
inline constexpr DataMessage splitReserved{
    "Data split reserved ^1 ...",
    "A numeric split variable cannot be named ^1: the name numbers bootstrap samples."};
// A warning, not an error.
inline constexpr DataMessage nonFinite{
    "Data values not finite ^1 ^2 ...",
    "^1 has ^2 values that are not numbers or infinite; they count as missing."};

inline constexpr std::array all{noSuchFile,
                                notAFile,
                                unknownKind,
                                refusedUrl,
                                emptyFile,
                                mixedFiles,
                                otherHeader,
                                unreadable,
                                noTable,
                                tableWanted,
                                badHeader,
                                duplicateColumn,
                                raggedRow,
                                badQuotes,
                                badEncoding,
                                badCsv,
                                badValue,
                                inexactNumber,
                                longString,
                                widerString,
                                unsupportedType,
                                dataChanged,
                                heavyPattern,
                                engineFailure,
                                noTemporaryFolder,
                                badMemory,
                                schemaUnreadable,
                                schemaSyntax,
                                schemaShape,
                                schemaNoResource,
                                schemaUnknownField,
                                schemaUnknownFieldNear,
                                schemaFieldTwice,
                                schemaFieldsMatch,
                                schemaType,
                                schemaValue,
                                schemaUnknownVariable,
                                unknownVariable,
                                unknownVariableNear,
                                stringWeight,
                                splitTwice,
                                splitReserved,
                                nonFinite};
}  // namespace messages

// Throws an Error of kind Data with this message.
[[noreturn]] inline void fail(const DataMessage& message, std::vector<std::string> arguments = {}) {
  throw Error(ErrorKind::Data, message.id, std::move(arguments));
}

// The same with kind Usage: the program was called in a wrong way.
[[noreturn]] inline void failUsage(const DataMessage& message,
                                   std::vector<std::string> arguments = {}) {
  throw Error(ErrorKind::Usage, message.id, std::move(arguments));
}

}  // namespace embedded::data
