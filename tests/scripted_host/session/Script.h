// What a test gives the scripted host: the data, the command as a value, and what is to go wrong.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/command/TokenInfoObj.h"
#include "host/data/KORA_Format.h"
#include "host/distributions/MCMV.h"

namespace scripted {

// --- Data ---------------------------------------------------------------------------------------

// One value of one case: nothing at all, a number or a text.
using Value = std::variant<std::monostate, double, std::string>;
inline constexpr std::monostate None{};

struct Variable {
  std::string name{};
  int width = 0;  // in bytes; 0 for a number
  std::vector<Value> data{};
  std::vector<Value> userMissing{};
  std::vector<std::pair<double, double>> missingRanges{};
  // Texts that are read as numbers (a date, a value label), and texts that are no valid value.
  std::map<std::string, double> categoryTexts{};
  std::set<std::string> rejectedTexts{};
  std::optional<FormatType> formatType{};  // when not the usual one of its width
};

struct DataSet {
  std::vector<Variable> variables{};
  std::string weight{};               // empty: not weighted
  std::vector<std::string> splits{};  // outermost first; a group is a run of equal values
  bool splitsAsRows = false;
  bool bootstrapping = false;
  bool keepsCategoryValues = false;  // validated values of categories are not handed out
  // Names of validators that refuse every variable.
  std::set<std::string> refusingValidators{};
};

// --- The command --------------------------------------------------------------------------------

struct Token {
  std::string text{};
  std::optional<double> number{};
  TokenSequenceBase::OperatorCode code = TokenSequenceBase::NoOperator;
  bool qualifier = false;
};
using Tokens = std::vector<Token>;

struct Param {
  enum Kind { Number, Keyword, Keywords, Qualified };

  std::string name{};
  Kind kind = Number;
  std::optional<double> number{};  // none: a number that cannot be delivered
  std::vector<std::string> keywords{};
  std::string qualifier{};
  std::optional<Tokens> tokens{};  // what the qualifier carries
};

struct SubCommand {
  std::string name{};
  std::optional<Tokens> list{};
  std::vector<Param> params{};
};
using Command = std::vector<SubCommand>;

// --- What goes wrong ----------------------------------------------------------------------------

// Calls are counted from 1, over all operations but destructors.
struct Faults {
  std::optional<std::size_t> throwAt{};   // this call throws HostFailure
  std::optional<std::size_t> refuseAt{};  // this one answers its failure, if it has one
  std::optional<int> fatalFromQuery{};    // FatalError() is true from this query on
  std::optional<int> fatalAfterCases{};   // the stream breaks off after so many cases
  bool nullIterator = false;
  bool plainIterator = false;  // an iterator that knows no weights and split groups
  std::set<std::string, std::less<>> failingDistributions{};
};

struct Script {
  DataSet data{};
  Command command{};
  Faults faults{};
  bool checksCommands = true;  // against the description of the command
  // Negative, 0 or positive; code point order when there is none.
  std::function<int(std::string_view, std::string_view)> collation{};
};

}  // namespace scripted
