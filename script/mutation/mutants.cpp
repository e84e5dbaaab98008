// Which mutant runs, from the environment: MUTANT is its number. With MUTANT_SURVEY every test
// writes a line to that file instead: its name, its milliseconds, and the mutants that it reaches.
#include "mutants.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

namespace {

int chosenMutant() {
  const char* text = std::getenv("MUTANT");
  return text == nullptr ? -1 : std::atoi(text);
}

bool surveying() {
  static const bool value = std::getenv("MUTANT_SURVEY") != nullptr;
  return value;
}

std::set<int>& reached() {
  static std::set<int> value;
  return value;
}

class Survey : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { reached().clear(); }
  void OnTestEnd(const testing::TestInfo& test) override {
    std::ofstream file(std::getenv("MUTANT_SURVEY"), std::ios::app);
    file << test.test_suite_name() << '.' << test.name() << ' ' << test.result()->elapsed_time();
    for (const int mutant : reached()) file << ' ' << mutant;
    file << '\n';
  }
};

[[maybe_unused]] const bool listening = [] {
  if (surveying()) testing::UnitTest::GetInstance()->listeners().Append(new Survey);
  return true;
}();

}  // namespace

bool mutants::on(int mutant) {
  static const int chosen = chosenMutant();
  if (surveying()) reached().insert(mutant);
  return mutant == chosen;
}
