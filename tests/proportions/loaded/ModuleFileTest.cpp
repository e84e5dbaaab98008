// The module's file, loaded by the scripted host as any host loads it.
#include <dlfcn.h>
#include <elf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "host/attach/Module.h"
#include "scripted_host/attach/CommonAreas.h"
#include "scripted_host/command/Words.h"
#include "scripted_host/session/Session.h"

namespace module_tests {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

const std::string shipped = std::string(BUILD_ROOT) + "/lib/libproportions.so";
const std::string diagnostic = std::string(BUILD_ROOT) + "/lib/libproportions-diagnostic.so";

// A module file while it is loaded, every symbol bound at once.
class LoadedModule {
 public:
  explicit LoadedModule(const std::string& file)
      : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(dlerror());
  }
  ~LoadedModule() { dlclose(handle_); }
  LoadedModule(const LoadedModule&) = delete;
  LoadedModule& operator=(const LoadedModule&) = delete;

  template <class Symbol>
  Symbol find(const char* name) const {
    return reinterpret_cast<Symbol>(dlsym(handle_, name));
  }
  void run() const { find<host::EntryFunction>("PROPORTI")(); }
  int attach(unsigned reason) const {
    return find<host::AttachFunction>("PROPORTI_attach")(handle_, reason, nullptr);
  }
  void* handle() const { return handle_; }

 private:
  void* handle_;
};

// The symbols that a shared object defines for others.
std::set<std::string> exportedSymbols(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  const auto read = [&](auto& object, std::size_t offset) {
    std::memcpy(&object, bytes.data() + offset, sizeof object);
  };
  Elf64_Ehdr header{};
  read(header, 0);
  std::set<std::string> names;
  for (std::size_t i = 0; i < header.e_shnum; ++i) {
    Elf64_Shdr table{};
    read(table, header.e_shoff + i * sizeof table);
    if (table.sh_type != SHT_DYNSYM) continue;
    Elf64_Shdr strings{};
    read(strings, header.e_shoff + table.sh_link * sizeof strings);
    for (std::size_t at = 0; at < table.sh_size; at += sizeof(Elf64_Sym)) {
      Elf64_Sym symbol{};
      read(symbol, table.sh_offset + at);
      if (symbol.st_shndx != SHN_UNDEF && ELF64_ST_BIND(symbol.st_info) != STB_LOCAL)
        names.insert(bytes.data() + strings.sh_offset + symbol.st_name);
    }
  }
  return names;
}

scripted::Script smokers() {
  return {.data = {.variables = {scripted::numeric("v", {1, 1, 0, 1})}},
          .command = {scripted::oneSample({"v"})}};
}

TEST(ModuleFile, ExportsTheEntryAndTheAttachAlone) {
  EXPECT_THAT(exportedSymbols(shipped), UnorderedElementsAre("PROPORTI", "PROPORTI_attach"));
}

TEST(ModuleFile, ExportsTheSwitchesInItsDiagnosticBuildToo) {
  EXPECT_THAT(exportedSymbols(diagnostic),
              UnorderedElementsAre("PROPORTI", "PROPORTI_attach", "gDisplaySpecs",
                                   "gDisplayAlgorithm", "gProbeFindNCParamT"));
}

TEST(ModuleFile, FetchesTheCommonAreasOnceAndInOrderWhenAttached) {
  const LoadedModule module(shipped);
  scripted::fetchedAreas().clear();
  EXPECT_EQ(module.attach(host::AttachReason), 1);
  EXPECT_THAT(scripted::fetchedAreas(), testing::ElementsAreArray(scripted::areaNames));
  EXPECT_EQ(scripted::attachArguments().module, module.handle());
  EXPECT_EQ(scripted::attachArguments().reason, host::AttachReason);
}

TEST(ModuleFile, AnswersOtherNotificationsWithSuccessAndNothingElse) {
  const LoadedModule module(shipped);
  scripted::fetchedAreas().clear();
  for (const unsigned reason : {0u, 2u, 3u, 4711u}) EXPECT_EQ(module.attach(reason), 1) << reason;
  EXPECT_THAT(scripted::fetchedAreas(), testing::IsEmpty());
}

TEST(ModuleFile, CarriesOutACommand) {
  const LoadedModule module(shipped);
  scripted::Session host(smokers());
  module.run();
  EXPECT_THAT(host.log.titles(), ElementsAre("One-Sample Proportions Confidence Intervals",
                                             "One-Sample Proportions Tests"));
  EXPECT_THAT(host.log.violations, testing::IsEmpty());
}

TEST(ModuleFile, KeepsNothingBetweenCommands) {
  const LoadedModule module(shipped);
  std::vector<std::size_t> calls;
  for (int i = 0; i < 3; ++i) {
    scripted::Session host(smokers());
    module.run();
    calls.push_back(host.log.calls.size());
  }
  EXPECT_THAT(calls, testing::Each(calls.front()));
}

TEST(ModuleFile, LetsAnExceptionOfTheHostPassThrough) {
  const LoadedModule module(shipped);
  scripted::Script script = smokers();
  script.faults.throwAt = 1;
  scripted::Session host(script);
  EXPECT_THROW(module.run(), scripted::HostFailure);
}

TEST(ModuleFile, WritesNothingToStandardOutputAndNoDumps) {
  const LoadedModule module(shipped);
  scripted::Session host(smokers());
  testing::internal::CaptureStdout();
  module.run();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_THAT(host.log.lines, testing::IsEmpty());
}

TEST(ModuleFile, WritesDumpsWhenTheDiagnosticBuildsSwitchesAreSet) {
  const LoadedModule module(diagnostic);
  *module.find<bool*>("gDisplaySpecs") = true;
  scripted::Session host(smokers());
  module.run();
  ASSERT_GT(host.log.lines.size(), 2u);
  EXPECT_EQ(host.log.lines[1].label, "PRPValidSpecs display start");
  EXPECT_EQ(host.log.lines.back().label, "PRPValidSpecs display end");
}

}  // namespace
}  // namespace module_tests
