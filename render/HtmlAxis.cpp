#include "render/HtmlAxis.h"

#include "render/HtmlText.h"

namespace render {

void writeHtmlAxis(const PlotAxis& axis, const std::string& quantity, const Context& context,
                   std::ostream& out) {
  out << R"(<svg class="axis" height="44"><line x2="100%" y1="1" y2="1"/>)";
  for (const double tick : axis.ticks()) {
    const std::string x = percentText(axis.percent(tick));
    out << "<line x1=\"" << x << "\" x2=\"" << x << R"(" y1="1" y2="6"/><text x=")" << x
        << R"(" y="19" text-anchor="middle">)" << axis.label(tick, context.decimalPoint)
        << "</text>";
  }
  out << R"(<text class="quantity" x="50%" y="38" text-anchor="middle">)" << htmlText(quantity)
      << "</text></svg>";
}

std::string htmlVertical(std::string_view cssClass, const PlotAxis& axis, double value) {
  const std::string x = percentText(axis.percent(value));
  return "<line class=\"" + std::string(cssClass) + "\" x1=\"" + x + "\" x2=\"" + x +
         R"(" y2="100%"/>)";
}

}  // namespace render
