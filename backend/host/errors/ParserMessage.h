// Messages about a command.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "host/Api.h"

// A variable's name, passed where the host may want to show more than the bare name.
class HOST_API KoraVarName {
 public:
  explicit KoraVarName(std::string_view name) : name_(name) {}
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

// An error makes the host count the command as refused unless the procedure goes on to accept
// it; a warning never does. The host finds the place in the command by itself. Identifiers are
// looked up in the host's catalogue; `texts`, at most five, fill ^1, ^2, ... in order.
class HOST_API ParserMessage {
 public:
  ParserMessage(std::string_view commandName, std::string_view procedureTitle);
  ~ParserMessage();
  ParserMessage(const ParserMessage&) = delete;
  ParserMessage& operator=(const ParserMessage&) = delete;

  void GenericError(std::string_view identifier,
                    std::initializer_list<std::string_view> texts = {});
  void GenericWarning(std::string_view identifier,
                      std::initializer_list<std::string_view> texts = {});

  // Error: the command has no subcommand.
  void NoSubCom();
  // Error: a value, such as "TESTTYPES NONE", that excludes any other stands with another.
  void ParamExclAnyOther(std::string_view parameterText, std::string_view subcommand);
  // Warning: nothing was asked for that would be shown.
  void NoTableRequested();
  // Error: a variable that must be numeric is a string.
  void VariableNotNumeric(const KoraVarName& variable, std::string_view parameter,
                          std::string_view subcommand);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
