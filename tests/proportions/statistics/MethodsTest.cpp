// The tables of methods: what the grammar, the rows and the documents take from them.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "statistics/Methods.h"

namespace {

using namespace statistics;
using testing::ElementsAre;

std::vector<std::string> defaultsOf(Design design, MethodKind kind) {
  std::vector<std::string> keywords;
  for (const MethodInfo& method : methodsOf(design, kind))
    if (method.isDefault) keywords.emplace_back(method.keyword);
  return keywords;
}

std::vector<std::string> labelsOf(Design design, MethodKind kind) {
  std::vector<std::string> labels;
  for (const MethodInfo& method : methodsOf(design, kind)) labels.emplace_back(method.label);
  return labels;
}

TEST(Methods, AreTwentyOneIntervalsAndSeventeenTests) {
  std::size_t intervals = 0;
  std::size_t tests = 0;
  for (const Design design : designs) {
    intervals += methodsOf(design, MethodKind::Interval).size();
    tests += methodsOf(design, MethodKind::Test).size();
  }
  EXPECT_EQ(intervals, 21U);
  EXPECT_EQ(tests, 17U);
}

TEST(Methods, HaveTheirDefaults) {
  EXPECT_THAT(defaultsOf(Design::OneSample, MethodKind::Interval),
              ElementsAre("AGRESTI_COULL", "JEFFREYS", "WILSON_SCORE"));
  EXPECT_THAT(defaultsOf(Design::OneSample, MethodKind::Test), ElementsAre("MIDP", "SCORE"));
  EXPECT_THAT(defaultsOf(Design::Paired, MethodKind::Interval),
              ElementsAre("BONETT_PRICE", "NEWCOMBE"));
  EXPECT_THAT(defaultsOf(Design::Paired, MethodKind::Test), ElementsAre("MIDP", "MCNEMAR"));
  EXPECT_THAT(defaultsOf(Design::Independent, MethodKind::Interval),
              ElementsAre("AGRESTI_CAFFO", "NEWCOMBE"));
  EXPECT_THAT(defaultsOf(Design::Independent, MethodKind::Test), ElementsAre("WALDH0"));
}

TEST(Methods, AreLabelledAsTheirRows) {
  EXPECT_THAT(labelsOf(Design::OneSample, MethodKind::Interval),
              ElementsAre("Agresti-Coull", "Anscombe", "Clopper-Pearson Exact ...", "Jeffreys",
                          "Logit", "Wald", "Wald (Continuity Corrected)", "Wilson Score",
                          "Wilson Score (Continuity Corrected)"));
  EXPECT_THAT(labelsOf(Design::OneSample, MethodKind::Test),
              ElementsAre("Exact Binomial", "Mid-p Adjusted Binomial", "Score",
                          "Score (Continuity Corrected)", "Wald", "Wald (Continuity Corrected)"));
  EXPECT_THAT(labelsOf(Design::Paired, MethodKind::Interval),
              ElementsAre("Agresti-Min", "Bonett-Price", "Newcombe", "Wald",
                          "Wald (Continuity Corrected)"));
  EXPECT_THAT(labelsOf(Design::Paired, MethodKind::Test),
              ElementsAre("Exact Binomial", "Mid-p Adjusted Binomial", "McNemar",
                          "McNemar (Continuity Corrected)", "Wald", "Wald (Continuity Corrected)"));
  EXPECT_THAT(
      labelsOf(Design::Independent, MethodKind::Interval),
      ElementsAre("Agresti-Caffo", "Brown-Li-Jeffreys", "Hauck-Anderson", "Newcombe",
                  "Newcombe (Continuity Corrected)", "Wald", "Wald (Continuity Corrected)"));
  EXPECT_THAT(labelsOf(Design::Independent, MethodKind::Test),
              ElementsAre("Hauck-Anderson", "Wald", "Wald (Continuity Corrected)", "Wald H0",
                          "Wald H0 (Continuity Corrected)"));
}

TEST(Methods, ShowAStatisticUnlessTheyAreBinomialTests) {
  for (const Design design : designs)
    for (const MethodInfo& method : methodsOf(design, MethodKind::Test))
      EXPECT_EQ(method.showsStatistic, method.keyword != "EXACT" && method.keyword != "MIDP");
}

TEST(Methods, AreTheSameInTheViewAndInTheTables) {
  const auto view = methodsOf(Design::Paired, MethodKind::Test);
  ASSERT_EQ(view.size(), pairedTests.size());
  for (std::size_t slot = 0; slot < view.size(); ++slot) {
    EXPECT_EQ(view[slot].keyword, pairedTests[slot].keyword);
    EXPECT_EQ(view[slot].formula, pairedTests[slot].formula);
  }
}

TEST(Methods, ExplainThemselvesInOneLine) {
  for (const Design design : designs)
    for (const MethodKind kind : methodKinds)
      for (const MethodInfo& method : methodsOf(design, kind))
        for (const auto& text : {method.formula, method.variant, method.canFail, method.source})
          EXPECT_EQ(text.find('\n'), std::string_view::npos) << method.keyword;
}

TEST(Methods, NameTheirDesigns) {
  EXPECT_EQ(nameOf(Design::OneSample), "one sample");
  EXPECT_EQ(nameOf(Design::Paired), "paired samples");
  EXPECT_EQ(nameOf(Design::Independent), "independent samples");
  EXPECT_EQ(nameOf(MethodKind::Interval), "interval");
  EXPECT_EQ(nameOf(MethodKind::Test), "test");
}

TEST(Methods, AreNoneForAnUnknownDesign) {
  constexpr auto unknown = static_cast<Design>(99);
  EXPECT_TRUE(methodsOf(unknown, MethodKind::Interval).empty());
  EXPECT_EQ(nameOf(unknown), "");
}

}  // namespace
