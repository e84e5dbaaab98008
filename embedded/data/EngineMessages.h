// What can be wrong with a server and its answers: identifiers, as in DataMessages.h.
#pragma once

#include "DataMessages.h"

namespace embedded::data::messages {

inline constexpr DataMessage badServerAddress{"Engine bad address ^1 ..."};
inline constexpr DataMessage passwordInAddress{"Engine password in address ^1 ^2 ..."};
inline constexpr DataMessage noEngineLibrary{"Engine library missing ^1 ^2 ..."};
inline constexpr DataMessage noConnection{"Engine no connection ^1 ^2 ..."};
inline constexpr DataMessage wrongPassword{"Engine password refused ^1 ^2 ^3 ..."};
inline constexpr DataMessage noServerTable{"Engine no such table ^1 ^2 ..."};
inline constexpr DataMessage serverSilent{"Engine server silent ^1 ^2 ..."};
inline constexpr DataMessage answerBroke{"Engine answer broke off ^1 ..."};
inline constexpr DataMessage textEncoding{"Engine bad encoding ^1 ^2 ..."};
inline constexpr DataMessage tooManyToOrder{"Engine too many to order ^1 ^2 ^3 ..."};

inline constexpr DataMessage notTrusted{"Engine certificate refused ^1 ^2 ..."};
inline constexpr DataMessage memoryTooSmall{"Engine memory too small ^1 ^2 ..."};
inline constexpr DataMessage noRoomToSpill{"Engine no room to spill ^1 ^2 ^3 ..."};

inline constexpr std::array ofEngines{
    badServerAddress, passwordInAddress, noEngineLibrary, noConnection, wrongPassword,
    noServerTable,    serverSilent,      answerBroke,     textEncoding, tooManyToOrder,
    notTrusted,       memoryTooSmall,    noRoomToSpill};

}  // namespace embedded::data::messages
