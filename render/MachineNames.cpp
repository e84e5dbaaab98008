#include "render/MachineNames.h"

namespace render {

std::string_view stateName(embedded::output::State state) {
  using embedded::output::State;
  switch (state) {
    case State::Valid:
      return "valid";
    case State::Missing:
      return "missing";
    case State::NotANumber:
      return "nan";
  }
  return {};
}

std::string joinedPath(const Dimension& dimension, Index node, std::string_view separator,
                       const std::function<std::string(const embedded::output::Text&)>& print) {
  std::string out;
  for (const Index step : pathOf(dimension, node)) {
    if (!out.empty()) {
      out += separator;
    }
    out += print(*dimension.nodes[step].label);
  }
  return out;
}

}  // namespace render
