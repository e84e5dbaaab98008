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
constexpr std::size_t mostDistributions = 1000;

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
        if (statistics != none && meanings[cell.at[statistics]].pooling == "rubin") {
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

  BootstrapSummary summaryOf(const Sampled& estimate, const std::vector<double>& values) const {
    const auto statistic = estimate.original.state == State::Valid
                               ? std::optional(estimate.original.value)
                               : std::nullopt;
    return summarise(statistic, values, options_.level, options_.interval, acceleration(estimate));
  }

  // The values of the samples in which the estimate could be computed.
  std::vector<double> computedValues(const Sampled& estimate) const {
    std::vector<double> values;
    for (std::size_t i = 0; i < options_.samples; ++i) {
      if (estimate.values[i]) {
        values.push_back(*estimate.values[i]);
      }
    }
    return values;
  }

  void keepDistribution(Table& table, const Sampled& estimate, const BootstrapSummary& summary,
                        std::vector<double> values) {
    if (!values.empty() && distributions_ < mostDistributions) {
      ++distributions_;
      Distribution& distribution = table.distributions.emplace_back();
      distribution.at = estimate.key.at;
      distribution.split = estimate.key.user;
      distribution.value = estimate.original.state == State::Valid
                               ? estimate.original.value
                               : std::numeric_limits<double>::quiet_NaN();
      distribution.lower = summary.lower;
      distribution.upper = summary.upper;
      addHistogram(distribution, std::move(values));
    }
  }

  void addStatistics(Table& table, Index statistics, const Sampled& estimate) {
    std::vector<double> values = computedValues(estimate);
    const BootstrapSummary summary = summaryOf(estimate, values);
    Dimension& dimension = table.dimensions[statistics];
    const Index group =
        childNode(dimension, estimate.original.at[statistics], Text::string(heading), true);
    describeGroup(dimension.nodes[group]);
    const auto addValue = [&](const char* label, const std::optional<double>& value,
                              BootstrapLack lacking) {
      Cell& cell = add(table, statistics, group, estimate, label, value);
      if (!value) {
        cell.footnotes = footnoteList(table, Text::string(reasonOf(lacking)));
      }
    };
    const BootstrapLack lacking = summary.lacking;
    addValue("Bias", summary.bias,
             lacking == BootstrapLack::TooFewSamples ? lacking : BootstrapLack::NoStatistic);
    addValue("Std. Error", summary.standardError, lacking);
    addValue("Lower", summary.lower, lacking);
    addValue("Upper", summary.upper, lacking);
    addSamples(table, statistics, group, estimate, values.size());
    keepDistribution(table, estimate, summary, std::move(values));
  }

  // How many samples could be computed, and how many could not.
  void addSamples(Table& table, Index statistics, Index group, const Sampled& estimate,
                  std::size_t computed) const {
    Cell& cell = add(table, statistics, group, estimate, "Samples", static_cast<double>(computed));
    cell.format = NumberFormat::Count;
    if (computed < options_.samples) {
      cell.footnotes = footnoteList(
          table, Text::composite("Bootstrap samples not computed ^1 ...",
                                 {Text::number(static_cast<double>(options_.samples - computed),
                                               NumberFormat::Count)}));
    }
  }

  static const char* reasonOf(BootstrapLack lacking) {
    switch (lacking) {
      case BootstrapLack::TooFewSamples:
        return "Bootstrap too few samples ...";
      case BootstrapLack::SamplesAgree:
        return "Bootstrap samples all equal ...";
      case BootstrapLack::StatisticOutside:
        return "Bootstrap statistic outside samples ...";
      case BootstrapLack::NoStatistic:
      case BootstrapLack::None:
        break;
    }
    return "Bootstrap statistic missing ...";
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
                   const char* label, const std::optional<double>& value) {
    Cell cell = estimate.original;
    cell.at[statistics] =
        childNode(table.dimensions[statistics], group, Text::string(label), false);
    cell.footnotes = none;
    cell.state = value ? State::Valid : State::Missing;
    cell.value = value.value_or(0.0);
    cell.format = NumberFormat::GeneralStat;
    table.cells.push_back(cell);
    return table.cells.back();
  }

  // Cells of one split group stand together, as renderers expect them.
  static void sortBySplit(Table& table) {
    std::stable_sort(table.cells.begin(), table.cells.end(),
                     [](const Cell& a, const Cell& b) { return a.split < b.split; });
    std::stable_sort(table.distributions.begin(), table.distributions.end(),
                     [](const auto& a, const auto& b) { return a.split < b.split; });
  }

  // What was said of single samples goes away with them: the tables say how many were computed.
  void keepMessagesOfData() {
    std::erase_if(document_.messages, [&](const Message& message) {
      return message.split != none && splits_.number[message.split] != 0;
    });
    for (Message& message : document_.messages) {
      if (message.split != none) {
        message.text = withoutSample(message.text, document_.splits[message.split]);
        message.split = splits_.user[message.split];
      }
    }
  }

  // The text without the sample number in lists of all split values, where others are left.
  static TextPtr withoutSample(const TextPtr& text, const SplitGroup& group) {
    if (group.values.size() < 2) {
      return text;
    }
    Text changed = *text;
    for (TextPtr& argument : changed.items) {
      const auto& items = argument->items;
      if (argument->kind == Text::Kind::List && items.size() == 2 * group.values.size() &&
          *items[1] == *group.values.front()) {
        argument = Text::list({items.begin() + 2, items.end()});
      }
    }
    return std::make_shared<const Text>(std::move(changed));
  }

  void keepCasesOfData() {
    auto& cases = document_.data.casesBySplit;
    for (auto& [split, counts] : cases) {
      split = splits_.user[split];
    }
    std::erase_if(cases, [](const auto& group) { return group.first == none; });
  }

  Document& document_;
  const Description& description_;
  const BootstrapOptions& options_;
  PooledSplits splits_;
  std::size_t most_ = 0;
  std::size_t distributions_ = 0;  // kept so far
};

// The elements of one split group, from `next` on, which moves behind them; they are no rows of a
// common table any more.
template <class Element>
std::vector<Element> takeGroup(const std::vector<Element>& elements, std::size_t& next,
                               Index split) {
  std::vector<Element> taken;
  for (; next < elements.size() && elements[next].split == split; ++next) {
    taken.push_back(elements[next]);
    taken.back().split = none;
  }
  return taken;
}

}  // namespace

void summariseBootstrap(Document& document, const Description& description,
                        const BootstrapOptions& options) {
  Summary(document, description, options).apply();
}

void separateSplitGroups(Document& document) {
  if (document.splits.empty()) {
    return;
  }
  // The common tables without their contents are what each group's own begin as. What belongs to
  // one group stands together, in the order of the groups.
  const std::vector<Table> common = std::exchange(document.tables, {});
  std::vector<Table> shells;
  for (const Table& table : common) {
    Table& shell = shells.emplace_back();
    shell.title = table.title;
    shell.dimensions = table.dimensions;
    shell.footnoteLists = table.footnoteLists;
  }
  std::vector<std::array<std::size_t, 2>> next(common.size());
  for (Index split = 0; split < document.splits.size(); ++split) {
    for (std::size_t t = 0; t < common.size(); ++t) {
      auto cells = takeGroup(common[t].cells, next[t][0], split);
      auto distributions = takeGroup(common[t].distributions, next[t][1], split);
      if (cells.empty() && !common[t].cells.empty()) {
        continue;
      }
      Table& own = document.tables.emplace_back(shells[t]);
      own.split = split;
      own.cells = std::move(cells);
      own.distributions = std::move(distributions);
      markCells(own);
    }
  }
}

}  // namespace embedded::output
