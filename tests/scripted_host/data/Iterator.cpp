// The cases of the script, with an end mark after each run of equal split values.
#include <algorithm>
#include <cstring>
#include <string>
#include <variant>

#include "host/data/CaseIterator.h"
#include "scripted_host/data/Current.h"
#include "scripted_host/session/Session.h"

KORA_InputCaseIterator::~KORA_InputCaseIterator() = default;
ProcDSIterator::~ProcDSIterator() = default;

namespace scripted {

namespace {

class ScriptedIterator : public ProcDSIterator {
 public:
  ScriptedIterator() {
    for (const Variable& variable : session().script.data.variables)
      rows_ = std::max(rows_, variable.data.size());
    session().created("Iterator");
  }
  ~ScriptedIterator() override {
    session().leave("Iterator");
    session().destroyed("Iterator");
    session().onCase = false;
  }

  bool NextCase() override {
    const bool refused = session().enter("Iterator::NextCase");
    session().onCase = false;
    if (refused || breaksOff()) session().fatal = true;
    if (session().fatal || (atEndMark_ && next_ == rows_)) exhausted_ = true;
    if (exhausted_ || rows_ == 0) {
      atEndMark_ = false;
      return false;
    }
    if (!atEndMark_ && next_ > 0 && (next_ == rows_ || !sameGroup(next_, next_ - 1))) {
      atEndMark_ = true;
      return true;
    }
    if (atEndMark_ || next_ == 0) ++group_;
    atEndMark_ = false;
    row_ = next_++;
    session().group = group_;
    session().row = row_;
    session().onCase = true;
    return true;
  }

  bool SplitGroupEnd() const override {
    session().enter("Iterator::SplitGroupEnd");
    return atEndMark_;
  }

  double Weight() const override {
    session().enter("Iterator::Weight");
    expectCase();
    const std::string& weight = session().script.data.weight;
    return weight.empty() ? 1.0 : numberOf(session().indexOf(weight));
  }

  const OBS* GetObsPointer(int index) const override {
    session().enter("Iterator::GetObsPointer", {session().variable(index).name});
    expectReadable(index);
    load(index);
    return words_.data();
  }

  double GetNumericValue(int index) const override {
    session().enter("Iterator::GetNumericValue", {session().variable(index).name});
    expectReadable(index);
    session().expect(session().variable(index).width == 0, "a number is read from a number");
    return numberOf(index);
  }

  const char* GetStringValue(int index) const override {
    session().enter("Iterator::GetStringValue", {session().variable(index).name});
    expectReadable(index);
    session().expect(session().variable(index).width > 0, "a text is read from a string");
    load(index);
    return reinterpret_cast<const char*>(words_.data());
  }

 private:
  bool breaksOff() const {
    const auto& after = session().script.faults.fatalAfterCases;
    return after && static_cast<std::size_t>(*after) <= next_;
  }
  bool sameGroup(std::size_t a, std::size_t b) const {
    for (const std::string& split : session().script.data.splits) {
      const auto& data = session().variable(session().indexOf(split)).data;
      if (data[a] != data[b]) return false;
    }
    return true;
  }
  void expectCase() const { session().expect(session().onCase, "values are read on a case"); }
  void expectReadable(int index) const {
    expectCase();
    session().expect(session().inUse.contains(index),
                     "only variables are read that a validator has accepted");
  }
  double numberOf(int index) const {
    const double* number = std::get_if<double>(&session().variable(index).data.at(row_));
    return number == nullptr ? MCMV::Missing : *number;
  }
  // Lays the value into whole words, padded with blanks; a null string is all NUL bytes. The place
  // is used again for the next value, so that pointers die as early as they may.
  void load(int index) const {
    const Variable& variable = session().variable(index);
    words_.assign(ObsWords(variable.width), OBS{});
    if (variable.width == 0) {
      words_[0].number = numberOf(index);
    } else if (const auto* text = std::get_if<std::string>(&variable.data.at(row_))) {
      auto* bytes = reinterpret_cast<char*>(words_.data());
      std::memset(bytes, ' ', words_.size() * sizeof(OBS));
      std::memcpy(bytes, text->data(), text->size());
    }
  }

  std::size_t rows_ = 0;
  std::size_t next_ = 0;
  std::size_t row_ = 0;
  int group_ = -1;
  bool atEndMark_ = false;
  bool exhausted_ = false;
  mutable std::vector<OBS> words_;
};

}  // namespace

std::unique_ptr<ProcDSIterator> makeIterator() {
  return std::make_unique<ScriptedIterator>();
}

std::vector<std::pair<std::string, Value>> currentSplit() {
  const Session& host = session();
  std::vector<std::pair<std::string, Value>> split;
  for (const std::string& name : host.script.data.splits)
    split.emplace_back(name, host.variable(host.indexOf(name)).data.at(host.splitRow));
  return split;
}

}  // namespace scripted
