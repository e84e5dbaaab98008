// A procedure module, loaded from its file and attached once.
#pragma once

#include <memory>
#include <string>

#include "embedded/output/Description.h"
#include "host/attach/Module.h"

namespace embedded {

class Module {
 public:
  // Loads the module that the description file stands for; the module file lies beside it. With
  // `diagnostic`, its diagnostic build. Every symbol is bound now. Throws Error(Usage) when a
  // file is missing or the module needs an operation that this host lacks.
  static Module load(const std::string& descriptionFile, bool diagnostic);

  Module(Module&&) noexcept = default;
  Module& operator=(Module&&) noexcept = default;

  const output::Description& description() const { return description_; }
  // Carries out the command of the current session.
  void call() const { entry_(); }
  // Switches a diagnostic flag on, by the name that the description gives it. Throws Error(Usage)
  // when this is no diagnostic build, or it has no such flag.
  void switchOn(const std::string& flag) const;

 private:
  Module() = default;

  struct Unload {
    void operator()(void* library) const;
  };
  output::Description description_;
  std::unique_ptr<void, Unload> library_;
  host::EntryFunction entry_ = nullptr;
};

}  // namespace embedded
