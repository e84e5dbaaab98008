// Everything that can be wrong with data: a closed list of identifiers. The catalogue holds their
// sentences.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/errors/Error.h"

namespace embedded::data {

struct DataMessage {
  std::string_view id;  // ^1, ^2, ... are the arguments in their order
};

// One line each; `all` lists them.
namespace messages {
inline constexpr DataMessage noSuchFile{"Data no such file ^1 ..."};
inline constexpr DataMessage notAFile{"Data not a file ^1 ..."};
inline constexpr DataMessage unknownKind{"Data unknown kind of file ^1 ..."};
inline constexpr DataMessage refusedUrl{"Data refused address ^1 ..."};
inline constexpr DataMessage emptyFile{"Data empty file ^1 ..."};
inline constexpr DataMessage mixedFiles{"Data files of several kinds ^1 ..."};
inline constexpr DataMessage otherHeader{"Data files with other columns ^1 ^2 ..."};
inline constexpr DataMessage unreadable{"Data cannot be read ^1 ^2 ..."};
inline constexpr DataMessage noTable{"Data no such table ^1 ^2 ^3 ..."};
inline constexpr DataMessage tableWanted{"Data table name wanted ^1 ^2 ..."};
inline constexpr DataMessage badHeader{"Data bad header ^1 ^2 ..."};
inline constexpr DataMessage duplicateColumn{"Data duplicate column ^1 ^2 ..."};
inline constexpr DataMessage raggedRow{"Data ragged row ^1 ^2 ^3 ^4 ..."};
inline constexpr DataMessage badQuotes{"Data bad quotes ^1 ^2 ^3 ..."};
inline constexpr DataMessage badEncoding{"Data bad encoding ^1 ^2 ^3 ..."};
inline constexpr DataMessage badCsv{"Data bad line ^1 ^2 ^3 ^4 ..."};
inline constexpr DataMessage badValue{"Data bad value ^1 ^2 ^3 ^4 ..."};
inline constexpr DataMessage inexactNumber{"Data inexact number ^1 ^2 ^3 ^4 ..."};
inline constexpr DataMessage longString{"Data string too long ^1 ^2 ^3 ^4 ..."};
inline constexpr DataMessage widerString{"Data string wider than declared ^1 ^2 ^3 ^4 ^5 ..."};
inline constexpr DataMessage unsupportedType{"Data unsupported type ^1 ^2 ..."};
inline constexpr DataMessage dataChanged{"Data changed ^1 ..."};
inline constexpr DataMessage heavyPattern{"Data weights too large ^1 ..."};
inline constexpr DataMessage engineFailure{"Data engine failure ^1 ^2 ..."};
inline constexpr DataMessage noTemporaryFolder{"Data no temporary folder ^1 ^2 ..."};
inline constexpr DataMessage badMemory{"Data bad memory size ^1 ..."};
// The dictionary and its sidecar.
inline constexpr DataMessage schemaUnreadable{"Schema cannot be read ^1 ^2 ..."};
inline constexpr DataMessage schemaSyntax{"Schema bad JSON ^1 ^2 ^3 ^4 ..."};
inline constexpr DataMessage schemaShape{"Schema wrong form ^1 ^2 ^3 ..."};
inline constexpr DataMessage schemaNoResource{"Schema no resource ^1 ^2 ..."};
inline constexpr DataMessage schemaUnknownField{"Schema unknown field ^1 ^2 ..."};
inline constexpr DataMessage schemaUnknownFieldNear{"Schema unknown field ^1 ^2 ^3 ..."};
inline constexpr DataMessage schemaFieldTwice{"Schema field twice ^1 ^2 ..."};
inline constexpr DataMessage schemaFieldsMatch{"Schema fields do not match ^1 ^2 ^3 ..."};
inline constexpr DataMessage schemaType{"Schema wrong type ^1 ^2 ^3 ^4 ..."};
inline constexpr DataMessage schemaValue{"Schema bad value ^1 ^2 ^3 ..."};
inline constexpr DataMessage schemaUnknownVariable{"Schema unknown variable ^1 ^2 ^3 ..."};
inline constexpr DataMessage unknownVariable{"Data unknown variable ^1 ^2 ..."};
inline constexpr DataMessage unknownVariableNear{"Data unknown variable ^1 ^2 ^3 ..."};
inline constexpr DataMessage stringWeight{"Data string weight ^1 ..."};
inline constexpr DataMessage splitTwice{"Data split twice ^1 ..."};
inline constexpr DataMessage splitReserved{"Data split reserved ^1 ..."};
// A warning, not an error.
inline constexpr DataMessage nonFinite{"Data values not finite ^1 ^2 ..."};

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
