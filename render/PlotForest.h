// What a forest plot shows: the point estimate and interval of each row of a table of intervals,
// and the reference value that they are held against. The picture itself is drawn elsewhere.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "render/PlotAxis.h"
#include "render/ReaderTable.h"

namespace render {

// The reference value of a table's intervals and its name, such as "Test Value = 0.3".
struct PlotReference {
  double value = 0.0;
  std::string label;
};

// One row of the table. What could not be computed is not there.
struct ForestLine {
  std::string label;  // what tells it from the other lines of its split group
  std::optional<double> estimate;
  std::optional<double> lower;
  std::optional<double> upper;
  std::string numbers;  // "0.350 [0.181, 0.567]", in the digits of the table
  std::string missing;  // why there is no interval; empty where there is one
};

struct Forest {
  std::string common;    // what all lines have in common
  std::string quantity;  // label of the estimate, with the direction of a difference
  std::string level;     // label of the interval
  std::optional<PlotReference> reference;
  std::vector<ForestLine> lines;  // as many as the table has rows, in their order

  // The axis that all lines, and the reference, fit.
  PlotAxis axis() const;

  std::optional<double> rangeLow;  // of the quantity
  std::optional<double> rangeHigh;
};

// The plot of a table; nothing for a table without intervals or rows.
std::optional<Forest> forestOf(const Document& document, const ReaderTable& table,
                               const Context& context);

}  // namespace render
