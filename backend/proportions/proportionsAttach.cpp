// The attach notification: the handle and the common areas are recorded for the whole process.
#include "host/attach/CommonAreas.h"
#include "host/attach/Module.h"
#include "proportions.h"

namespace {

using Accessor = void* (*)();

// Every area but the first, which is asked for with the arguments of the notification.
constexpr std::array<Accessor, PRPAttachRecord::NAreas - 1> accessors = {
    pvGetCmaDic, pvGetCmaGlb, pvGetCmaMch, pvGetCmaObv, pvGetCmaSym, pvGetCmaSys, pvGetCmnDic,
    pvGetCmnDmo, pvGetCmnGlb, pvGetCmnInc, pvGetCmnIo,  pvGetCmnLoc, pvGetCmnMch, pvGetCmnMcs,
    pvGetCmnObv, pvGetCmnStk, pvGetCmnSym, pvGetCmnSys, pvGetCmnWrk, pvGetCmnDtm, pvGetCmnBox};

PRPAttachRecord attachRecord;

}  // namespace

const PRPAttachRecord& PRPAttached() {
  return attachRecord;
}

int PROPORTI_attach(void* module, unsigned reason, void* reserved) {
  if (reason == host::AttachReason) {
    attachRecord.fpModule = module;
    attachRecord.fvpAreas[0] = pvGetCmnBpr(module, reason, reserved);
    for (std::size_t i = 0; i < accessors.size(); ++i)
      attachRecord.fvpAreas[i + 1] = accessors[i]();
  }
  return 1;
}
