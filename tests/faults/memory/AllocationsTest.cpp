// Every allocation of whole runs in the embedded host, failing: a typed error comes out, nothing
// crashes, and the next command gives what it gave before.
//
// The runs are of counts in memory, from the command to the written tables. What is read from files
// of JSON is in JsonReadingTest.cpp.
#include <gtest/gtest.h>

#include <cstdio>
#include <new>
#include <ostream>
#include <sstream>
#include <string>

#include "FailingAllocator.h"
#include "embedded/errors/Error.h"
#include "embedded/messages/Catalogue.h"
#include "embedded/session/Run.h"
#include "render/Renderer.h"

namespace {

using embedded::Error;
using embedded::ErrorKind;
using embedded::Module;
using embedded::Request;
using embedded::data::MemoryTable;

struct Case {
  const char* name;
  const char* command;
  const char* format;
  bool accepted = true;
};

void PrintTo(const Case& shown, std::ostream* out) {
  *out << shown.name;
}

const Case cases[] = {
    {"OneSample", "PROPORTIONS /ONESAMPLE v u CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LEVEL(1)",
     "csv"},
    {"Paired", "PROPORTIONS /PAIREDSAMPLES v WITH u CITYPES=ALL TESTTYPES=ALL", "text"},
    {"Independent",
     "PROPORTIONS /INDEPENDENTSAMPLES v BY u CITYPES=ALL TESTTYPES=ALL "
     "/MISSING SCOPE=LISTWISE /CRITERIA CILEVEL=99",
     "text"},
    {"Refused", "PROPORTIONS /ONESAMPLE v nobody CITYPES=ALL", "text", false},
    {"ToJson", "PROPORTIONS /ONESAMPLE v u", "json"},
    {"RefusedToJson", "PROPORTIONS /ONESAMPLE v nobody CITYPES=ALL", "json", false},
    {"ToHtml", "PROPORTIONS /PAIREDSAMPLES v WITH u", "html"},
    {"ToMarkdown", "PROPORTIONS /INDEPENDENTSAMPLES v BY u", "markdown"},
    {"ToLatex", "PROPORTIONS /ONESAMPLE v u", "latex"},
    {"ToAWorkbook", "PROPORTIONS /ONESAMPLE v u", "xlsx"},
};

Request requestOf(const Case& run) {
  Request request;
  request.command = run.command;
  MemoryTable table;
  for (const char* name : {"v", "u"}) {
    embedded::output::VariableInfo info;
    info.name = name;
    info.numberLabels = {{0.0, "failure"}, {1.0, "success"}};
    table.variables.push_back(std::move(info));
  }
  table.rows = {{1, 1}, {1, 0}, {0, 1}, {0, 0}};
  table.counts = {12, 5, 9, 14};
  request.table = std::move(table);
  return request;
}

// Never unloaded: a leak checker names what stays behind by the functions of the module.
const Module& module() {
  static const Module* const loaded =
      new Module(Module::load(BUILD_ROOT "/lib/proportions.module.json", false));
  return *loaded;
}

// The whole way from a request to the written document.
std::string outputOf(const Case& run, const Request& request) {
  const auto session = embedded::run(request, module());
  EXPECT_EQ(session->document.accepted, run.accepted);
  render::Context context;
  context.sentences = &embedded::messages::Catalogue::forLanguage("en");
  context.description = &module().description();
  std::ostringstream out;
  out.exceptions(std::ios::badbit);  // a failure in writing is not to be swallowed
  render::findFormat(run.format)->render(session->document, context, out);
  return out.str();
}

std::string outputOf(const Case& run) {
  return outputOf(run, requestOf(run));
}

// Whether the run with its k-th allocation failing ended as runs may end.
void runFailing(const Case& run, std::size_t k, const std::string& sound, bool& met) {
  const Request request = requestOf(run);
  const faults::FailingAllocation failing(k);
  try {
    const std::string output = outputOf(run, request);
    met = failing.met();
    // What was lost may only be something that nobody sees.
    if (output != sound) ADD_FAILURE() << "allocation " << k << " failed without a word";
  } catch (const std::bad_alloc&) {
    met = true;
  } catch (const Error& error) {
    met = true;
    if (error.kind() != ErrorKind::Memory) ADD_FAILURE() << k << ": " << error.what();
  }
}

class Allocations : public testing::TestWithParam<Case> {};

TEST_P(Allocations, EachMayFail) {
  const Case& run = GetParam();
  const std::string sound = outputOf(run);
  ASSERT_FALSE(sound.empty());
  std::size_t k = 1;
  for (bool met = true; met && !HasFailure(); ++k) {
    runFailing(run, k, sound, met);
    if (k % 64 == 0) {
      EXPECT_EQ(outputOf(run), sound) << "after allocation " << k;
    }
  }
  std::printf("fault points, %s, allocations: %zu\n", run.name, k - 2);
  EXPECT_EQ(outputOf(run), sound);
  EXPECT_GT(k, 300U);
}

INSTANTIATE_TEST_SUITE_P(Runs, Allocations, testing::ValuesIn(cases),
                         [](const auto& each) { return each.param.name; });

}  // namespace
