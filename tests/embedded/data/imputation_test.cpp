// The numbers of imputations are checked while the cases are read.
#include <regex>
#include <sstream>

#include "Support.h"
#include "embedded/data/DictionaryBuilder.h"
#include "embedded/data/ImputationMessages.h"
#include "embedded/data/ImputationSource.h"

namespace embedded::data {
namespace {

class Imputations : public DataTest {
 protected:
  // Opens the data with `imp` as their imputation number.
  OpenedData open(const std::string& csv, CaseMode mode = CaseMode::Auto,
                  std::vector<std::string> splits = {}) const {
    DataOptions options = optionsFor(write("data.csv", csv), mode);
    options.imputation = "imp";
    options.splits = std::move(splits);
    return openData(options);
  }

  // The identifier of what is wrong with the data; empty when nothing is. In every way of delivery
  // it is the same.
  std::string problemOf(const std::string& csv, const std::vector<std::string>& splits = {}) const {
    std::string problems[2];
    const CaseMode modes[] = {CaseMode::CaseByCase, CaseMode::Patterns};
    for (int i = 0; i < 2; ++i) {
      try {
        OpenedData opened = open(csv, modes[i], splits);
        ImputationSource source(std::move(opened.cases), opened.dictionary);
        source.use({});
        const auto stream = source.open();
        CaseBlock block;
        while (stream->next(block)) {
        }
      } catch (const Error& error) {
        problems[i] = error.identifier();
      }
    }
    EXPECT_EQ(problems[0], problems[1]);
    return problems[0];
  }
};

TEST_F(Imputations, AreTheOutermostSplitVariableUnderANameOfTheirOwn) {
  const OpenedData opened = open("g,imp\na,0\nb,1\n", CaseMode::Auto, {"g"});
  const Dictionary& dictionary = opened.dictionary;
  ASSERT_EQ(dictionary.splits, (std::vector<int>{1, 0}));
  const Variable& number = dictionary.variables[1];
  EXPECT_EQ(number.GetName(), "IMPUTATION_");
  EXPECT_EQ(number.GetUpperName(), "IMPUTATION_");
  EXPECT_TRUE(isImputationNumber(number));
  EXPECT_EQ(number.info->name, "imputation");
  EXPECT_EQ(dictionary.find("imp"), 1);
  EXPECT_FALSE(isImputationNumber(dictionary.variables[0]));
}

TEST_F(Imputations, AreAcceptedWhenTheyFollowTheOriginal) {
  EXPECT_EQ(problemOf("imp,v\n0,1\n0,1\n1,0\n2,1\n"), "");
  EXPECT_EQ(problemOf("imp,v\n0,1\n7,0\n30,1\n"), "");
  EXPECT_EQ(problemOf("imp,g\n0,a\n0,b\n1,a\n1,b\n2,b\n2,a\n", {"g"}), "");
  EXPECT_EQ(problemOf("imp,g\n-0.0,a\n1.0,a\n2.0,a\n", {"g"}), "");
}

TEST_F(Imputations, MayLackAGroupOfTheOriginalAltogether) {
  EXPECT_EQ(problemOf("imp,g\n0,a\n0,\n1,a\n2,a\n", {"g"}), "");
}

TEST_F(Imputations, HaveNumbersOfCases) {
  EXPECT_EQ(problemOf("imp\nx\ny\n"), messages::imputationString.id);
  EXPECT_EQ(problemOf("imp,v\n0,1\n,1\n1,0\n2,1\n"), messages::imputationMissing.id);
  EXPECT_EQ(problemOf("imp\n0\n-1\n1\n2\n"), messages::imputationInvalid.id);
  EXPECT_EQ(problemOf("imp\n0\n0.4\n1\n2\n"), messages::imputationInvalid.id);
  EXPECT_EQ(problemOf("imp\n0\n1\n2\n3000000000\n"), messages::imputationInvalid.id);
}

TEST_F(Imputations, NeedAnOriginalAndAtLeastTwoOfThem) {
  EXPECT_EQ(problemOf("imp\n1\n2\n"), messages::imputationNoOriginal.id);
  EXPECT_EQ(problemOf("imp\n0\n0\n"), messages::imputationTooFew.id);
  EXPECT_EQ(problemOf("imp\n0\n1\n"), messages::imputationTooFew.id);
}

TEST_F(Imputations, HaveTheSplitGroupsOfTheOriginal) {
  EXPECT_EQ(problemOf("imp,g\n0,a\n1,a\n2,a\n2,b\n", {"g"}), messages::imputationOtherSplit.id);
  EXPECT_EQ(problemOf("imp,g\n0,a\n1,b\n2,a\n", {"g"}), messages::imputationOtherSplit.id);
  EXPECT_EQ(problemOf("imp,g\n0,a\n0,b\n1,a\n1,b\n2,a\n", {"g"}),
            messages::imputationLacksSplit.id);
}

TEST_F(Imputations, OfWhichASplitGroupIsWrongAreNamedByAllOfItsValues) {
  OpenedData opened = open("imp,g,h\n0,a,1\n1,a,1\n2,a,1\n2,b,3\n", CaseMode::Auto, {"g", "h"});
  ImputationSource source(std::move(opened.cases), opened.dictionary);
  source.use({});
  const Failure failure = failureOf([&] {
    const auto stream = source.open();
    for (CaseBlock block; stream->next(block);) continue;
  });
  EXPECT_EQ(failure.id, messages::imputationOtherSplit.id);
  EXPECT_EQ(failure.arguments, (std::vector<std::string>{"imp", "2", "g = b, h = 3"}));
}

// A number that is user-missing is no number of an imputation.
TEST_F(Imputations, HaveNoUserMissingNumber) {
  write("data.schema.json",
        R"({"fields": [{"name": "imp", "type": "integer", "missingValues": ["9"]}]})");
  EXPECT_EQ(problemOf("imp\n0\n1\n2\n9\n"), messages::imputationMissing.id);
}

TEST_F(Imputations, StandAmongTheSplitsOnce) {
  EXPECT_EQ(problemOf("imp,g\n0,a\n", {"imp"}), messages::splitTwice.id);
  EXPECT_EQ(problemOf("imp,Imputation_\n0,0\n", {"Imputation_"}), messages::imputationSplit.id);
  EXPECT_EQ(problemOf("imp,Imputation_\n0,a\n1,a\n2,a\n", {"Imputation_"}), "")
      << "a string is none";
  write("data.schema.json", R"({"fields": [], "proportions:split": ["imp"]})");
  DataOptions options = optionsFor(write("data.csv", "imp,g\n0,a\n"));
  options.imputation = "imp";
  EXPECT_EQ(openData(options).dictionary.splits.size(), 1U);
}

}  // namespace
}  // namespace embedded::data
