#include "embedded/output/Text.h"

#include <bit>
#include <functional>
#include <utility>

namespace embedded::output {

namespace {

std::shared_ptr<Text> make(Text::Kind kind) {
  auto text = std::make_shared<Text>();
  text->kind = kind;
  return text;
}

std::uint64_t bits(double number) {
  return std::bit_cast<std::uint64_t>(number);
}

bool sameValue(const RawValue& a, const RawValue& b) {
  if (a.index() != b.index()) {
    return false;
  }
  if (const auto* number = std::get_if<double>(&a)) {
    return bits(*number) == bits(std::get<double>(b));
  }
  return std::get<std::string>(a) == std::get<std::string>(b);
}

bool sameVariable(const VariablePtr& a, const VariablePtr& b) {
  return a == b || (a && b && a->name == b->name);
}

bool sameItems(const std::vector<TextPtr>& a, const std::vector<TextPtr>& b) {
  if (a.size() != b.size()) {
    return false;
  }
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!(*a[i] == *b[i])) {
      return false;
    }
  }
  return true;
}

std::size_t mix(std::size_t seed, std::size_t value) {
  return (seed ^ value) * 0x9E3779B97F4A7C15ULL;
}

std::size_t hashOfValue(const RawValue& value) {
  if (const auto* number = std::get_if<double>(&value)) {
    return std::hash<std::uint64_t>{}(bits(*number));
  }
  return std::hash<std::string>{}(std::get<std::string>(value));
}

}  // namespace

TextPtr Text::string(std::string id, bool translatable) {
  auto text = make(Kind::String);
  text->id = std::move(id);
  text->translatable = translatable;
  return text;
}

TextPtr Text::composite(std::string id, std::vector<TextPtr> arguments) {
  auto text = make(Kind::Composite);
  text->id = std::move(id);
  text->translatable = true;
  text->items = std::move(arguments);
  return text;
}

TextPtr Text::list(std::vector<TextPtr> items) {
  auto text = make(Kind::List);
  text->items = std::move(items);
  return text;
}

TextPtr Text::number(double value, NumberFormat format) {
  auto text = make(Kind::Number);
  text->value = value;
  text->format = format;
  return text;
}

TextPtr Text::ofVariable(VariablePtr variable) {
  auto text = make(Kind::Variable);
  text->variable = std::move(variable);
  return text;
}

TextPtr Text::ofValue(VariablePtr variable, RawValue value, bool preferLabel) {
  auto text = make(Kind::Value);
  text->variable = std::move(variable);
  text->value = std::move(value);
  text->preferLabel = preferLabel;
  return text;
}

bool operator==(const Text& a, const Text& b) {
  if (&a == &b) {
    return true;
  }
  return a.kind == b.kind && a.id == b.id && sameValue(a.value, b.value) &&
         sameVariable(a.variable, b.variable) && sameItems(a.items, b.items);
}

std::size_t hashOf(const Text& text) {
  std::size_t hash = mix(static_cast<std::size_t>(text.kind), std::hash<std::string>{}(text.id));
  if (text.kind == Text::Kind::Number || text.kind == Text::Kind::Value) {
    hash = mix(hash, hashOfValue(text.value));
  }
  if (text.variable) {
    hash = mix(hash, std::hash<std::string>{}(text.variable->name));
  }
  for (const TextPtr& item : text.items) {
    hash = mix(hash, hashOf(*item));
  }
  return hash;
}

}  // namespace embedded::output
