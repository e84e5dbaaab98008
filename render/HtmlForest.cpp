#include "render/HtmlForest.h"

#include "render/HtmlAxis.h"
#include "render/HtmlRows.h"
#include "render/HtmlText.h"
#include "render/Phrase.h"

namespace render {

namespace {

constexpr double nearLeft = 20.0;  // percent of the axis: labels there do not stand centred
constexpr double nearRight = 80.0;
constexpr std::size_t shortPlot = 30;  // lines that are mostly seen together with their axis

std::string_view anchorAt(double percent) {
  return percent < nearLeft ? "start" : percent > nearRight ? "end" : "middle";
}

// The interval as a line between its bounds, the estimate as a point on it.
std::string marksOf(const ForestLine& line, const PlotAxis& axis) {
  std::string out;
  if (line.lower && line.upper) {
    out += R"(<line class="ci" x1=")" + percentText(axis.percent(*line.lower)) + "\" x2=\"" +
           percentText(axis.percent(*line.upper)) + R"(" y1="50%" y2="50%"/>)";
  }
  if (line.estimate) {
    out += "<circle" + std::string(line.missing.empty() ? "" : " class=\"bare\"") + " cx=\"" +
           percentText(axis.percent(*line.estimate)) + R"(" cy="50%" r="4.5"/>)";
  }
  return out;
}

// Why there is no interval stands on the side where the estimate is not.
std::string whyOf(const ForestLine& line, const PlotAxis& axis) {
  if (line.missing.empty()) {
    return {};
  }
  const bool right = line.estimate && axis.percent(*line.estimate) < 50.0;
  return "<span class=\"why" + std::string(right ? " right" : "") + "\">" + htmlText(line.missing) +
         "</span>";
}

std::string itemOf(const ForestLine& line, const PlotAxis& axis) {
  return "<span class=\"k\">" + htmlText(line.label) + "</span><svg aria-hidden=\"true\"><title>" +
         htmlText(line.label + (line.label.empty() ? "" : ": ") + line.numbers) + "</title>" +
         marksOf(line, axis) + "</svg>" + whyOf(line, axis) + "<span class=\"n\">" +
         htmlText(line.numbers) + "</span>";
}

// The lines of ticks and the reference behind all rows.
void writeBack(const Forest& forest, const PlotAxis& axis, std::ostream& out) {
  out << R"(<div class="back" aria-hidden="true"><svg>)";
  for (const double tick : axis.ticks()) {
    out << htmlVertical("tick", axis, tick);
  }
  if (forest.reference) {
    out << htmlVertical("reference", axis, forest.reference->value);
  }
  out << "</svg></div>\n";
}

void writeReference(const Forest& forest, const PlotAxis& axis, std::ostream& out) {
  if (!forest.reference) {
    return;
  }
  const double percent = axis.percent(forest.reference->value);
  out << R"(<div class="line top"><svg class="axis" height="22"><text class="reference" x=")"
      << percentText(percent) << R"(" y="14" text-anchor=")" << anchorAt(percent) << "\">"
      << htmlText(forest.reference->label) << "</text></svg></div>\n";
}

}  // namespace

void writeHtmlForest(const ReaderTable& table, const Forest& forest, const Context& context,
                     std::ostream& out) {
  const PlotAxis axis = forest.axis();
  out << "<figure class=\"forest" << (table.rows.size() > shortPlot ? " long" : "")
      << "\">\n<figcaption>"
      << htmlText(phrase(context, "Forest plot of ^1 with ^2", {forest.quantity, forest.level}));
  if (!forest.common.empty()) {
    out << " <span class=\"split\">" << htmlText(forest.common) << "</span>";
  }
  out << "</figcaption>\n";
  writeReference(forest, axis, out);
  out << "<div class=\"plot\">\n<div class=\"field\">\n";
  writeBack(forest, axis, out);
  writeHtmlRows(
      table, "lines", [&](std::size_t row) { return itemOf(forest.lines[row], axis); }, out);
  out << "</div>\n<div class=\"line bottom\">";
  writeHtmlAxis(axis, forest.quantity, context, out);
  out << "</div>\n</div>\n</figure>\n";
}

}  // namespace render
