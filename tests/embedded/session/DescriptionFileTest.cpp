// Description files and modules that are not what they should be.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "embedded/errors/Error.h"
#include "embedded/session/DescriptionFile.h"
#include "embedded/session/Module.h"

namespace embedded {
namespace {

constexpr const char* built = BUILD_ROOT "/lib";

class ModuleFiles : public testing::Test {
 protected:
  ModuleFiles() {
    std::string name = (std::filesystem::temp_directory_path() / "module-test-XXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~ModuleFiles() override { std::filesystem::remove_all(folder_); }

  std::string file(const std::string& content, const char* name = "module.json") const {
    std::ofstream(folder_ / name) << content;
    return (folder_ / name).string();
  }
  // A description of a module in this library, with these symbols.
  std::string describing(const std::string& library, const std::string& entry = "PROPORTI",
                         const std::string& attach = "PROPORTI_attach") const {
    return file(R"({"command": "C", "title": "T", "library": ")" + library + R"(", "entry": ")" +
                entry + R"(", "attach": ")" + attach + R"(", "tables": {"A": {}}})");
  }

  std::filesystem::path folder_;
};

// The error of usage that a call ends with: its identifier and its last argument.
std::pair<std::string, std::string> errorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::Usage);
    return {error.identifier(), error.arguments().back()};
  }
  return {};
}

std::string proportionsLibrary() {
  return (std::filesystem::path(built) /
          readDescription(std::string(built) + "/proportions.module.json").library)
      .string();
}

TEST_F(ModuleFiles, MustBeThereToBeRead) {
  const std::string path = (folder_ / "none.json").string();
  EXPECT_EQ(errorOf([&] { readDescription(path); }),
            (std::pair<std::string, std::string>{"Cannot read module description ^1: ^2 ...",
                                                 "No such file or directory"}));
}

TEST_F(ModuleFiles, MustBeDescriptions) {
  for (const char* content : {"", "{", "[]", "{}", R"({"command": 7})",
                              R"({"command": "C", "title": "T", "library": "L", "entry": "E"})"}) {
    EXPECT_EQ(errorOf([&] { readDescription(file(content)); }).first,
              "Invalid module description ^1: ^2 ...")
        << content;
  }
}

TEST_F(ModuleFiles, MayLeaveOutWhatAModuleDoesNotHave) {
  const output::Description description = readDescription(describing("libx.so"));
  EXPECT_EQ(description.command, "C");
  EXPECT_EQ(description.diagnosticLibrary, "");
  EXPECT_TRUE(description.diagnosticFlags.empty());
  EXPECT_EQ(description.levelSubcommand, "");
  EXPECT_TRUE(description.labels.empty());
  ASSERT_EQ(description.tables.size(), 1U);
  EXPECT_FALSE(description.table("A").degreesOfFreedom);
  EXPECT_EQ(description.table("A").groupsTable, "");
}

TEST_F(ModuleFiles, MustNameALibraryThatCanBeLoaded) {
  EXPECT_EQ(errorOf([&] { Module::load(describing("none.so"), false); }).first,
            "Cannot load module ^1: ^2 ...");
  file("no library", "text.so");
  const auto [identifier, reason] = errorOf([&] { Module::load(describing("text.so"), false); });
  EXPECT_EQ(identifier, "Cannot load module ^1: ^2 ...");
  EXPECT_NE(reason, "");
}

TEST_F(ModuleFiles, MustNameSymbolsOfTheLibrary) {
  using Pair = std::pair<std::string, std::string>;
  EXPECT_EQ(errorOf([&] { Module::load(describing(proportionsLibrary(), "none"), false); }),
            (Pair{"Module lacks symbol ^1 ...", "none"}));
  EXPECT_EQ(
      errorOf([&] { Module::load(describing(proportionsLibrary(), "PROPORTI", "nor"), false); }),
      (Pair{"Module lacks symbol ^1 ...", "nor"}));
}

TEST_F(ModuleFiles, MayStandAnywhere) {
  const Module module = Module::load(describing(proportionsLibrary()), false);
  EXPECT_EQ(module.description().title, "T");
  EXPECT_EQ(errorOf([&] { module.switchOn("probe"); }).first, "No diagnostic flag ^1 ...");
}

}  // namespace
}  // namespace embedded
