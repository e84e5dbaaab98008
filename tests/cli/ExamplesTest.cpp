// The examples and what the README tells of them, against values computed by hand from the counts.
#include <gtest/gtest.h>

#include <cmath>

#include "Program.h"
#include "ScenarioResults.h"

namespace cli_tests {
namespace {

constexpr const char* interval = "95% Confidence Interval of the Difference / ";

std::vector<CsvCell> analyse(const std::string& file, const std::string& command,
                             const std::vector<std::string>& extra = {}) {
  std::vector<std::string> words{"run", PROJECT_ROOT "/examples/" + file, "-c", command, "--format",
                                 "csv"};
  words.insert(words.end(), extra.begin(), extra.end());
  const Outcome outcome = run(words);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return readCsv(outcome.out);
}

double valueOf(const std::vector<CsvCell>& cells, const std::string& split, const std::string& row,
               const std::string& statistic) {
  for (const CsvCell& cell : cells) {
    if (cell.split == split && cell.row == row && cell.statistic == statistic) {
      return std::stod(cell.value);
    }
  }
  ADD_FAILURE() << "no cell " << split << " / " << row << " / " << statistic;
  return 0;
}

// Men and women: admitted, applied; the difference, the pooled test, and two intervals.
struct Department {
  std::string name;
  double men, ofMen, women, ofWomen;
  double difference, z, p;
  double caffoLower, caffoUpper, newcombeLower, newcombeUpper;
};

const Department together{"",
                          1198,
                          2691,
                          557,
                          1835,
                          0.141645428246542,
                          9.60235806515919,
                          7.81360038899462e-22,
                          0.113283744126595,
                          0.1696607473381,
                          0.113213121442528,
                          0.16956951102999};

const Department departments[] = {
    {"A", 512, 825, 89, 108, -0.203468013468013, -4.15307277095472, 3.2804036171166e-05,
     -0.277171175920558, -0.11856368172482, -0.272502780420645, -0.114739917146626},
    {"B", 353, 560, 17, 25, -0.0496428571428572, -0.503707744058974, 0.614466765668777,
     -0.219010777589311, 0.145463921124305, -0.203098015474183, 0.150092025062206},
    {"C", 120, 325, 202, 593, 0.0285899597872616, 0.868066200379759, 0.385358092983073,
     -0.035873432438854, 0.0935816533418941, -0.0353762413039977, 0.0938163837109444},
    {"D", 138, 417, 131, 375, -0.0183980815347722, -0.545873242785997, 0.585153072223345,
     -0.0843525690739621, 0.0475718039580805, -0.0843016795708181, 0.0473851278707766},
    {"E", 53, 191, 94, 393, 0.0383011603586321, 1.00053417637187, 0.317052066820458,
     -0.0367875830257352, 0.115360417025866, -0.0353527612535434, 0.116443544042281},
    {"F", 22, 373, 24, 341, -0.0113999984275864, -0.619752597485972, 0.535420681308078,
     -0.0482484186921925, 0.0251424906066726, -0.0491577369849225, 0.0251524511384953}};

void expectDepartment(const std::vector<CsvCell>& cells, const Department& want) {
  const std::string split = want.name.empty() ? "" : "department=" + want.name;
  SCOPED_TRACE(split);
  EXPECT_EQ(valueOf(cells, split, "= 1", "Successes"), want.men);
  EXPECT_EQ(valueOf(cells, split, "= 1", "Trials"), want.ofMen);
  EXPECT_EQ(valueOf(cells, split, "= 2", "Successes"), want.women);
  EXPECT_EQ(valueOf(cells, split, "= 2", "Trials"), want.ofWomen);
  const auto near = [&](const char* row, const std::string& statistic, double value) {
    EXPECT_NEAR(valueOf(cells, split, row, statistic), value, 1e-12 * (1 + std::abs(value)))
        << row << " " << statistic;
  };
  near("Newcombe", "Difference in Proportions", want.difference);
  near("Newcombe", std::string(interval) + "Lower", want.newcombeLower);
  near("Newcombe", std::string(interval) + "Upper", want.newcombeUpper);
  near("Agresti-Caffo", std::string(interval) + "Lower", want.caffoLower);
  near("Agresti-Caffo", std::string(interval) + "Upper", want.caffoUpper);
  near("Wald H0", "Z", want.z);
  EXPECT_NEAR(valueOf(cells, split, "Wald H0", "Significance / Two-Sided p") / want.p, 1, 1e-11);
}

constexpr const char* menAndWomen = "PROPORTIONS /INDEPENDENTSAMPLES admitted BY gender";

TEST(Admissions, TogetherFavourMen) {
  expectDepartment(analyse("admissions.csv", menAndWomen), together);
}

// The difference that turns around: what all departments together say, none of them says.
TEST(Admissions, DepartmentByDepartmentDoNot) {
  const auto cells = analyse("admissions.csv", menAndWomen, {"--split", "department"});
  for (const Department& department : departments) {
    expectDepartment(cells, department);
  }
}

TEST(Admissions, AreTheSameByDepartmentInTablesOfTheirOwn) {
  const auto cells =
      analyse("admissions.csv", menAndWomen, {"--split", "department", "--split-layout", "tables"});
  for (const Department& department : departments) {
    expectDepartment(cells, department);
  }
}

TEST(Admissions, OfAllApplicants) {
  const auto cells = analyse("admissions.csv", "PROPORTIONS /ONESAMPLE admitted");
  EXPECT_EQ(valueOf(cells, "", "Wilson Score", "Observed / Successes"), 1755);
  EXPECT_EQ(valueOf(cells, "", "Wilson Score", "Observed / Trials"), 4526);
  EXPECT_NEAR(valueOf(cells, "", "Wilson Score", "95% Confidence Interval / Lower"),
              0.37366557109418796, 1e-13);
  EXPECT_NEAR(valueOf(cells, "", "Wilson Score", "95% Confidence Interval / Upper"),
              0.40204401847177745, 1e-13);
  EXPECT_NEAR(valueOf(cells, "", "Score", "Z"), -15.102068407087076, 1e-12);
}

TEST(Approval, FellBetweenTheSurveys) {
  const auto cells = analyse("approval.csv", "PROPORTIONS /PAIREDSAMPLES first second");
  EXPECT_NEAR(valueOf(cells, "", "Newcombe", "Difference in Proportions"), 0.04, 1e-15);
  EXPECT_NEAR(valueOf(cells, "", "Newcombe", "Asymptotic Standard Error"), 0.00954921462739214,
              1e-15);
  EXPECT_NEAR(valueOf(cells, "", "Bonett-Price", std::string(interval) + "Lower"),
              0.02117727979197512, 1e-13);
  EXPECT_NEAR(valueOf(cells, "", "Newcombe", std::string(interval) + "Upper"), 0.058703872895728836,
              1e-13);
  EXPECT_NEAR(valueOf(cells, "", "McNemar", "Z"), 4.166045151386364, 1e-13);
  EXPECT_NEAR(valueOf(cells, "", "Mid-p Adjusted Binomial", "Significance / One-Sided p") /
                  1.446694758807745e-05,
              1, 1e-12);
}

}  // namespace
}  // namespace cli_tests
