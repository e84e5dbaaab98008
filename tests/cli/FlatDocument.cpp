// The document's side, and the comparison.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>

#include "FlatTables.h"

namespace cli_tests {

namespace {

using Json = nlohmann::json;

std::string plain(const Json& argument) {
  if (argument.is_number()) {
    return fmt::format("{:.17g}", argument.get<double>());
  }
  if (!argument.is_array()) {
    return argument.dump();
  }
  std::string out;
  for (const Json& item : argument) {
    out += (out.empty() ? "" : ",") + plain(item);
  }
  return "[" + out + "]";
}

std::string labelText(const Json& label) {
  return cli_tests::labelText(label["id"].get<std::string>(),
                              label.value("arguments", Json::array()));
}

std::string placeOf(const Json& cell) {
  std::string out;
  for (const Json& value : cell["split"]) {
    out += "<" + plain(value["value"]) + "> ";
  }
  for (const Json& path : cell["path"]) {
    for (const Json& label : path) {
      out += labelText(label) + " / ";
    }
    out += "| ";
  }
  return out;
}

Json footnotesOf(const Json& cell) {
  Json notes = Json::array();
  for (const Json& note : cell["footnotes"]) {
    notes.push_back(labelText(note));
  }
  return notes;
}

// How far a result may lie from its reference value.
double tolerance(const Json& want) {
  return 8 * want.value("tol", 0.0) + 1e-12 * std::abs(want["value"].get<double>()) + 1e-200;
}

void expectSameCell(const FlatCell& got, const FlatCell& want) {
  EXPECT_EQ(got.cell["format"], want.cell["format"]) << want.place;
  EXPECT_EQ(got.cell["footnotes"], want.cell["footnotes"]) << want.place;
  // A result that hangs on the rounding of one comparison is not compared.
  if (want.cell.value("knife", false)) {
    return;
  }
  ASSERT_EQ(got.cell["state"], want.cell["state"]) << want.place;
  if (want.cell["state"] != "valid") {
    EXPECT_TRUE(got.cell["value"].is_null()) << want.place;
    return;
  }
  ASSERT_TRUE(got.cell["value"].is_number()) << want.place;
  EXPECT_NEAR(got.cell["value"].get<double>(), want.cell["value"].get<double>(),
              tolerance(want.cell))
      << want.place;
}

std::vector<std::string> placesOf(const FlatTable& table) {
  std::vector<std::string> places;
  for (const FlatCell& cell : table.cells) {
    places.push_back(cell.place);
  }
  return places;
}

}  // namespace

std::string labelText(const std::string& id, const Json& arguments) {
  return arguments.empty() ? id : id + " " + plain(arguments);
}

std::vector<FlatTable> flatDocument(const Json& document) {
  std::vector<FlatTable> tables;
  for (const Json& table : document["tables"]) {
    FlatTable flat{labelText(table["title"]), {}, {}};
    for (const Json& dimension : table["dimensions"]) {
      flat.dimensions.push_back(dimension["axis"].get<std::string>() + " " +
                                labelText(dimension["label"]));
    }
    for (const Json& cell : table["cells"]) {
      Json kept = cell;
      kept["footnotes"] = footnotesOf(cell);
      flat.cells.push_back({placeOf(cell), std::move(kept)});
    }
    tables.push_back(std::move(flat));
  }
  return tables;
}

void expectSameTables(const std::vector<FlatTable>& got, const std::vector<FlatTable>& want) {
  ASSERT_EQ(got.size(), want.size()) << "number of tables";
  for (std::size_t t = 0; t < want.size(); ++t) {
    SCOPED_TRACE("table " + std::to_string(t) + ": " + want[t].title);
    EXPECT_EQ(got[t].title, want[t].title);
    EXPECT_EQ(got[t].dimensions, want[t].dimensions);
    ASSERT_EQ(placesOf(got[t]), placesOf(want[t]));
    for (std::size_t c = 0; c < want[t].cells.size(); ++c) {
      expectSameCell(got[t].cells[c], want[t].cells[c]);
    }
  }
}

}  // namespace cli_tests
