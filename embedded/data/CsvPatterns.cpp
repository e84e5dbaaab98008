// From codes of texts to values, and from patterns of texts to patterns of values.
#include "CsvPatterns.h"

#include <algorithm>
#include <cmath>

#include "DuckDbQueries.h"

namespace embedded::data {
namespace {

// One column of the request: which text column it is made of, and the values of that one's texts.
struct ValueColumn {
  std::size_t texts = 0;
  int width = 0;
  ColumnWriter writer;
  std::vector<OBS> values{};  // by code

  std::size_t words() const { return ObsWords(width); }
  const OBS* value(std::size_t code) const { return values.data() + code * words(); }
};

std::vector<std::size_t> wantedColumns(const ScanRequest& request) {
  std::vector<std::size_t> wanted;
  for (const ColumnRead& read : request.columns)
    wanted.push_back(static_cast<std::size_t>(read.column));
  std::ranges::sort(wanted);
  wanted.erase(std::ranges::unique(wanted).begin(), wanted.end());
  return wanted;
}

std::vector<ValueColumn> valueColumns(const ScanRequest& request,
                                      const std::vector<std::size_t>& wanted) {
  std::vector<ValueColumn> columns;
  for (const ColumnRead& read : request.columns) {
    const auto at = std::ranges::lower_bound(wanted, static_cast<std::size_t>(read.column));
    columns.push_back({static_cast<std::size_t>(at - wanted.begin()), read.width,
                       ColumnWriter(read.width, true)});
  }
  return columns;
}

std::size_t codeAt(const CountedTexts& counted, std::size_t pattern, std::size_t column) {
  return static_cast<std::size_t>(
      counted.patterns.rows[pattern * counted.texts.size() + column].number);
}

// How many cases have each text of a column, and of `size` in all: there are none of the rest.
std::vector<std::uint64_t> casesOf(const CountedTexts& counted, std::size_t column,
                                   std::size_t size) {
  std::vector<std::uint64_t> cases(size);
  for (std::size_t i = 0; i < counted.patterns.counts.size(); ++i)
    cases[codeAt(counted, i, column)] += counted.patterns.counts[i];
  return cases;
}

// Has the engine read all texts.
void readValues(Query& query, const CountedTexts& counted, std::vector<ValueColumn>& columns,
                std::vector<ColumnFaults>& faults) {
  std::size_t lines = 0;
  for (const auto& texts : counted.texts) lines = std::max(lines, texts.size());
  std::vector<std::vector<std::uint64_t>> cases;
  for (ValueColumn& column : columns) {
    column.values.resize(lines * column.words());
    cases.push_back(casesOf(counted, column.texts, lines));
  }
  std::size_t line = 0;
  for (Chunk chunk; query.next(chunk); line += chunk.size())
    for (std::size_t i = 0; i < columns.size(); ++i) {
      ValueColumn& column = columns[i];
      column.writer.write(chunk.column(i), chunk.size(),
                          column.values.data() + line * column.words(), column.words(), faults[i],
                          cases[i].data() + line);
    }
  if (line != lines) throw EngineFailure("Error: lines were lost");
}

// The rounded weight; 0 when it is none.
double roundedWeight(double weight) {
  return weight >= 0.5 ? std::floor(weight + 0.5) : 0.0;
}

PatternBatch batchOf(const CountedTexts& counted, const std::vector<ValueColumn>& columns,
                     int weight) {
  PatternBatch batch;
  for (std::size_t i = 0; i < counted.patterns.counts.size(); ++i) {
    double each = 1.0;
    for (std::size_t c = 0; c < columns.size(); ++c) {
      const OBS* value = columns[c].value(codeAt(counted, i, columns[c].texts));
      if (static_cast<int>(c) == weight)
        each = roundedWeight(value->number);
      else
        batch.rows.insert(batch.rows.end(), value, value + columns[c].words());
    }
    const std::uint64_t cases = counted.patterns.counts[i];
    batch.weights.push_back(each * static_cast<double>(cases));
    batch.counts.push_back(cases);
  }
  return batch;
}

}  // namespace

std::optional<CountedPatterns> countCsvPatterns(Engine& engine, const CsvSource& source,
                                                const ScanRequest& request, int threads,
                                                const std::string& scratch,
                                                const ProgressListener& progress) {
  const std::vector<std::size_t> wanted = wantedColumns(request);
  const std::optional<CountedTexts> counted =
      countTexts(source.form(), wanted, threads, blockOfFile, progress);
  if (!counted) return std::nullopt;
  CountedPatterns patterns;
  patterns.faults.resize(request.columns.size());
  if (counted->patterns.counts.empty()) return patterns;
  std::vector<ValueColumn> columns = valueColumns(request, wanted);
  try {
    const CsvSource texts = source.withTexts(scratch, wanted, counted->texts);
    readValues(*engine.query(unorderedSql(texts, request)), *counted, columns, patterns.faults);
  } catch (const EngineFailure&) {
    return std::nullopt;
  }
  patterns.batch = batchOf(*counted, columns, request.weight);
  sortBySplits(patterns.batch, request);
  return patterns;
}

}  // namespace embedded::data
