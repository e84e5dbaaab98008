#include "Picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

namespace docs {

namespace {

constexpr double left = 58, right = 622, top = 40, bottom = 268;
constexpr double width = 640, height = 320;

// What the picture shows of its values, from its lower edge to its upper one.
struct Scale {
  double low;
  double high;
  double nominal;
  std::vector<double> ticks;
  const char* name;
};

Scale scaleOf(statistics::MethodKind kind) {
  return kind == statistics::MethodKind::Interval
             ? Scale{0.80, 1.00, 0.95, {0.80, 0.85, 0.90, 0.95, 1.00}, "coverage"}
             : Scale{0.00, 0.15, 0.05, {0.00, 0.05, 0.10, 0.15}, "rejected although true"};
}

constexpr std::string_view style = R"(<style>
svg { background: #fff; font: 13px sans-serif; }
text { fill: #333; } .grid { stroke: #ddd; } .nominal { stroke: #333; }
.curve { fill: none; stroke-width: 1.6; stroke-linejoin: round; }
.c0 { stroke: #b3541e; stroke-dasharray: 2 3; } .c1 { stroke: #1f78a4; stroke-dasharray: 7 3; }
.c2 { stroke: #4b3f9e; }
@media (prefers-color-scheme: dark) {
svg { background: #1b1b1f; } text { fill: #ddd; } .grid { stroke: #3a3a40; }
.nominal { stroke: #ddd; } .c0 { stroke: #ef9b68; } .c1 { stroke: #6dc0e8; } .c2 { stroke: #b3a8ff; }
}
</style>
)";

double xOf(double proportion) {
  return left + (right - left) * proportion;
}

double yOf(double value, const Scale& scale) {
  const double inside = std::clamp(value, scale.low, scale.high);
  return bottom - (bottom - top) * (inside - scale.low) / (scale.high - scale.low);
}

std::string line(double x1, double y1, double x2, double y2, std::string_view look) {
  return fmt::format(
      "<line class=\"{}\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n", look, x1,
      y1, x2, y2);
}

std::string words(double x, double y, std::string_view anchor, std::string_view text) {
  return fmt::format("<text x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\">{}</text>\n", x, y, anchor,
                     text);
}

std::string axes(const Scale& scale) {
  std::string out;
  for (const double tick : scale.ticks) {
    const double y = yOf(tick, scale);
    out += line(left, y, right, y, tick == scale.nominal ? "nominal" : "grid");
    out += words(left - 8, y + 4, "end", fmt::format("{:.0f} %", 100 * tick));
  }
  for (const double tick : {0.0, 0.25, 0.5, 0.75, 1.0}) {
    out += line(xOf(tick), bottom, xOf(tick), bottom + 5, "nominal");
    out += words(xOf(tick), bottom + 20, "middle", fmt::format("{}", tick));
  }
  out += words((left + right) / 2, height - 10, "middle", "true proportion");
  return out + words(left, top - 18, "start", scale.name);
}

std::string curveLine(const Curve& curve, std::size_t number, const Scale& scale) {
  std::string points;
  for (std::size_t i = 0; i < curve.values.size(); ++i) {
    fmt::format_to(std::back_inserter(points), "{}{:.1f},{:.1f}", i == 0 ? "" : " ",
                   xOf(proportionAt(static_cast<int>(i) + 1)), yOf(curve.values[i], scale));
  }
  return fmt::format("<polyline class=\"curve c{}\" points=\"{}\"/>\n", number, points);
}

std::string legend(const std::vector<Curve>& curves) {
  std::string out;
  for (std::size_t i = 0; i < curves.size(); ++i) {
    const double x = right - 110.0 * static_cast<double>(curves.size() - i);
    out += line(x, top - 22, x + 30, top - 22, fmt::format("curve c{}", i));
    out += words(x + 36, top - 18, "start", fmt::format("n = {}", curves[i].trials));
  }
  return out;
}

}  // namespace

std::string picture(const std::vector<Curve>& curves, statistics::MethodKind kind,
                    const Caption& caption) {
  const Scale scale = scaleOf(kind);
  std::string out = fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {} {}\" role=\"img\" "
      "aria-labelledby=\"t d\">\n<title id=\"t\">{}</title>\n<desc id=\"d\">{}</desc>\n",
      width, height, caption.title, caption.text);
  out += style;
  out += axes(scale);
  for (std::size_t i = 0; i < curves.size(); ++i) {
    out += curveLine(curves[i], i, scale);
  }
  return out + legend(curves) + "</svg>\n";
}

}  // namespace docs
