// The common areas: this host shares no data in them.
#include "host/attach/CommonAreas.h"

extern "C" {

void* pvGetCmnBpr(void* /*module*/, unsigned /*reason*/, void* /*reserved*/) {
  return nullptr;
}
void* pvGetCmaDic() {
  return nullptr;
}
void* pvGetCmaGlb() {
  return nullptr;
}
void* pvGetCmaMch() {
  return nullptr;
}
void* pvGetCmaObv() {
  return nullptr;
}
void* pvGetCmaSym() {
  return nullptr;
}
void* pvGetCmaSys() {
  return nullptr;
}
void* pvGetCmnDic() {
  return nullptr;
}
void* pvGetCmnDmo() {
  return nullptr;
}
void* pvGetCmnGlb() {
  return nullptr;
}
void* pvGetCmnInc() {
  return nullptr;
}
void* pvGetCmnIo() {
  return nullptr;
}
void* pvGetCmnLoc() {
  return nullptr;
}
void* pvGetCmnMch() {
  return nullptr;
}
void* pvGetCmnMcs() {
  return nullptr;
}
void* pvGetCmnObv() {
  return nullptr;
}
void* pvGetCmnStk() {
  return nullptr;
}
void* pvGetCmnSym() {
  return nullptr;
}
void* pvGetCmnSys() {
  return nullptr;
}
void* pvGetCmnWrk() {
  return nullptr;
}
void* pvGetCmnDtm() {
  return nullptr;
}
void* pvGetCmnBox() {
  return nullptr;
}

}  // extern "C"
