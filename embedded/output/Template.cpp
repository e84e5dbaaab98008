#include "embedded/output/Template.h"

#include <algorithm>
#include <optional>

namespace embedded::output {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// Reads the whole number at `at` and moves past it; 0 when there is none.
std::size_t readNumber(std::string_view text, std::size_t& at) {
  std::size_t number = 0;
  while (at < text.size() && isDigit(text[at]) && number < 1000) {
    number = number * 10 + static_cast<std::size_t>(text[at++] - '0');
  }
  return number;
}

std::string printItems(std::span<const TextPtr> items, const PrintArgument& print) {
  std::string out;
  for (const TextPtr& item : items) {
    out += (out.empty() ? "" : ", ") + print(*item);
  }
  return out;
}

std::string printOne(const Text& argument, const PrintArgument& print) {
  return argument.kind == Text::Kind::List ? printItems(argument.items, print) : print(argument);
}

// The parts of a list placeholder.
struct ListPattern {
  std::string_view first;
  std::string_view further;
  std::size_t argument = 0;  // counted from 1
  std::size_t length = 0;    // of the whole placeholder
};

// The list placeholder at the opening bracket, if it is one.
std::optional<ListPattern> parseList(std::string_view text) {
  const std::size_t colon = text.find(':');
  const std::size_t end = colon == text.npos ? text.npos : text.find(":]", colon + 1);
  if (end == text.npos) {
    return std::nullopt;
  }
  std::size_t at = end + 2;
  const std::size_t argument = readNumber(text, at);
  if (argument == 0) {
    return std::nullopt;
  }
  return ListPattern{text.substr(1, colon - 1), text.substr(colon + 1, end - colon - 1), argument,
                     at};
}

bool marksArgument(char c) {
  return c == '^' || c == '%';
}

// The highest placeholder number in the pattern of one item.
std::size_t entriesOf(std::string_view pattern) {
  std::size_t most = 0;
  for (std::size_t i = 0; i < pattern.size();) {
    if (marksArgument(pattern[i++])) {
      most = std::max(most, readNumber(pattern, i));
    }
  }
  return most;
}

std::string printItem(std::string_view pattern, std::span<const TextPtr> entries,
                      const PrintArgument& print) {
  std::string out;
  for (std::size_t i = 0; i < pattern.size();) {
    std::size_t next = i + 1;
    const std::size_t number = marksArgument(pattern[i]) ? readNumber(pattern, next) : 0;
    if (number >= 1 && number <= entries.size()) {
      out += printOne(*entries[number - 1], print);
    } else {
      out += pattern.substr(i, next - i);
    }
    i = next;
  }
  return out;
}

std::string printList(const ListPattern& list, std::span<const TextPtr> entries,
                      const PrintArgument& print) {
  const std::size_t step =
      std::max<std::size_t>({1, entriesOf(list.first), entriesOf(list.further)});
  std::string out;
  for (std::size_t i = 0; i < entries.size(); i += step) {
    const auto item = entries.subspan(i, std::min(step, entries.size() - i));
    out += printItem(i == 0 ? list.first : list.further, item, print);
  }
  return out;
}

}  // namespace

std::string fillTemplate(std::string_view pattern, std::span<const TextPtr> arguments,
                         const PrintArgument& print) {
  std::string out;
  for (std::size_t i = 0; i < pattern.size();) {
    if (pattern[i] == '[') {
      const auto list = parseList(pattern.substr(i));
      if (list && list->argument <= arguments.size()) {
        const Text& argument = *arguments[list->argument - 1];
        out += argument.kind == Text::Kind::List ? printList(*list, argument.items, print)
                                                 : print(argument);
      } else if (list) {
        out += pattern.substr(i, list->length);
      }
      if (list) {
        i += list->length;
        continue;
      }
    }
    std::size_t next = i + 1;
    const std::size_t number = pattern[i] == '^' ? readNumber(pattern, next) : 0;
    if (number >= 1 && number <= arguments.size()) {
      out += printOne(*arguments[number - 1], print);
    } else {
      out += pattern.substr(i, next - i);
    }
    i = next;
  }
  return out;
}

}  // namespace embedded::output
