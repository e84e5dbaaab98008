#include "render/Reading.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "render/Phrase.h"

namespace render {

namespace {

using embedded::output::Meaning;
using embedded::output::Role;
using embedded::output::State;

constexpr double smallestShare = 0.001;  // of samples, that is told as a number
constexpr int outOf = 1000;              // samples, in readings

bool isSubject(Role role) {
  return role == Role::Outcome || role == Role::Group || role == Role::Comparison;
}

// The labels of a row that are wanted. A group's label says what its cases have in common, but only
// the head above it of what: "Gender = men".
template <class Wanted>
std::string joined(const ReaderTable& table, const ReaderRow& row, Wanted wanted) {
  std::string out;
  std::size_t h = 0;
  for (const RowHead& head : table.rowHeads) {
    for (const std::size_t end = std::min(h + head.width, row.labels.size()); h < end; ++h) {
      const ReaderLabel& label = row.labels[h];
      if (h >= table.splitHeads && !label.text.empty() && wanted(label.role)) {
        out += (out.empty() ? "" : ", ") +
               (label.role == Role::Group ? head.text + " " + label.text : label.text);
      }
    }
  }
  return out;
}

std::string innermost(const ReaderColumn& column) {
  return column.labels.empty() ? std::string() : column.labels.back().text;
}

// The label of the interval that a bound belongs to.
std::string levelOf(const ReaderColumn& column) {
  for (const ReaderLabel& label : column.labels) {
    if (label.role == Role::Level) {
      return label.text;
    }
  }
  return {};
}

// Sentences speak of what the procedure computed of the data, not of resampled copies of it.
// Standard errors are left to the table: intervals and tests say what they are good for.
bool isOwnStatistic(const ReaderTable& table, std::size_t c) {
  const Role role = table.meanings[c].role;
  const bool isBound = role == Role::Lower || role == Role::Upper;
  return role != Role::None && role != Role::StandardError &&
         (!isBound || !levelOf(table.columns[c]).empty());
}

std::optional<std::size_t> find(const ReaderTable& table, Role role) {
  for (std::size_t c = 0; c < table.meanings.size(); ++c) {
    if (table.meanings[c].role == role && isOwnStatistic(table, c)) {
      return c;
    }
  }
  return std::nullopt;
}

bool wasWritten(const ReaderCell& cell) {
  return cell.cell != nullptr;
}

bool isMissing(const ReaderCell& cell) {
  return wasWritten(cell) && cell.cell->state == State::Missing;
}

// Why a statistic is missing, without the period that ends the footnote.
std::string reasonOf(const ReaderTable& table, const ReaderCell& cell) {
  std::string reason = cell.notes.empty() ? std::string() : table.footnotes[cell.notes.front()];
  if (reason.ends_with('.')) {
    reason.pop_back();
  }
  return reason;
}

class Sentence {
 public:
  Sentence(const ReaderTable& table, const ReaderRow& row, const Context& context)
      : table_(table), row_(row), context_(context) {}

  std::string write() {
    for (std::size_t c = 0; c < row_.cells.size(); ++c) {
      if (wasWritten(row_.cells[c]) && isOwnStatistic(table_, c)) {
        add(c);
      }
    }
    if (parts_.empty()) {
      return {};
    }
    const std::string method = methodOf(table_, row_);
    const std::string subject = subjectOf(table_, row_);
    return method.empty()
               ? phraseWithList(context_, "Sentence of ^1: [%1:, ^1:]2", {subject}, parts_)
               : phraseWithList(context_, "Sentence of ^1 by ^2: [%1:, ^1:]3", {subject, method},
                                parts_);
  }

 private:
  std::string say(const char* id, const std::vector<std::string>& arguments) const {
    return phrase(context_, id, arguments);
  }

  // The column of this role next to `c`, when it has a number.
  std::optional<std::size_t> numberBeside(std::size_t c, Role role) const {
    if (c + 1 < row_.cells.size() && table_.meanings[c + 1].role == role &&
        wasWritten(row_.cells[c + 1]) && !isMissing(row_.cells[c + 1])) {
      return c + 1;
    }
    return std::nullopt;
  }

  void add(std::size_t c) {
    const ReaderCell& cell = row_.cells[c];
    const Meaning& meaning = table_.meanings[c];
    if (isMissing(cell)) {
      addMissing(c);
    } else if (meaning.role == Role::Count && numberBeside(c, Role::Trials)) {
      parts_.push_back(say("Count ^1 of ^2", {cell.text, row_.cells[c + 1].text}));
    } else if (meaning.role == Role::Trials && c > 0 &&
               table_.meanings[c - 1].role == Role::Count) {
      return;
    } else if (meaning.role == Role::Lower) {
      if (const auto upper = numberBeside(c, Role::Upper)) {
        parts_.push_back(say("Interval ^1 from ^2 to ^3",
                             {levelOf(table_.columns[c]), cell.text, row_.cells[*upper].text}));
      }
    } else if (meaning.role != Role::Upper) {
      addValue(innermost(table_.columns[c]), cell.text, meaning);
    }
  }

  void addValue(const std::string& label, const std::string& text, const Meaning& meaning) {
    if (text == notANumber) {
      parts_.push_back(say("Statistic ^1 is not a number", {label}));
    } else if (text.starts_with('<')) {
      parts_.push_back(say("Statistic ^1 is less than ^2", {label, text.substr(1)}));
    } else if (meaning.role == Role::Difference && !directionOf(meaning).empty()) {
      parts_.push_back(say("Difference ^1 taken as ^2 is ^3",
                           {label, say(directionOf(meaning).c_str(), {}), text}));
    } else {
      parts_.push_back(say("Statistic ^1 is ^2", {label, text}));
    }
  }

  std::string directionOf(const Meaning& meaning) const {
    return meaning.direction.empty() ? table_.direction : meaning.direction;
  }

  // Both bounds are missing for one reason, which is told once.
  void addMissing(std::size_t c) {
    const Role role = table_.meanings[c].role;
    if (role == Role::Upper && c > 0 && isMissing(row_.cells[c - 1])) {
      return;
    }
    const bool isBound = role == Role::Lower || role == Role::Upper;
    const std::string label = isBound ? levelOf(table_.columns[c]) : innermost(table_.columns[c]);
    const std::string reason = reasonOf(table_, row_.cells[c]);
    parts_.push_back(reason.empty() ? say("Statistic ^1 is missing", {label})
                                    : say("Statistic ^1 is missing because ^2", {label, reason}));
  }

  const ReaderTable& table_;
  const ReaderRow& row_;
  const Context& context_;
  std::vector<std::string> parts_;
};

}  // namespace

std::string subjectOf(const ReaderTable& table, const ReaderRow& row) {
  std::string split = table.splitHeads > 0 ? splitOfRow(table, row) : table.split;
  const std::string subject = joined(table, row, isSubject);
  return split + (split.empty() || subject.empty() ? "" : "; ") + subject;
}

std::string methodOf(const ReaderTable& table, const ReaderRow& row) {
  return joined(table, row, [](Role role) { return !isSubject(role); });
}

std::string rowSentence(const ReaderTable& table, const ReaderRow& row, const Context& context) {
  return Sentence(table, row, context).write();
}

bool holdsTests(const ReaderTable& table) {
  return find(table, Role::PTwoSided) && find(table, Role::Difference);
}

std::string testReading(const ReaderTable& table, const ReaderRow& row, const Context& context) {
  const auto p = find(table, Role::PTwoSided);
  const auto difference = find(table, Role::Difference);
  if (!p || !difference || !wasWritten(row.cells[*p])) {
    return {};
  }
  const std::string subject = subjectOf(table, row);
  const std::string method = methodOf(table, row);
  const ReaderCell& cell = row.cells[*p];
  if (cell.cell->state != State::Valid) {
    const std::string reason = reasonOf(table, cell);
    return reason.empty() ? phrase(context, "Reading of ^1: ^2 not computed", {subject, method})
                          : phrase(context, "Reading of ^1: ^2 not computed because ^3",
                                   {subject, method, reason});
  }
  const Meaning& meaning = table.meanings[*difference];
  const std::string reference = shortNumber(meaning.reference.value_or(0.0), context.decimalPoint);
  const std::string& found = row.cells[*difference].text;
  const std::string label = innermost(table.columns[*difference]);
  if (cell.cell->value < smallestShare) {
    return phrase(context, "Reading of ^1: ^2 is ^3, by ^4 rare if it were ^5",
                  {subject, label, found, method, reference});
  }
  const auto share = std::lround(std::min(cell.cell->value, 1.0) * outOf);
  return phrase(context, "Reading of ^1: ^2 is ^3, by ^4 in ^6 of 1000 if it were ^5",
                {subject, label, found, method, reference, std::to_string(share)});
}

}  // namespace render
