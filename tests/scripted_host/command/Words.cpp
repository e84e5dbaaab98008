// Making commands and data sets from the words of tests.
#include "scripted_host/command/Words.h"

#include <sstream>

namespace scripted {

namespace {

// A number as a user writes it.
std::string written(double number) {
  std::ostringstream out;
  out << number;
  return out.str();
}

Param param(std::string name, Param::Kind kind) {
  return {.name = std::move(name),
          .kind = kind,
          .number = {},
          .keywords = {},
          .qualifier = {},
          .tokens = {}};
}

}  // namespace

Token numberToken(double number) {
  return {.text = written(number), .number = number};
}

Tokens names(const std::vector<std::string>& words) {
  Tokens tokens;
  for (const std::string& text : words) {
    if (text == "WITH")
      tokens.push_back(with());
    else if (text == "BY")
      tokens.push_back(by());
    else if (text.starts_with('('))
      tokens.push_back(qualifier(text.substr(1, text.size() - 2)));
    else
      tokens.push_back(word(text));
  }
  return tokens;
}

Param number(std::string name, double value) {
  Param made = param(std::move(name), Param::Number);
  made.number = value;
  return made;
}

Param keyword(std::string name, std::string value) {
  Param made = param(std::move(name), Param::Keyword);
  made.keywords = {std::move(value)};
  return made;
}

Param keywords(std::string name, std::vector<std::string> values) {
  Param made = param(std::move(name), Param::Keywords);
  made.keywords = std::move(values);
  return made;
}

Param qualified(std::string name, std::string qualifier) {
  Param made = param(std::move(name), Param::Qualified);
  made.qualifier = std::move(qualifier);
  return made;
}

Param cutPoint(std::string name, double value) {
  Param made = qualified(std::move(name), "CUTPOINT");
  made.number = value;
  made.tokens = Tokens{numberToken(value)};
  return made;
}

Param levels(std::string name, const std::vector<double>& values) {
  Param made = qualified(std::move(name), "LEVEL");
  made.tokens.emplace();
  for (const double value : values) made.tokens->push_back(numberToken(value));
  return made;
}

Param levels(std::string name, const std::vector<std::string>& values) {
  Param made = qualified(std::move(name), "LEVEL");
  made.tokens.emplace();
  for (const std::string& value : values) made.tokens->push_back(word(value));
  return made;
}

SubCommand oneSample(const std::vector<std::string>& list, Params params) {
  return {"ONESAMPLE", names(list), std::move(params)};
}

SubCommand paired(const std::vector<std::string>& list, Params params) {
  return {"PAIREDSAMPLES", names(list), std::move(params)};
}

SubCommand independent(const std::vector<std::string>& list, Params params) {
  return {"INDEPENDENTSAMPLES", names(list), std::move(params)};
}

SubCommand success(Param value) {
  return {"SUCCESS", {}, {std::move(value)}};
}

SubCommand missing(const std::string& scope, const std::string& userMissing) {
  return {"MISSING", {}, {keyword("SCOPE", scope), keyword("USERMISSING", userMissing)}};
}

SubCommand level(double percent) {
  return {"CRITERIA", {}, {number("CILEVEL", percent)}};
}

Variable numeric(std::string name, const std::vector<double>& data) {
  Variable variable{.name = std::move(name)};
  for (const double value : data) {
    Value& kept = variable.data.emplace_back();
    if (value != MCMV::Missing) kept = value;
  }
  return variable;
}

Variable text(std::string name, int width, const std::vector<Value>& data) {
  return {.name = std::move(name), .width = width, .data = data};
}

}  // namespace scripted
