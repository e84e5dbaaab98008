// What the scripted host's common areas saw of an attach.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace scripted {

// In the order that a module fetches them.
inline constexpr std::array<std::string_view, 22> areaNames = {
    "pvGetCmnBpr", "pvGetCmaDic", "pvGetCmaGlb", "pvGetCmaMch", "pvGetCmaObv", "pvGetCmaSym",
    "pvGetCmaSys", "pvGetCmnDic", "pvGetCmnDmo", "pvGetCmnGlb", "pvGetCmnInc", "pvGetCmnIo",
    "pvGetCmnLoc", "pvGetCmnMch", "pvGetCmnMcs", "pvGetCmnObv", "pvGetCmnStk", "pvGetCmnSym",
    "pvGetCmnSys", "pvGetCmnWrk", "pvGetCmnDtm", "pvGetCmnBox"};

struct AttachArguments {
  void* module = nullptr;
  unsigned reason = 0;
  void* reserved = nullptr;
};

// Names of the accessors that were called, in order, over the whole process.
std::vector<std::string_view>& fetchedAreas();
// What the first accessor was last given.
AttachArguments& attachArguments();
// The address that an accessor hands out.
void* areaAddress(std::size_t number);

}  // namespace scripted
