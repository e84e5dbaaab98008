// HTML reports and sentences as the program writes them.
#include <gtest/gtest.h>

#include "Program.h"

namespace cli_tests {
namespace {

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

const char* const data = "answer,place\n1,a\n0,a\n1,a\n1,b\n0,b\n,b\n";
const char* const command = "PROPORTIONS /ONESAMPLE answer CITYPES=WILSON_SCORE";

class Report : public testing::Test {
 protected:
  Report() { folder_.write("it's data.csv", data); }

  Outcome runHere(std::vector<std::string> words) const {
    words.insert(words.begin(), {"run", "it's data.csv", "-c", command});
    return run(Call{.arguments = std::move(words), .folder = folder_.path(), .input = {}});
  }

  Folder folder_;
};

TEST_F(Report, IsChosenByTheEndingOfTheFile) {
  const Outcome outcome = runHere({"-o", "out.html"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const std::string html = contentOf(folder_.path() / "out.html");
  EXPECT_TRUE(html.starts_with("<!doctype html>\n<html lang=\"en\">"));
  EXPECT_TRUE(html.ends_with("</html>\n"));
}

TEST_F(Report, ShowsTheCommandLineAsAShellWouldReadIt) {
  const Outcome outcome = runHere({"--format", "html"});
  EXPECT_TRUE(holds(outcome.out,
                    "<code>proportions run &#39;it&#39;\\&#39;&#39;s data.csv&#39; -c "
                    "&#39;PROPORTIONS /ONESAMPLE answer CITYPES=WILSON_SCORE&#39; --format "
                    "html</code>"))
      << outcome.out;
}

TEST_F(Report, CountsTheCasesOfEachSplitGroup) {
  const Outcome text = runHere({"--split", "place"});
  EXPECT_TRUE(holds(text.out, "Cases of the split groups")) << text.out;
  EXPECT_TRUE(holds(text.out, "System-missing")) << text.out;
  EXPECT_TRUE(
      holds(runHere({"--split", "place", "--format", "html"}).out, "Cases of the split groups"));
}

TEST_F(Report, AddsASentenceByEachRowWhenAsked) {
  const std::string sentence = "answer = 1: 3 of 5, Proportion = 0.600, 95% Confidence Interval";
  EXPECT_FALSE(holds(runHere({}).out, sentence));
  EXPECT_TRUE(holds(runHere({"--sentences"}).out, sentence)) << runHere({"--sentences"}).out;
  EXPECT_TRUE(holds(runHere({"--sentences", "--format", "html"}).out, sentence));
}

TEST_F(Report, HasTheDecimalMarkOfItsLanguageAndMachinesHaveAPoint) {
  EXPECT_TRUE(holds(runHere({"--format", "html", "--language", "de"}).out, "<td>0,600"));
  EXPECT_FALSE(holds(runHere({"--format", "json", "--language", "de"}).out, "0,600"));
  EXPECT_FALSE(holds(runHere({"--format", "csv", "--language", "de"}).out, "0,6"));
}

}  // namespace
}  // namespace cli_tests
