// A parsed command: what the host's parser read, by the names of the command description.
//
// Everything reached from a CommandSpec is owned by it and dies with it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/Api.h"
#include "host/command/TokenInfoObj.h"

// One parameter with its value; also a qualifier with the value that it carries.
class HOST_API ParamObj {
 public:
  virtual ~ParamObj();

  // The declared name, in capital letters. [after parse]
  virtual std::string getParamName() const = 0;
  // Puts the number into `value` and returns true; returns false and leaves `value` as it is
  // when there is no number. [after parse]
  virtual bool getNumberValue(double& value) const = 0;
  // Whether the keyword given is `keyword`, without regard to case. [after parse]
  virtual bool isStringValueCase(std::string_view keyword) const = 0;
  // The tokens of the value, in order; empty when there are none. [after parse]
  virtual TokenList getTokenList() const = 0;
  // The keywords given, whole and in capital letters, in order and with repeats. [after parse]
  virtual std::vector<std::string> getUpStringList() const = 0;
  // The qualifier chosen, with its declared name and the value that it carries; null when the
  // parameter is of another kind. `keyword` receives its name as declared. [after parse]
  virtual const ParamObj* getStringAndQual(std::string& keyword) const = 0;
  // Whether a value stands here at all: false for a qualifier without one, such as a bare
  // LEVEL or LEVEL(). [after parse]
  virtual bool isLeadingToken() const = 0;
};

class HOST_API SubComObj {
 public:
  virtual ~SubComObj();

  // The parameter of this declared name, null when it was not given. [after parse]
  virtual const ParamObj* getParamObj(std::string_view name) const = 0;
  // The unnamed value that the subcommand begins with, null when there is none. [after parse]
  virtual const ParamObj* exportParamObj() const = 0;
  // The subcommand's name as the user wrote it. [after parse]
  virtual std::string getSubComExtName() const = 0;
};

class HOST_API CommandSpec {
 public:
  CommandSpec();
  ~CommandSpec();
  CommandSpec(const CommandSpec&) = delete;
  CommandSpec& operator=(const CommandSpec&) = delete;

  // Number of subcommands that were given. [after parse]
  int getSubComListSize() const;
  // The subcommand of this declared name, null when it was not given. [after parse]
  const SubComObj* getSubComObj(std::string_view name) const;

  struct Impl;
  Impl& impl() { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};
