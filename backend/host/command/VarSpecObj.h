// A validator of variables and of their values.
//
// Every variable that a validator accepts is one that the run may read; the host reads no others.
// A validator reports what it refuses itself, with its place in the command, unless its error
// reports are switched off.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "host/Api.h"
#include "host/command/TokenInfoObj.h"
#include "host/command/UPSpecTypes.h"
#include "host/data/KORA_Format.h"
#include "host/data/OBS.h"
#include "host/data/ProcedureDataSource.h"

class HOST_API VarSpecObj {
 public:
  // Named, for its reports, after a subcommand and a parameter or reserved word of it (empty
  // when it stands for the whole subcommand). `source` must outlive it.
  VarSpecObj(const ProcedureDataSource& source, std::string_view subcommand,
             std::string_view parameter);
  ~VarSpecObj();
  VarSpecObj(const VarSpecObj&) = delete;
  VarSpecObj& operator=(const VarSpecObj&) = delete;

  // Loads variables by dictionary index. False when one is refused. [after parse]
  bool SetVariables(std::span<const std::int32_t> variables, UPSpecTypes::RepeatVarOptions repeats);
  bool SetVariable(std::int32_t variable);
  // Reads a list of tokens as variables: names, ranges, `*`; qualifiers too if they are allowed.
  // False when something in it is not an allowed variable. [after parse]
  bool ValidateVariables(const TokenList& tokens, UPSpecTypes::RepeatVarOptions repeats);
  // Reads one token as a variable: its dictionary index, or negative. [after parse]
  std::int32_t ValidateVariable(const TokenInfoObj& token);
  // False, and reported, when this validator and `other` hold a variable in common. [after parse]
  bool CheckCommonVars(const VarSpecObj& other);
  // The dictionary indices accepted, in order. [after parse]
  std::vector<std::int32_t> GetValidVarList() const;

  // Whether a list may end in qualifiers in parentheses, and those that did. [after parse]
  void SetAllowQualifiers(bool allowed);
  TokenList GetQualTokenList() const;

  // Whether refusals are reported; true at first. [after parse]
  void SetErrorReport(bool reports);
  // Whether `text` is a valid category value of the variable that was set or validated last:
  // of a string variable a text that fits its width, of a numeric one a number, one of its value
  // labels, or a date or time. If so, the caller receives and owns the observation value, and
  // `format` is the format by which the text was read. [after parse]
  bool ValidateCatValue(std::string_view text, OwnedOBS& value, KORA_Format& format);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
