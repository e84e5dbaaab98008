// The description of a command: what a host's parser needs to know to read it.
//
// A procedure builds the description anew each time it parses. Whatever is added is copied:
// later changes to the added object are not seen.
#pragma once

#include <memory>
#include <string_view>

#include "host/Api.h"
#include "host/command/UPSpecTypes.h"

// A named parameter of a subcommand, or of a qualifier.
class HOST_API ParamDescriptor {
 public:
  // `repeatable`: may stand more than once. `valueRequired`: must have a value; a qualifier's
  // parameter without it may stand bare.
  ParamDescriptor(std::string_view name, UPSpecTypes::ParamSpec spec, bool repeatable,
                  bool valueRequired, UPSpecTypes::BracketOptions brackets);
  ParamDescriptor(const ParamDescriptor& other);
  ParamDescriptor& operator=(const ParamDescriptor& other);
  ~ParamDescriptor();

  // One keyword that may be given, in capital letters. [before parse]
  void addStringValue(std::string_view keyword);
  // One qualifier: a bare keyword, or one that carries the parameter it is named after.
  // [before parse]
  void addQualifDesc(std::string_view keyword);
  void addQualifDesc(const ParamDescriptor& parameter);
  // Bounds of a number; without them any finite number is allowed. [before parse]
  void setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option);
  void setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option);

  // The host's own side of the object.
  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

class HOST_API SubComDescriptor {
 public:
  // `repeatable`: may stand more than once. `required`: must stand.
  SubComDescriptor(std::string_view name, UPSpecTypes::SubComSpec spec, bool repeatable,
                   bool required);
  SubComDescriptor(const SubComDescriptor& other);
  SubComDescriptor& operator=(const SubComDescriptor& other);
  ~SubComDescriptor();

  // The subcommand begins with an unnamed value of this kind. [before parse]
  void setExportParamDesc(UPSpecTypes::ParamSpec spec, bool required);
  void addParamDesc(const ParamDescriptor& parameter);

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

class HOST_API CommandDescriptor {
 public:
  // The command's name in capital letters, and the procedure's title for messages.
  CommandDescriptor(std::string_view name, std::string_view title);
  CommandDescriptor(const CommandDescriptor&) = delete;
  CommandDescriptor& operator=(const CommandDescriptor&) = delete;
  CommandDescriptor(CommandDescriptor&& other) noexcept;
  CommandDescriptor& operator=(CommandDescriptor&& other) noexcept;
  ~CommandDescriptor();

  void addSubComDesc(const SubComDescriptor& subcommand);

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};
