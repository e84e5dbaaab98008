#include "render/HtmlHistogram.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "render/HtmlAxis.h"
#include "render/HtmlTable.h"
#include "render/HtmlText.h"
#include "render/Numbers.h"
#include "render/Phrase.h"
#include "render/PlotHistogram.h"
#include "render/Reading.h"

namespace render {

namespace {

using embedded::output::Distribution;
using embedded::output::Meaning;
using embedded::output::Role;

// A distribution with its column and the row that it is first seen in.
struct Placed {
  const Distribution* distribution;
  std::size_t row;
  std::size_t column;
};

using Place = std::pair<Index, std::array<Index, embedded::output::maxDimensions>>;

// Estimates and differences alone: how a standard error spreads interests few.
bool isDrawn(const Meaning& meaning) {
  return meaning.role == Role::Estimate || meaning.role == Role::Difference;
}

std::vector<Placed> placed(const Table& table, const ReaderTable& shown) {
  std::map<Place, const Distribution*> byPlace;
  for (const Distribution& distribution : table.distributions) {
    if (!distribution.counts.empty()) {
      byPlace.emplace(Place{distribution.split, distribution.at}, &distribution);
    }
  }
  std::vector<Placed> found;
  for (std::size_t r = 0; r < shown.rows.size(); ++r) {
    for (std::size_t c = 0; c < shown.rows[r].cells.size(); ++c) {
      const Cell* cell = shown.rows[r].cells[c].cell;
      const auto at = cell == nullptr || !isDrawn(shown.meanings[c])
                          ? byPlace.end()
                          : byPlace.find(Place{cell->split, cell->at});
      if (at != byPlace.end()) {
        found.push_back({at->second, r, c});
      }
    }
  }
  return found;
}

std::string band(const Distribution& distribution, const PlotAxis& axis) {
  if (!distribution.lower || !distribution.upper) {
    return {};
  }
  const double low = axis.percent(*distribution.lower);
  const double high = axis.percent(*distribution.upper);
  return R"(<rect class="band" x=")" + percentText(low) + "\" width=\"" + percentText(high - low) +
         R"(" height="100%"/>)";
}

// The value of the data, when it could be computed.
std::string statisticOf(const Distribution& distribution, const PlotAxis& axis) {
  return std::isfinite(distribution.value) ? htmlVertical("statistic", axis, distribution.value)
                                           : std::string();
}

// Empty where the statistic is named by its dimension alone.
std::string nameOf(const Placed& one, const ReaderTable& shown) {
  const ReaderColumn& column = shown.columns[one.column];
  return column.labels.empty() ? std::string() : column.labels.back().text;
}

std::string captionOf(const Placed& one, const ReaderTable& shown, const Context& context) {
  return phrase(context, "Bootstrap distribution of ^1: ^2",
                {nameOf(one, shown), subjectOf(shown, shown.rows[one.row])});
}

void writeOne(const Placed& one, const ReaderTable& shown, const Context& context,
              std::ostream& out) {
  const Distribution& distribution = *one.distribution;
  const Meaning& meaning = shown.meanings[one.column];
  const Histogram histogram = histogramOf(distribution, meaning.rangeLow, meaning.rangeHigh);
  out << "<figure data-row=\"" << one.row << "\""
      << (one.row < htmlFirstPage(shown) ? "" : " hidden") << ">\n<figcaption>"
      << htmlText(captionOf(one, shown, context))
      << "</figcaption>\n<svg class=\"bars\" aria-hidden=\"true\">"
      << band(distribution, histogram.axis)
      << R"(<svg viewBox="0 0 100 100" preserveAspectRatio="none"><path d=")" << histogram.path
      << "\"/></svg>" << statisticOf(distribution, histogram.axis) << "</svg>\n";
  writeHtmlAxis(histogram.axis, nameOf(one, shown), context, out);
  out << "</figure>\n";
}

}  // namespace

void writeHtmlHistograms(const Table& table, const ReaderTable& shown, const Context& context,
                         std::set<std::string>& drawn, std::ostream& out) {
  std::vector<Placed> all = placed(table, shown);
  std::erase_if(
      all, [&](const Placed& one) { return !drawn.insert(captionOf(one, shown, context)).second; });
  if (all.empty()) {
    return;
  }
  out << "<div class=\"spread\">\n<p>"
      << htmlText(phrase(context, "How to read a bootstrap distribution")) << "</p>\n";
  for (const Placed& one : all) {
    writeOne(one, shown, context, out);
  }
  out << "</div>\n";
}

}  // namespace render
