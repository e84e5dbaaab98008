// What can be wrong with an engine, or a server and its answers: identifiers with their English
// sentences, as in DataMessages.h.
#pragma once

#include "DataMessages.h"

namespace embedded::data::messages {

inline constexpr DataMessage badServerAddress{
    "Engine bad address ^1 ...",
    "This is no address of a table on a server; it is written ^1, with a percent sign and two "
    "hexadecimal digits for each character in a name that stands for something else there."};
inline constexpr DataMessage passwordInAddress{
    "Engine password in address ^1 ^2 ...",
    "The address ^1 holds a password. An address is seen by others: leave it out there and put it "
    "into the environment as ^2."};
inline constexpr DataMessage noEngineLibrary{"Engine library missing ^1 ^2 ...",
                                             "What reads ^1 cannot be loaded: ^2"};
inline constexpr DataMessage noConnection{"Engine no connection ^1 ^2 ...",
                                          "There is no connection to the server of ^1: ^2"};
inline constexpr DataMessage wrongPassword{
    "Engine password refused ^1 ^2 ^3 ...",
    "The server of ^1 refused the user or the password, which is taken from ^2: ^3"};
inline constexpr DataMessage noServerTable{"Engine no such table ^1 ^2 ...",
                                           "There is no such table as ^1: ^2"};
inline constexpr DataMessage serverSilent{"Engine server silent ^1 ^2 ...",
                                          "The server of ^1 did not answer for ^2 seconds."};
inline constexpr DataMessage answerBroke{
    "Engine answer broke off ^1 ...",
    "The answer of the server of ^1 broke off; nothing of it is used."};
inline constexpr DataMessage textEncoding{"Engine bad encoding ^1 ^2 ...",
                                          "^1, column ^2: a text that is not valid UTF-8."};
inline constexpr DataMessage tooManyToOrder{
    "Engine too many to order ^1 ^2 ^3 ...",
    "The column ^2 of ^1 has more than ^3 different texts; the server can put so many into split "
    "order only by code points, as strings."};

inline constexpr DataMessage notTrusted{
    "Engine certificate refused ^1 ^2 ...",
    "The server of ^1 could not prove that it is the one asked for: ^2. The certificates that are "
    "trusted are those of the system, or of the file that CURL_CA_BUNDLE or SSL_CERT_FILE names."};
inline constexpr DataMessage memoryTooSmall{
    "Engine memory too small ^1 ^2 ...",
    "Reading ^1 needs more memory than it may use: ^2. A larger --memory allows more; with fewer "
    "--threads it needs less."};
inline constexpr DataMessage noRoomToSpill{
    "Engine no room to spill ^1 ^2 ^3 ...",
    "Reading ^1 needs more room for temporary files than there is in ^2: ^3. TMPDIR names another "
    "folder for them; a larger --memory needs less of it."};

inline constexpr std::array ofEngines{
    badServerAddress, passwordInAddress, noEngineLibrary, noConnection, wrongPassword,
    noServerTable,    serverSilent,      answerBroke,     textEncoding, tooManyToOrder,
    notTrusted,       memoryTooSmall,    noRoomToSpill};

}  // namespace embedded::data::messages
