// The attach notification, as the module records it.
#include "ModuleTest.h"
#include "host/attach/Module.h"
#include "scripted_host/attach/CommonAreas.h"

namespace module_tests {
namespace {

TEST(Attach, RecordsTheHandleAndTheCommonAreasInTheirOrder) {
  int module = 0;
  int reserved = 0;
  scripted::fetchedAreas().clear();
  EXPECT_EQ(PROPORTI_attach(&module, host::AttachReason, &reserved), 1);
  EXPECT_EQ(PRPAttached().fpModule, &module);
  EXPECT_THAT(scripted::fetchedAreas(), testing::ElementsAreArray(scripted::areaNames));
  for (std::size_t i = 0; i < PRPAttachRecord::NAreas; ++i)
    EXPECT_EQ(PRPAttached().fvpAreas[i], scripted::areaAddress(i)) << scripted::areaNames[i];
}

TEST(Attach, GivesTheFirstAccessorItsArguments) {
  int module = 0;
  int reserved = 0;
  PROPORTI_attach(&module, host::AttachReason, &reserved);
  EXPECT_EQ(scripted::attachArguments().module, &module);
  EXPECT_EQ(scripted::attachArguments().reason, host::AttachReason);
  EXPECT_EQ(scripted::attachArguments().reserved, &reserved);
}

TEST(Attach, AnswersEveryOtherReasonWithSuccessAlone) {
  int module = 0;
  PROPORTI_attach(&module, host::AttachReason, nullptr);
  scripted::fetchedAreas().clear();
  int other = 0;
  for (const unsigned reason : {0u, 2u, 3u, 99u})
    EXPECT_EQ(PROPORTI_attach(&other, reason, nullptr), 1);
  EXPECT_THAT(scripted::fetchedAreas(), testing::IsEmpty());
  EXPECT_EQ(PRPAttached().fpModule, &module);
}

}  // namespace
}  // namespace module_tests
