// The reference run's side: its tables, one a variable and group, put together.
#include <algorithm>
#include <map>

#include "FlatTables.h"

namespace cli_tests {

namespace {

using Json = nlohmann::json;
using Path = std::vector<std::string>;
using Rank = std::vector<std::size_t>;

// A label as the reference writes it: a text, or a template with its arguments.
std::string labelOf(const Json& label) {
  return label.is_string() ? label.get<std::string>()
                           : labelText(label[0].get<std::string>(), label[1]);
}

// The categories of one dimension in the order in which they were first added.
class Categories {
 public:
  // Where the path stands among its siblings, at each depth; a new one comes last.
  Rank add(const Path& path) {
    Rank rank;
    Path upTo;
    for (const std::string& label : path) {
      auto& siblings = children_[upTo];
      rank.push_back(siblings.try_emplace(label, siblings.size()).first->second);
      upTo.push_back(label);
    }
    return rank;
  }

 private:
  std::map<Path, std::map<std::string, std::size_t>> children_;
};

struct PlacedCell {
  std::vector<Rank> order;
  FlatCell cell;
};

// A table that grows by what each of the run's tables adds to it.
struct GrowingTable {
  FlatTable flat;
  Categories rows, variables, statistics;
  std::vector<PlacedCell> cells;
};

std::vector<std::string> dimensionsOf(const std::string& title, const Json& given) {
  std::vector<std::string> dimensions{"row Variables", "column Statistics"};
  if (title.ends_with("Intervals")) {
    dimensions.insert(dimensions.begin(), "row Interval Type");
  } else if (title.ends_with("Tests")) {
    dimensions.insert(dimensions.begin(), "row Test Type");
  } else if (title.ends_with("Group Statistics")) {
    dimensions.insert(dimensions.begin(), "row " + given["command"]["by"].get<std::string>());
  }
  return dimensions;
}

std::string stateOf(const Json& cell) {
  if (cell["value"].is_string()) {
    return "nan";
  }
  return cell["value"].is_null() ? "missing" : "valid";
}

// The cell in the words of the program's JSON.
Json documentCell(const Json& cell) {
  Json out = cell;
  out["state"] = stateOf(cell);
  out["format"] = cell["format"] == "Count" ? "count" : "general";
  out["footnotes"] = Json::array();
  for (const char* kind : {"footnote", "category_footnote"}) {
    if (cell.contains(kind) && !cell[kind].is_null()) {
      out["footnotes"].push_back(labelOf(cell[kind]));
    }
  }
  return out;
}

std::string splitText(const Json& group) {
  std::string out;
  for (const Json& part : group["split"]) {
    const std::string value = labelText("", Json::array({part[1]}));
    out += "<" + value.substr(2, value.size() - 3) + "> ";
  }
  return out;
}

std::string pathText(const Path& path) {
  std::string out;
  for (const std::string& label : path) {
    out += label + " / ";
  }
  return out + "| ";
}

// Adds one table of the run.
class Adder {
 public:
  Adder(GrowingTable& into, const Json& table, std::string split)
      : into_(into), table_(table), split_(std::move(split)) {}

  void add() {
    if (table_.contains("group_label")) {
      into_.variables.add({labelOf(table_["group_label"])});
    }
    for (const Json& variable : table_["variables"]) {
      own_ = variablePath(variable);
      into_.variables.add(own_);
    }
    if (!table_["row_dimension"].is_null()) {
      for (const Json& category : table_["row_dimension"]) {
        into_.rows.add({labelOf(category["label"])});
      }
    }
    for (const Json& row : table_["rows"]) {
      addRow(row);
    }
  }

 private:
  Path variablePath(const Json& variable) const {
    Path path{labelOf(variable["label"])};
    if (variable.value("in_group", false)) {
      path.insert(path.begin(), labelOf(table_["group_label"]));
    }
    return path;
  }

  void addRow(const Json& row) {
    std::vector<Rank> order{{table_["group"].get<std::size_t>()}};
    std::string place = split_;
    if (table_["row_dimension"].is_null()) {
      // Without a dimension of its own a row is a variable of the pair.
      own_ = {labelOf(table_["group_label"]), labelOf(row["label"])};
    } else {
      order.push_back(into_.rows.add({labelOf(row["label"])}));
      place += pathText({labelOf(row["label"])});
    }
    order.push_back(into_.variables.add(own_));
    place += pathText(own_);
    for (const Json& cell : row["cells"]) {
      Path path;
      for (const Json& label : cell["path"]) {
        path.push_back(labelOf(label));
      }
      order.push_back(into_.statistics.add(path));
      if (!cell["format"].is_null()) {
        into_.cells.push_back({order, {place + pathText(path), documentCell(cell)}});
      }
      order.pop_back();
    }
  }

  GrowingTable& into_;
  const Json& table_;
  std::string split_;
  Path own_;
};

// A cell that was written twice, as by a pair of a variable with itself, keeps the last value.
FlatTable finished(GrowingTable& table) {
  std::stable_sort(table.cells.begin(), table.cells.end(),
                   [](const PlacedCell& a, const PlacedCell& b) { return a.order < b.order; });
  std::vector<FlatCell>& cells = table.flat.cells;
  for (PlacedCell& placed : table.cells) {
    if (!cells.empty() && cells.back().place == placed.cell.place) {
      cells.pop_back();
    }
    cells.push_back(std::move(placed.cell));
  }
  return std::move(table.flat);
}

}  // namespace

std::vector<FlatTable> flatExpectation(const Json& given, const Json& expect) {
  const bool tablesBySplit =
      !given["dataset"]["split"].empty() && !given["dataset"]["splits_as_rows"].get<bool>();
  std::vector<std::pair<std::pair<std::string, std::size_t>, GrowingTable>> growing;
  for (const Json& table : expect["tables"]) {
    const auto group = table["group"].get<std::size_t>();
    const auto title = table["title"].get<std::string>();
    const std::pair key(title, tablesBySplit ? group : 0);
    auto found = std::find_if(growing.begin(), growing.end(),
                              [&](const auto& entry) { return entry.first == key; });
    if (found == growing.end()) {
      growing.emplace_back(key,
                           GrowingTable{{title, dimensionsOf(title, given), {}}, {}, {}, {}, {}});
      found = growing.end() - 1;
    }
    Adder(found->second, table, splitText(expect["groups"][group])).add();
  }
  std::vector<FlatTable> tables;
  for (auto& [key, table] : growing) {
    tables.push_back(finished(table));
  }
  return tables;
}

}  // namespace cli_tests
