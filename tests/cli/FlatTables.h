// Pivot tables as flat lists of cells, so that what the program wrote and what a reference run
// expects can be laid side by side: table for table, cell for cell, in order.
//
// Labels are compared by identifier and arguments, never by printed text. A label is written as
// its identifier, followed by its arguments as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace cli_tests {

struct FlatCell {
  std::string place;  // split values, then the path on each dimension
  nlohmann::json cell;
};

struct FlatTable {
  std::string title;
  std::vector<std::string> dimensions;  // axis and label, outermost rows first
  std::vector<FlatCell> cells;
};

// The tables of a document that the program wrote as JSON.
std::vector<FlatTable> flatDocument(const nlohmann::json& document);

// The tables that a reference run expects. The run's tables, one a variable and split group, are
// put together as the design has it: tables of one title are one table, and with split groups laid
// as separate tables, those of one title and group. Cells that are never written are left out.
std::vector<FlatTable> flatExpectation(const nlohmann::json& given, const nlohmann::json& expect);

// Fails the test for every difference between the two.
void expectSameTables(const std::vector<FlatTable>& got, const std::vector<FlatTable>& want);

// A template with its arguments; plain numbers are written alike whether whole or not.
std::string labelText(const std::string& id, const nlohmann::json& arguments);

}  // namespace cli_tests
