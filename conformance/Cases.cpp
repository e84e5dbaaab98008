// The cases: order, end marks, values, weights, and that a second reading gives the same.
#include <algorithm>
#include <map>
#include <memory>
#include <tuple>

#include "conformance/Checks.h"
#include "conformance/Parsed.h"
#include "host/data/CaseIterator.h"
#include "host/distributions/MCMV.h"
#include "host/errors/BEPesRepos.h"

namespace conformance {

namespace {

// One case as it is read: number, text with its padding, weight.
using Row = std::tuple<double, std::string, double>;
// Split value and cases of each group, in the order they came.
using Groups = std::vector<std::pair<double, std::vector<Row>>>;

double numberAt(const std::vector<std::optional<double>>& values, std::size_t row) {
  return values[row].value_or(MCMV::Missing);
}

std::string padded(const SampleVariable& variable, std::size_t row) {
  const auto width = static_cast<std::size_t>(variable.width);
  const auto& text = variable.texts[row];
  if (!text) return std::string(width, '\0');
  return *text + std::string(width - text->size(), ' ');
}

// The groups that the sample amounts to: missing first, then ascending.
Groups expected(const Sample& data) {
  std::map<double, std::vector<Row>> sorted;  // MCMV::Missing is the lowest of all
  for (std::size_t row = 0; row < data.rows(); ++row) {
    sorted[numberAt(data.variables[3].numbers, row)].emplace_back(
        numberAt(data.variables[0].numbers, row), padded(data.variables[1], row),
        numberAt(data.variables[2].numbers, row));
  }
  return {sorted.begin(), sorted.end()};
}

// Reads to the end. Groups without an end mark are not kept.
Groups readAll(ProcDSIterator& cases, Report& report) {
  Groups groups;
  std::vector<Row> rows;
  double split = MCMV::Missing;
  for (int i = 0; i < 1000 && cases.NextCase(); ++i) {
    if (cases.SplitGroupEnd()) {
      groups.emplace_back(split, std::move(rows));
      rows.clear();
      continue;
    }
    split = cases.GetNumericValue(3);
    const char* bytes = cases.GetStringValue(1);
    report.expect(bytes != nullptr, "GetStringValue: the bytes of a string variable");
    const std::string text = bytes == nullptr ? "" : std::string(bytes, 12);
    const double number = cases.GetNumericValue(0);
    const OBS* word = cases.GetObsPointer(0);
    report.expect(word != nullptr && word->number == number,
                  "GetObsPointer: the first word of the observation");
    report.expect(bytes == nullptr || text == std::string(bytes, 12),
                  "GetStringValue: the bytes stay until the next NextCase");
    rows.emplace_back(number, text, cases.Weight());
  }
  report.expect(rows.empty(), "NextCase: an end mark after the last case of each group");
  report.expect(!cases.NextCase() && !cases.NextCase(), "NextCase: false for ever at the end");
  return groups;
}

std::vector<double> splitsOf(const Groups& groups) {
  std::vector<double> splits;
  for (const auto& group : groups) splits.push_back(group.first);
  return splits;
}

template <std::size_t place>
std::vector<std::tuple_element_t<place, Row>> column(Groups groups) {
  std::vector<std::tuple_element_t<place, Row>> values;
  for (auto& group : groups) {
    std::sort(group.second.begin(), group.second.end());
    for (const Row& row : group.second) values.push_back(std::get<place>(row));
  }
  std::sort(values.begin(), values.end());
  return values;
}

void compare(const Groups& got, const Groups& want, Report& report) {
  report.expect(splitsOf(got) == splitsOf(want),
                "NextCase: groups in the order of their split values, missing first",
                std::to_string(got.size()) + " groups");
  report.expect(column<0>(got).size() == column<0>(want).size(), "NextCase: every case once",
                std::to_string(column<0>(got).size()) + " cases");
  report.expect(column<0>(got) == column<0>(want),
                "GetNumericValue: the value, MCMV::Missing when it is system-missing");
  report.expect(column<1>(got) == column<1>(want),
                "GetStringValue: padded with blanks to its width, NUL bytes when null");
  report.expect(column<2>(got) == column<2>(want), "Weight: as it stands in the data, not rounded");
}

void checkReading(Parsed& parsed, Report& report) {
  BEPesRepos::BEPesClear();
  Groups before;
  for (int pass = 0; pass < 2; ++pass) {
    const auto made = parsed.source.MakeIterator(nullptr);
    report.expect(made != nullptr, "MakeIterator: never null");
    auto* cases = dynamic_cast<ProcDSIterator*>(made.get());
    report.expect(cases != nullptr, "MakeIterator: an iterator with weights and split groups");
    if (cases == nullptr) return;
    const Groups groups = readAll(*cases, report);
    if (pass == 0) {
      compare(groups, expected(sample()), report);
      before = groups;
    } else {
      report.expect(groups == before, "MakeIterator: two iterators deliver the same cases");
    }
  }
  report.expect(!parsed.source.FatalError(), "FatalError: false while nothing has failed");
  BEPesRepos::BEPesCheckError();
}

}  // namespace

void checkCases(Host& host, Report& report) {
  runChecked(host, plainCommand, report, "reading cases does not throw", [&] {
    Parsed parsed;
    if (!parsed.accepted) return;
    VarSpecObj validator(parsed.source, "LIST", "");
    report.expect(parsed.accept(validator), "VarSpecObj::ValidateVariables: accepts variables");
    checkReading(parsed, report);
  });
}

}  // namespace conformance
