// The diagnostic dumps and the probe through the program, and that nothing of them is there
// otherwise.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "Program.h"

namespace cli_tests {
namespace {

using Words = std::vector<std::string>;

const std::string plain = "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE";
const std::string banner =
    "****************************************************\n"
    "* This text output is for debugging purposes only. *\n"
    "* This will not be part of the final release.      *\n"
    "****************************************************\n";

class Diagnostics : public testing::Test {
 protected:
  Diagnostics() {
    folder_.write("data.csv", "v,k,w\n1,a,1\n0,a,2\n1,b,0\n1,c,1\n,c,3\n");
    folder_.write("data.schema.json", "{\"fields\": []}");
  }

  Outcome start(const Words& options, const std::string& command = plain) const {
    Call call{.arguments = {"run", "data.csv", "-c", command, "--format", "csv", "--quiet"},
              .folder = folder_.path(),
              .input = {}};
    call.arguments.insert(call.arguments.end(), options.begin(), options.end());
    return run(call);
  }

  // The lines of the dumps.
  Words dumped(const Words& options, const std::string& command = plain) const {
    Words with{"--diagnostics", "algorithm", "--diagnostics-file", "dump.txt"};
    with.insert(with.end(), options.begin(), options.end());
    const Outcome outcome = start(with, command);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    return linesOf(contentOf(folder_.path() / "dump.txt"));
  }

  static Words linesOf(const std::string& text) {
    Words lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
      lines.push_back(line);
    }
    return lines;
  }

  // What stands behind a label, dump for dump.
  static Words behind(const Words& lines, const std::string& label) {
    Words found;
    for (const std::string& line : lines) {
      if (line.rfind(label + ": ", 0) == 0) {
        found.push_back(line.substr(label.size() + 2));
      }
    }
    return found;
  }

  static long count(const Words& lines, const std::string& line) {
    return std::count(lines.begin(), lines.end(), line);
  }

  Folder folder_;
};

TEST_F(Diagnostics, AreNotThereUnlessAskedFor) {
  for (const Words& options : {Words{}, Words{"--split", "k"}, Words{"--bootstrap", "5"}}) {
    const Outcome outcome = start(options);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out.rfind("table,split,", 0), 0U);
    EXPECT_EQ((outcome.out + outcome.err).find("display start"), std::string::npos);
    EXPECT_EQ((outcome.out + outcome.err).find("FindNCParamT"), std::string::npos);
  }
}

TEST_F(Diagnostics, GoToStandardErrorAndLeaveTheResultsAlone) {
  const Outcome with = start({"--diagnostics", "specs,algorithm"});
  EXPECT_EQ(with.status, 0);
  EXPECT_EQ(with.out, start({}).out);
  EXPECT_EQ(with.err.rfind(banner + "PRPValidSpecs display start\n", 0), 0U) << with.err;
  EXPECT_NE(with.err.find("PRPValidSpecs display end\n" + banner + "PRPAlgorithm display start\n"),
            std::string::npos);
}

TEST_F(Diagnostics, AreWrittenSwitchBySwitch) {
  const std::string specs = start({"--diagnostics", "specs"}).err;
  EXPECT_NE(specs.find("PRPValidSpecs display end"), std::string::npos);
  EXPECT_EQ(specs.find("PRPAlgorithm"), std::string::npos);
  const std::string algorithm = start({"--diagnostics", "algorithm"}).err;
  EXPECT_EQ(algorithm.find("PRPValidSpecs"), std::string::npos);
  EXPECT_NE(algorithm.find("PRPAlgorithm display end"), std::string::npos);
}

TEST_F(Diagnostics, SayWhatIsNotDefined) {
  const Words lines = dumped({});
  EXPECT_EQ(count(lines, "Weight variable is not defined"), 1);
  EXPECT_EQ(count(lines, "User Split Indices are not defined"), 1);
  EXPECT_TRUE(behind(lines, "Weight variable index").empty());
}

TEST_F(Diagnostics, ShowTheWeightAndTheUsersSplitsOfABootstrap) {
  const Words lines = dumped({"--weight", "w", "--split", "k", "--bootstrap", "1"});
  EXPECT_EQ(count(lines, "Weight variable is not defined"), 0);
  EXPECT_EQ(count(lines, "User Split Indices are not defined"), 0);
  EXPECT_EQ(behind(lines, "User Split Indices").front(), "[1]");
  EXPECT_EQ(behind(lines, "Pooling Variable Index").front(), "3");
  // a, b, c of the data; a and c of the sample.
  EXPECT_EQ(behind(lines, "Pooling Sample Index"), (Words{"0", "0", "0", "1", "1"}));
  EXPECT_EQ(behind(lines, "Bootstrapping flag"), Words(5, "true"));
  EXPECT_EQ(behind(lines, "Multiple Imputation flag"), Words(5, "false"));
}

TEST_F(Diagnostics, FindNoPoolingVariableForARuleThatAsksNothingOfTheData) {
  const Words lines = dumped({"--bootstrap", "1"}, plain + " /SUCCESS VALUE=LEVEL(1)");
  EXPECT_EQ(behind(lines, "Need aggregation flag"), Words(2, "false"));
  EXPECT_EQ(behind(lines, "Pooling Variable Index"), Words(2, "-1"));
}

TEST_F(Diagnostics, ShowTheExtremesOfTheDataInEverySample) {
  const Words lines = dumped({"--bootstrap", "20"});
  EXPECT_EQ(behind(lines, "Minimum numeric value"), Words(21, "0"));
  EXPECT_EQ(behind(lines, "Maximum numeric value"), Words(21, "1"));
}

// The second pass reads a group without valid cases once more, and nobody sets its counts back.
TEST_F(Diagnostics, CountASkippedGroupTwice) {
  const Words lines = dumped({"--weight", "w", "--split", "k"});
  EXPECT_EQ(behind(lines, "Number of all cases"), (Words{"2", "2", "2"}));
  EXPECT_EQ(behind(lines, "Number of invalid cases"), (Words{"0", "2", "0"}));
  EXPECT_EQ(behind(lines, "Weighted number of all cases"), (Words{"3", "0", "4"}));
  EXPECT_EQ(behind(lines, "Good Data indicator").size(), 6U);
}

TEST_F(Diagnostics, CountCasesAsTheyAreAlsoWherePatternsWouldPay) {
  std::string data = "v\n";
  for (int i = 0; i < 1000; ++i) {
    data += i % 3 == 0 ? "1\n" : "0\n";
  }
  folder_.write("data.csv", data);
  EXPECT_EQ(behind(dumped({}), "Number of all cases"), (Words{"1000"}));
}

TEST_F(Diagnostics, RefuseAnUnknownDump) {
  const Outcome outcome = start({"--diagnostics", "everything"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_TRUE(outcome.out.empty());
  EXPECT_NE(outcome.err.find("everything"), std::string::npos) << outcome.err;
}

TEST_F(Diagnostics, RefuseToGoOnWithoutTheDiagnosticModule) {
  const std::filesystem::path lib = std::filesystem::path(BUILD_ROOT) / "lib";
  std::filesystem::copy_file(lib / "proportions.module.json",
                             folder_.path() / "proportions.module.json");
  std::filesystem::copy_file(lib / "libproportions.so", folder_.path() / "libproportions.so");
  Call call{.arguments = {"--module", "proportions.module.json", "run", "data.csv", "-c", plain,
                          "--diagnostics", "specs"},
            .folder = folder_.path(),
            .input = {}};
  const Outcome outcome = run(call);
  EXPECT_EQ(outcome.status, 2);
  EXPECT_TRUE(outcome.out.empty());
  EXPECT_NE(outcome.err.find("libproportions-diagnostic.so"), std::string::npos) << outcome.err;
}

// --- The probe ----------------------------------------------------------------------------------

TEST_F(Diagnostics, ProbeOnlyWhenTheResultsGoElsewhere) {
  const Outcome outcome = start({"--diagnostics", "probe"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_TRUE(outcome.out.empty()) << outcome.out;
  EXPECT_NE(outcome.err.find("-o"), std::string::npos) << outcome.err;
}

// P(T <= a) for 5 degrees of freedom and this non-centrality: the mean of Phi(a s - d) over
// s = sqrt(chi-square / 5), by Simpson's rule.
double nonCentralT(double a, double d) {
  const auto phi = [](double z) { return 0.5 * std::erfc(-z / std::sqrt(2.0)); };
  const double scale = 2.0 * std::pow(2.5, 2.5) / std::tgamma(2.5);
  const auto integrand = [&](double s) {
    return scale * std::pow(s, 4) * std::exp(-2.5 * s * s) * phi(a * s - d);
  };
  constexpr int steps = 4000;
  const double h = 6.0 / steps;
  double sum = 0.0;
  for (int i = 0; i <= steps; ++i) {
    sum += integrand(i * h) * (i == 0 || i == steps ? 1.0 : i % 2 == 1 ? 4.0 : 2.0);
  }
  return sum * h / 3.0;
}

TEST_F(Diagnostics, ProbePrintsTheNonCentralityOfFourteenPairsAGroup) {
  const Outcome outcome =
      start({"--diagnostics", "probe", "-o", "results.csv", "--split", "k", "--weight", "w"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const Words lines = linesOf(outcome.out);
  // Groups a and c; b has no valid case.
  ASSERT_EQ(lines.size(), 28U) << outcome.out;
  std::size_t at = 0;
  for (int group = 0; group < 2; ++group) {
    for (const int a : {2, 1, 0, -1, -2, -3, -4}) {
      for (const double q : {0.975, 0.025}) {
        double got[5] = {};
        ASSERT_EQ(std::sscanf(lines[at].c_str(), "FindNCParamT( %lf, %lf, %lf, %lf ) = %lf",
                              &got[0], &got[1], &got[2], &got[3], &got[4]),
                  5)
            << lines[at];
        EXPECT_EQ(got[0], a);
        EXPECT_EQ(got[1], 5.0);
        EXPECT_EQ(got[2], q);
        EXPECT_EQ(got[3], 0.000001);
        // Six printed decimals, and a density of at most 0.4.
        EXPECT_NEAR(nonCentralT(a, got[4]), q, 0.4 * 0.5e-6 + 1e-9) << lines[at];
        ++at;
      }
    }
  }
}

}  // namespace
}  // namespace cli_tests
