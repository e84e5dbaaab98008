#include "ProgressLine.h"

#include <unistd.h>

#include <iostream>

#include "embedded/output/Text.h"

namespace cli {

namespace {

using embedded::data::Progress;
using embedded::output::Text;
using namespace std::chrono_literals;

constexpr auto patience = 500ms;  // work that is shorter shows nothing
constexpr auto pace = 200ms;
constexpr std::string_view emptyLine = "\r\x1b[K";

// Digits in groups of three, with a blank between them as every language may have it.
std::string grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) {
    digits.insert(at -= 3, 1, ' ');
  }
  return digits;
}

}  // namespace

ProgressLine::ProgressLine(const embedded::output::Sentences& sentences, bool wanted)
    : sentences_(sentences),
      wanted_(wanted && isatty(STDERR_FILENO) != 0),
      next_(begin_ + patience) {}

embedded::data::ProgressListener ProgressLine::listener() {
  if (!wanted_) {
    return {};
  }
  return [this](const Progress& progress) { show(progress); };
}

std::string ProgressLine::textOf(const Progress& progress, double seconds) const {
  const auto text = [](const std::string& words) { return Text::string(words, false); };
  const std::string passed = std::to_string(static_cast<std::uint64_t>(seconds));
  if (progress.rows == 0) {
    return readerText(*Text::composite("Progress seconds ^1", {text(passed)}), sentences_);
  }
  const auto rate = static_cast<double>(progress.rows) / seconds;
  const bool isPart = progress.total >= progress.rows;
  return readerText(*Text::composite(isPart ? "Progress rows ^1 rate ^2 seconds ^3 of ^4"
                                            : "Progress rows ^1 rate ^2 seconds ^3",
                                     {text(grouped(progress.rows)),
                                      text(grouped(static_cast<std::uint64_t>(rate))), text(passed),
                                      text(grouped(progress.total))}),
                    sentences_);
}

void ProgressLine::show(const Progress& progress) {
  const auto now = Clock::now();
  if (now < next_) {
    return;
  }
  next_ = now + pace;
  shown_ = true;
  const double seconds = std::chrono::duration<double>(now - begin_).count();
  std::cerr << emptyLine << textOf(progress, seconds) << std::flush;
}

void ProgressLine::clear() {
  if (shown_) {
    std::cerr << emptyLine << std::flush;
    shown_ = false;
  }
}

}  // namespace cli
