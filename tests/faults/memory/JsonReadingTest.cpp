// Every allocation while a JSON file is read, or written as a tree, failing. The JSON library
// (3.11) takes memory to free a tree, within a destructor that must not throw: such a failure ends
// the process, and nothing else may. Each point has a process of its own.
#include <dlfcn.h>
#include <execinfo.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

#include "FailingAllocator.h"
#include "embedded/data/Describe.h"
#include "embedded/data/Schema.h"
#include "embedded/errors/Error.h"
#include "embedded/session/DescriptionFile.h"

namespace {

// How a process ended; its exit status.
enum class End { Sound, Told, OtherOutput, OtherError, FreeingJson, Terminated };

std::string written(const char* name, const std::string& text) {
  const auto path = std::filesystem::path(testing::TempDir()) / name;
  std::ofstream(path) << text;
  return path.string();
}

constexpr const char* schemaText = R"({"fields": [
  {"name": "v", "type": "number", "title": "Vote", "categories": [{"value": 1, "label": "yes"}, 2],
   "missingValues": ["9", {"value": "8", "label": "refused"}], "constraints": {"maxLength": 8},
   "proportions:missingRanges": [{"min": 90, "max": 99, "label": "out of range"}],
   "proportions:format": {"decimals": 2}},
  {"name": "s", "type": "boolean", "trueValues": ["T", "yes"], "falseValues": ["F", "no"]}],
 "missingValues": ["", "."], "fieldsMatch": "partial", "proportions:weight": "w",
 "proportions:split": ["a", "b"]})";

std::string fields(const embedded::data::Schema& schema) {
  std::string text = schema.weight;
  for (const auto& field : schema.fields) {
    text += field.name + field.title + std::to_string(field.missingRanges.size());
  }
  return text;
}

std::string schemaRead(const std::string& file) {
  return fields(embedded::data::readSchema(file, "data.csv"));
}

embedded::data::Dictionary dictionary() {
  embedded::output::VariableInfo info;
  info.name = info.label = "a variable with a name that is not short";
  info.numberLabels = {{0.0, "failure"}, {9.0, "refused"}};
  embedded::data::Variable variable;
  variable.name = info.name;
  variable.info = std::make_shared<embedded::output::VariableInfo>(info);
  variable.missingNumbers = {9.0};
  embedded::data::Dictionary dictionary;
  dictionary.variables = {variable, variable};
  return dictionary;
}

struct Case {
  const char* name;
  std::function<std::string()> work;
};

void PrintTo(const Case& shown, std::ostream* out) {
  *out << shown.name;
}

// What is prepared stands outside of the work, and so do its allocations.
std::function<std::string()> reading(const char* name, const std::string& text) {
  return [file = written(name, text)] { return schemaRead(file); };
}

const Case cases[] = {
    {"Schema", reading("schema.json", schemaText)},
    {"Package", reading("package.json", R"({"resources": [{"path": "other.csv"}, {"path":
                ["data.csv"], "schema": )" + std::string(schemaText) +
                                            "}]}")},
    {"CutShort", reading("short.json", std::string(schemaText, 400))},
    {"WrongForm", reading("wrong.json", R"({"fields": [{"name": "v"}, {"title": [1, [2, 3]]}]})")},
    {"Module",
     [] { return embedded::readDescription(BUILD_ROOT "/lib/proportions.module.json").command; }},
    {"Describe", [known = dictionary()] { return embedded::data::describe(known); }},
};

// What a sound run gives, or says.
std::string outcomeOf(const Case& run) {
  try {
    return run.work();
  } catch (const embedded::Error& error) {
    return error.what();
  }
}

std::array<void*, 64> frames;  // of the allocation that failed
int frameCount = 0;

// The functions of the frames, a line each, as the table of symbols of their files has them.
std::string functions() {
  std::string names;
  for (int i = 0; i < frameCount; ++i) {
    void* const address = frames[static_cast<std::size_t>(i)];
    Dl_info found{};
    if (dladdr(address, &found) == 0) continue;
    std::array<char, 4096> line;
    const auto place = static_cast<char*>(address) - static_cast<char*>(found.dli_fbase) - 1;
    std::snprintf(line.data(), line.size(), "addr2line -fCe '%s' %tx", found.dli_fname, place);
    FILE* const answer = popen(line.data(), "r");
    if (std::fgets(line.data(), line.size(), answer) != nullptr) names += line.data();
    pclose(answer);
  }
  return names;
}

// Where the failed allocation came from, when the process cannot go on.
[[noreturn]] void onTerminate() {
  const std::string names = functions();
  // The destructor stands for the function that it calls where that has become a part of it.
  const bool freeing = names.find("::json_value::destroy(") != std::string::npos ||
                       names.find("::~basic_json()") != std::string::npos;
  if (!freeing) std::fprintf(stderr, "terminated in\n%s", names.c_str());
  std::_Exit(static_cast<int>(freeing ? End::FreeingJson : End::Terminated));
}

[[noreturn]] void runFailing(const Case& run, std::size_t k, const std::string& sound) {
  std::set_terminate(onTerminate);
  const faults::FailingAllocation failing(k);
  End end = End::OtherError;
  try {
    try {
      end = run.work() == sound ? End::Sound : End::OtherOutput;
    } catch (const embedded::Error& error) {
      end = error.what() == sound ? End::Sound : End::Told;
      if (error.kind() != embedded::ErrorKind::Memory && end == End::Told) end = End::OtherError;
    }
  } catch (const std::bad_alloc&) {
    end = End::Told;
  } catch (...) {
    end = End::OtherError;
  }
  std::_Exit(static_cast<int>(end) + (failing.met() ? 0 : 100));
}

class JsonAllocations : public testing::TestWithParam<Case> {};

TEST_P(JsonAllocations, EndTheProcessOnlyWhereTheLibraryFrees) {
  const Case& run = GetParam();
  const std::string sound = outcomeOf(run);
  ASSERT_FALSE(sound.empty());
  backtrace(frames.data(), 1);  // loads what it needs
  faults::onFailure([] { frameCount = backtrace(frames.data(), frames.size()); });
  std::map<End, std::size_t> ends;
  std::size_t k = 1;
  for (int status = 0;; ++k) {
    const pid_t child = fork();
    if (child == 0) runFailing(run, k, sound);
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << k << ": signal " << WTERMSIG(status);
    if (WEXITSTATUS(status) >= 100) {
      EXPECT_EQ(WEXITSTATUS(status), 100) << "without a fault";
      break;
    }
    ++ends[static_cast<End>(WEXITSTATUS(status))];
  }
  std::printf(
      "fault points, %s, allocations: %zu, of which %zu end the process as the JSON library "
      "frees\n",
      run.name, k - 1, ends[End::FreeingJson]);
  EXPECT_EQ(ends[End::OtherOutput], 0U);
  EXPECT_EQ(ends[End::OtherError], 0U);
  EXPECT_EQ(ends[End::Terminated], 0U);
  EXPECT_GT(ends[End::Told], 10U);
}

INSTANTIATE_TEST_SUITE_P(Files, JsonAllocations, testing::ValuesIn(cases),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
