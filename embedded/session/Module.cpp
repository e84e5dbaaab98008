#include "embedded/session/Module.h"

#include <dlfcn.h>

#include <filesystem>

#include "embedded/errors/Error.h"
#include "embedded/session/DescriptionFile.h"

namespace embedded {

namespace {

template <class Pointer>
Pointer symbol(void* library, const std::string& name) {
  void* found = dlsym(library, name.c_str());
  if (found == nullptr) {
    throw Error(ErrorKind::Usage, "Module lacks symbol ^1 ...", {name});
  }
  return reinterpret_cast<Pointer>(found);
}

}  // namespace

void Module::Unload::operator()(void* library) const {
  dlclose(library);
}

Module Module::load(const std::string& descriptionFile, bool diagnostic) {
  Module module;
  module.description_ = readDescription(descriptionFile);
  const auto& description = module.description_;
  // With its folder spelled out a library is never searched for elsewhere.
  const std::filesystem::path folder = std::filesystem::absolute(descriptionFile).parent_path();
  const std::string file =
      (folder / (diagnostic ? description.diagnosticLibrary : description.library)).string();
  module.library_.reset(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
  if (!module.library_) {
    const char* reason = dlerror();
    throw Error(ErrorKind::Usage, "Cannot load module ^1: ^2 ...",
                {file, reason == nullptr ? "" : reason});
  }
  module.entry_ = symbol<host::EntryFunction>(module.library_.get(), description.entry);
  const auto attach = symbol<host::AttachFunction>(module.library_.get(), description.attach);
  if (attach(module.library_.get(), host::AttachReason, nullptr) != 1) {
    throw Error(ErrorKind::Usage, "Module refused to attach ^1 ...", {file});
  }
  return module;
}

void Module::switchOn(const std::string& flag) const {
  const auto found = description_.diagnosticFlags.find(flag);
  if (found == description_.diagnosticFlags.end()) {
    throw Error(ErrorKind::Usage, "No diagnostic flag ^1 ...", {flag});
  }
  *symbol<bool*>(library_.get(), found->second) = true;
}

}  // namespace embedded
