// The common areas: a module may fetch every one of them, as often as it likes.
#include <gtest/gtest.h>

#include "host/attach/CommonAreas.h"

namespace {

TEST(CommonAreas, CanAllBeFetchedAndStayTheSame) {
  using Fetch = void* (*)();
  const Fetch areas[] = {
      pvGetCmaDic, pvGetCmaGlb, pvGetCmaMch, pvGetCmaObv, pvGetCmaSym, pvGetCmaSys, pvGetCmnDic,
      pvGetCmnDmo, pvGetCmnGlb, pvGetCmnInc, pvGetCmnIo,  pvGetCmnLoc, pvGetCmnMch, pvGetCmnMcs,
      pvGetCmnObv, pvGetCmnStk, pvGetCmnSym, pvGetCmnSys, pvGetCmnWrk, pvGetCmnDtm, pvGetCmnBox};
  EXPECT_EQ(std::size(areas) + 1, 22U);
  for (const Fetch area : areas) {
    EXPECT_EQ(area(), area());
  }
  int module = 0;
  EXPECT_EQ(pvGetCmnBpr(&module, 1, nullptr), pvGetCmnBpr(&module, 1, nullptr));
}

}  // namespace
