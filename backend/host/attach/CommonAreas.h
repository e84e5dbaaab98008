// The host's shared common areas.
//
// A module fetches each of them once, in this order, when it is attached, and keeps the
// pointers. What they point to is the host's, lives as long as the process, and may be null in a
// host that has no use for it.
#pragma once

#include "host/Api.h"

extern "C" {

// The first one receives the three arguments of the attach notification.
HOST_API void* pvGetCmnBpr(void* module, unsigned reason, void* reserved);
HOST_API void* pvGetCmaDic();
HOST_API void* pvGetCmaGlb();
HOST_API void* pvGetCmaMch();
HOST_API void* pvGetCmaObv();
HOST_API void* pvGetCmaSym();
HOST_API void* pvGetCmaSys();
HOST_API void* pvGetCmnDic();
HOST_API void* pvGetCmnDmo();
HOST_API void* pvGetCmnGlb();
HOST_API void* pvGetCmnInc();
HOST_API void* pvGetCmnIo();
HOST_API void* pvGetCmnLoc();
HOST_API void* pvGetCmnMch();
HOST_API void* pvGetCmnMcs();
HOST_API void* pvGetCmnObv();
HOST_API void* pvGetCmnStk();
HOST_API void* pvGetCmnSym();
HOST_API void* pvGetCmnSys();
HOST_API void* pvGetCmnWrk();
HOST_API void* pvGetCmnDtm();
HOST_API void* pvGetCmnBox();

}  // extern "C"
