// The common areas: each accessor writes its name down and hands out an address of its own.
#include "host/attach/CommonAreas.h"

#include <array>

#include "scripted_host/attach/CommonAreas.h"

namespace {

std::array<char, scripted::areaNames.size()> areas;

void* area(std::size_t number) {
  scripted::fetchedAreas().push_back(scripted::areaNames.at(number));
  return &areas.at(number);
}

}  // namespace

std::vector<std::string_view>& scripted::fetchedAreas() {
  static std::vector<std::string_view> fetched;
  return fetched;
}

scripted::AttachArguments& scripted::attachArguments() {
  static AttachArguments arguments;
  return arguments;
}

void* scripted::areaAddress(std::size_t number) {
  return &areas.at(number);
}

void* pvGetCmnBpr(void* module, unsigned reason, void* reserved) {
  scripted::attachArguments() = {module, reason, reserved};
  return area(0);
}

void* pvGetCmaDic() {
  return area(1);
}
void* pvGetCmaGlb() {
  return area(2);
}
void* pvGetCmaMch() {
  return area(3);
}
void* pvGetCmaObv() {
  return area(4);
}
void* pvGetCmaSym() {
  return area(5);
}
void* pvGetCmaSys() {
  return area(6);
}
void* pvGetCmnDic() {
  return area(7);
}
void* pvGetCmnDmo() {
  return area(8);
}
void* pvGetCmnGlb() {
  return area(9);
}
void* pvGetCmnInc() {
  return area(10);
}
void* pvGetCmnIo() {
  return area(11);
}
void* pvGetCmnLoc() {
  return area(12);
}
void* pvGetCmnMch() {
  return area(13);
}
void* pvGetCmnMcs() {
  return area(14);
}
void* pvGetCmnObv() {
  return area(15);
}
void* pvGetCmnStk() {
  return area(16);
}
void* pvGetCmnSym() {
  return area(17);
}
void* pvGetCmnSys() {
  return area(18);
}
void* pvGetCmnWrk() {
  return area(19);
}
void* pvGetCmnDtm() {
  return area(20);
}
void* pvGetCmnBox() {
  return area(21);
}
