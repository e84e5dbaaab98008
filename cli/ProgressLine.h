// One line on the terminal that says how far a long read has come, and goes away again.
#pragma once

#include <chrono>
#include <string>

#include "embedded/data/Progress.h"
#include "embedded/output/Values.h"

namespace cli {

// Standard error must be a terminal, or nothing is ever shown; nothing is either before half a
// second has passed. What was shown is taken away by clear() and at the end.
class ProgressLine {
 public:
  ProgressLine(const embedded::output::Sentences& sentences, bool wanted);
  ~ProgressLine() { clear(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // What a request is to tell its progress; empty where nobody watches. It must not outlive this.
  embedded::data::ProgressListener listener();
  void clear();

 private:
  using Clock = std::chrono::steady_clock;
  void show(const embedded::data::Progress& progress);
  std::string textOf(const embedded::data::Progress& progress, double seconds) const;

  const embedded::output::Sentences& sentences_;
  bool wanted_;
  bool shown_ = false;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point next_;  // not before then
};

}  // namespace cli
