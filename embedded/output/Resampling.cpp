// From the tables of samples to statistics beside each estimate.
#include "embedded/output/Resampling.h"

#include <algorithm>
#include <limits>
#include <unordered_map>
#include <utility>

#include "embedded/output/PooledSplits.h"
#include "embedded/output/Values.h"

namespace embedded::output {

namespace {

constexpr const char* heading = "Bootstrap";

// The sampled values of one estimate: those of the samples, then those of the jackknife.
struct Sampled {
  Cell original;
  PlaceKey key;
  std::vector<std::optional<double>> values;
};

class Summary {
 public:
  Summary(Document& document, const Description& description, const BootstrapOptions& options)
      : document_(document),
        description_(description),
        options_(options),
        splits_(readPooledSplits(document)) {
    for (const auto& counts : options.patterns) {
      most_ = std::max(most_, counts.size());
    }
  }

  void apply() {
    for (Table& table : document_.tables) {
      summariseTable(table);
    }
    keepMessagesOfData();
    keepCasesOfData();
    document_.splits = splits_.userGroups;
    if (!document_.data.splits.empty()) {
      document_.data.splits.erase(document_.data.splits.begin());
    }
  }

 private:
  void summariseTable(Table& table) {
    const std::vector<Meaning> meanings = meaningsOf(table, description_);
    const Index statistics = statisticsDimension(table);
    std::vector<Sampled> sampled = gather(table, statistics, meanings);
    table.splitRows = !splits_.userGroups.empty();
    for (const Sampled& estimate : sampled) {
      addStatistics(table, statistics, estimate);
    }
    sortBySplit(table);
    markCells(table);
  }

  // Takes the samples' cells out of the table and sorts their values by estimate.
  std::vector<Sampled> gather(Table& table, Index statistics,
                              const std::vector<Meaning>& meanings) {
    std::vector<Sampled> sampled;
    std::unordered_map<PlaceKey, std::size_t, PlaceKeyHash> places;
    std::vector<Cell> kept;
    for (Cell& cell : table.cells) {
      const std::int64_t number = cell.split == none ? 0 : splits_.number[cell.split];
      const PlaceKey key{cell.at, cell.split == none ? none : splits_.user[cell.split]};
      if (number == 0) {
        cell.split = key.user;
        kept.push_back(cell);
        if (statistics != none && meanings[cell.at[statistics]].pooling == "rubin" &&
            cell.state == State::Valid) {
          places.emplace(key, sampled.size());
          sampled.push_back({cell, key, std::vector<std::optional<double>>(valuesWanted())});
        }
      } else if (const auto found = places.find(key);
                 found != places.end() && cell.state == State::Valid &&
                 static_cast<std::size_t>(number) <= valuesWanted()) {
        sampled[found->second].values[static_cast<std::size_t>(number) - 1] = cell.value;
      }
    }
    table.cells = std::move(kept);
    return sampled;
  }

  std::size_t valuesWanted() const { return options_.samples + most_; }

  // Split groups of the data come in the order of the patterns' groups.
  double acceleration(const Sampled& estimate) const {
    const std::size_t group = estimate.key.user == none ? 0 : estimate.key.user;
    if (group >= options_.patterns.size()) {
      return 0.0;
    }
    const auto& counts = options_.patterns[group];
    return jackknifeAcceleration(
        std::span(estimate.values).subspan(options_.samples, counts.size()), counts);
  }

  void addStatistics(Table& table, Index statistics, const Sampled& estimate) {
    std::vector<double> values;
    for (std::size_t i = 0; i < options_.samples; ++i) {
      if (estimate.values[i]) {
        values.push_back(*estimate.values[i]);
      }
    }
    const std::size_t computed = values.size();
    std::vector<TextPtr> notes;
    BootstrapSummary summary{.bias = missing, .standardError = missing, .lower = {}, .upper = {}};
    if (computed >= 2) {
      summary = summarise(estimate.original.value, std::move(values), options_.level,
                          options_.interval, acceleration(estimate));
    }
    Dimension& dimension = table.dimensions[statistics];
    const Index group =
        childNode(dimension, estimate.original.at[statistics], Text::string(heading), true);
    describeGroup(dimension.nodes[group]);
    add(table, statistics, group, estimate, "Bias", summary.bias);
    add(table, statistics, group, estimate, "Std. Error", summary.standardError);
    addBound(table, statistics, group, estimate, "Lower", summary.lower, computed);
    addBound(table, statistics, group, estimate, "Upper", summary.upper, computed);
    Cell& samples =
        add(table, statistics, group, estimate, "Samples", static_cast<double>(computed));
    samples.format = NumberFormat::Count;
    if (computed < options_.samples) {
      note(table, samples,
           Text::composite("Bootstrap samples not computed ^1 ...",
                           {Text::number(static_cast<double>(options_.samples - computed),
                                         NumberFormat::Count)}));
    }
  }

  // What kind of interval stands in the group.
  void describeGroup(Node& node) const {
    if (!node.footnotes.empty()) {
      return;
    }
    const char* id = options_.interval == BootstrapInterval::Bca
                         ? "Bootstrap ^1% BCa interval from ^2 samples ..."
                         : "Bootstrap ^1% percentile interval from ^2 samples ...";
    node.footnotes.push_back(Text::composite(
        id, {Text::number(options_.level, NumberFormat::SigDigit),
             Text::number(static_cast<double>(options_.samples), NumberFormat::Count)}));
  }

  static Cell& add(Table& table, Index statistics, Index group, const Sampled& estimate,
                   const char* label, double value) {
    Cell cell = estimate.original;
    cell.at[statistics] =
        childNode(table.dimensions[statistics], group, Text::string(label), false);
    cell.footnotes = none;
    cell.state = isSystemMissing(value) ? State::Missing : State::Valid;
    cell.value = cell.state == State::Valid ? value : 0.0;
    cell.format = NumberFormat::GeneralStat;
    table.cells.push_back(cell);
    return table.cells.back();
  }

  static void addBound(Table& table, Index statistics, Index group, const Sampled& estimate,
                       const char* label, const std::optional<double>& bound,
                       std::size_t computed) {
    Cell& cell = add(table, statistics, group, estimate, label, bound.value_or(missing));
    if (!bound) {
      note(table, cell,
           Text::string(computed < 2 ? "Bootstrap too few samples ..."
                                     : "Bootstrap interval not computed ..."));
    }
  }

  static void note(Table& table, Cell& cell, TextPtr text) {
    for (Index i = 0; i < table.footnoteLists.size(); ++i) {
      if (table.footnoteLists[i].size() == 1 && *table.footnoteLists[i].front() == *text) {
        cell.footnotes = i;
        return;
      }
    }
    table.footnoteLists.push_back({std::move(text)});
    cell.footnotes = static_cast<Index>(table.footnoteLists.size() - 1);
  }

  // Cells of one split group stand together, as renderers expect them.
  static void sortBySplit(Table& table) {
    std::stable_sort(table.cells.begin(), table.cells.end(),
                     [](const Cell& a, const Cell& b) { return a.split < b.split; });
  }

  // What was said of single samples goes away with them: the tables say how many were computed.
  void keepMessagesOfData() {
    std::erase_if(document_.messages, [&](const Message& message) {
      return message.split != none && splits_.number[message.split] != 0;
    });
    for (Message& message : document_.messages) {
      if (message.split != none) {
        message.split = splits_.user[message.split];
      }
    }
  }

  void keepCasesOfData() {
    auto& cases = document_.data.casesBySplit;
    for (auto& [split, counts] : cases) {
      split = splits_.user[split];
    }
    std::erase_if(cases, [](const auto& group) { return group.first == none; });
  }

  static constexpr double missing = std::numeric_limits<double>::lowest();

  Document& document_;
  const Description& description_;
  const BootstrapOptions& options_;
  PooledSplits splits_;
  std::size_t most_ = 0;
};

}  // namespace

void summariseBootstrap(Document& document, const Description& description,
                        const BootstrapOptions& options) {
  Summary(document, description, options).apply();
}

void separateSplitGroups(Document& document) {
  std::vector<Table> separate;
  for (Index split = 0; split < document.splits.size(); ++split) {
    for (const Table& table : document.tables) {
      Table own = table;
      own.split = split;
      own.splitRows = false;
      std::erase_if(own.cells, [&](const Cell& cell) { return cell.split != split; });
      for (Cell& cell : own.cells) {
        cell.split = none;
      }
      markCells(own);
      separate.push_back(std::move(own));
    }
  }
  if (!document.splits.empty()) {
    document.tables = std::move(separate);
  }
}

}  // namespace embedded::output
