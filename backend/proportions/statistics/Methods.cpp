// The view of all methods, taken from the typed tables when the program is compiled.
#include "statistics/Methods.h"

namespace statistics {
namespace {

constexpr auto oneSampleIntervalInfos = describe(oneSampleIntervals);
constexpr auto oneSampleTestInfos = describe(oneSampleTests);
constexpr auto pairedIntervalInfos = describe(pairedIntervals);
constexpr auto pairedTestInfos = describe(pairedTests);
constexpr auto independentIntervalInfos = describe(independentIntervals);
constexpr auto independentTestInfos = describe(independentTests);

}  // namespace

std::span<const MethodInfo> methodsOf(Design design, MethodKind kind) {
  const bool isInterval = kind == MethodKind::Interval;
  switch (design) {
    case Design::OneSample:
      if (isInterval) return oneSampleIntervalInfos;
      return oneSampleTestInfos;
    case Design::Paired:
      if (isInterval) return pairedIntervalInfos;
      return pairedTestInfos;
    case Design::Independent:
      if (isInterval) return independentIntervalInfos;
      return independentTestInfos;
  }
  return {};
}

std::string_view nameOf(Design design) {
  switch (design) {
    case Design::OneSample:
      return "one sample";
    case Design::Paired:
      return "paired samples";
    case Design::Independent:
      return "independent samples";
  }
  return {};
}

std::string_view nameOf(MethodKind kind) {
  return kind == MethodKind::Interval ? "interval" : "test";
}

}  // namespace statistics
