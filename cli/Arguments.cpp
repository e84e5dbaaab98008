#include "Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <utility>
#include <vector>

#include "Invocation.h"
#include "embedded/errors/Error.h"
#include "embedded/output/Values.h"
#include "render/Renderer.h"

namespace cli {

namespace {

using embedded::Error;
using embedded::ErrorKind;
using embedded::SplitLayout;

constexpr std::uint32_t mostSamples = 10'000'000;
constexpr int wrongUsage = embedded::exitStatus(ErrorKind::Usage);

std::vector<std::string> formatNames() {
  std::vector<std::string> names;
  for (const render::Format& format : render::formats()) {
    names.emplace_back(format.name);
  }
  return names;
}

void addOutput(CLI::App& app, OutputOptions& output) {
  app.add_option("--format", output.format, "The output's format")
      ->check(CLI::IsMember(formatNames()))
      ->type_name("FORMAT");
  app.add_option("-o,--output", output.path, "Where the output goes")->type_name("FILE");
  app.add_option("--language", output.language, "Language of texts")->type_name("TAG");
  app.add_option("--color", output.colour, "Colours on a terminal")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->type_name("WHEN");
  app.add_flag("--sentences", output.sentences,
               "One sentence ready to paste by each row of results");
  app.add_flag("--quiet", output.quiet, "No messages on standard error but errors");
}

void addData(CLI::App& app, Arguments& arguments) {
  embedded::Request& request = arguments.request;
  app.add_option("DATA", request.data,
                 "A file (csv, tsv, parquet, json, duckdb), an address of a table, or - for csv")
      ->required();
  app.add_option("--schema", request.schema, "Dictionary of the data")->type_name("FILE");
  app.add_option("--weight", request.weight, "The case weight")->type_name("VAR");
  app.add_option("--split", request.splits, "Split groups by these variables")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("VAR,...");
  app.add_option("--locale", request.locale, "Collation of strings")->type_name("TAG");
  app.add_option("--threads", request.threads, "Threads of the data engine")
      ->check(CLI::Range(1, 1024));
  app.add_option("--timeout", request.timeout, "Seconds that a server may keep silent")
      ->check(CLI::Range(0.1, 1e6))
      ->type_name("SECONDS");
  app.add_option("--memory", request.memory, "Memory of the data engine, such as 2GB")
      ->type_name("SIZE");
}

// What is wrong with a seed; empty when it is one.
std::string seedProblem(const std::string& text) {
  std::uint64_t seed = 0;
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(text.data(), end, seed);
  return problem == std::errc() && stop == end
             ? ""
             : "Value " + text + " is no whole number from 0 to 18446744073709551615";
}

// An option whose value is one of these names, whatever their case.
template <class Value>
CLI::Option* addChoice(CLI::App& app, const std::string& option, Value& value,
                       const std::vector<std::pair<std::string, Value>>& choices,
                       const std::string& purpose) {
  std::vector<std::string> names;
  std::string together;
  for (const auto& [name, meaning] : choices) {
    names.push_back(name);
    together += (together.empty() ? "" : "|") + name;
  }
  const auto take = [&value, choices](const std::string& name) {
    value = std::find_if(choices.begin(), choices.end(), [&](const auto& choice) {
              return choice.first == name;
            })->second;
  };
  return app.add_option_function<std::string>(option, take, purpose)
      ->transform(CLI::IsMember(names, CLI::ignore_case))
      ->type_name(together);
}

void addBootstrap(CLI::App& app, BootstrapOptions& options) {
  using Interval = embedded::output::BootstrapInterval;
  auto* samples = app.add_option("--bootstrap", options.samples, "Bootstrap samples to draw")
                      ->check(CLI::Range(1U, mostSamples))
                      ->type_name("N");
  app.add_option("--seed", options.bootstrap.seed, "Seed of the samples")
      ->check(seedProblem)
      ->needs(samples)
      ->type_name("S");
  addChoice<Interval>(app, "--bootstrap-interval", options.bootstrap.interval,
                      {{"percentile", Interval::Percentile}, {"bca", Interval::Bca}},
                      "Kind of bootstrap interval")
      ->needs(samples);
  app.add_option("--bootstrap-level", options.bootstrap.level, "Its level in percent")
      ->needs(samples)
      ->type_name("L");
}

void addImputation(CLI::App& app, ImputationOptions& options) {
  using embedded::output::PoolingDf;
  auto* number = app.add_option("--imputation", options.number,
                                "The imputation number: 0 for the original data")
                     ->excludes("--bootstrap")
                     ->type_name("VAR");
  addChoice<PoolingDf>(app, "--pooling-df", options.df,
                       {{"barnard-rubin", PoolingDf::BarnardRubin}, {"rubin", PoolingDf::Rubin}},
                       "Degrees of freedom of pooled results")
      ->needs(number);
}

void addRun(CLI::App& app, Arguments& arguments) {
  addData(app, arguments);
  auto* command = app.add_option("-c,--command", arguments.request.command, "The command");
  app.add_option("-f,--file", arguments.commandFile, "A file that holds the command")
      ->excludes(command);
  addChoice<SplitLayout>(app, "--split-layout", arguments.request.splitLayout,
                         {{"rows", SplitLayout::Rows}, {"tables", SplitLayout::Tables}},
                         "Split groups as rows of common tables, or as tables of their own");
  app.add_flag_callback(
      "--case-by-case",
      [&arguments] { arguments.request.delivery = embedded::CaseDelivery::CaseByCase; },
      "Read every case by itself");
  auto* dumps =
      app.add_option("--diagnostics", arguments.diagnostics.flags, "Diagnostic dumps to write")
          ->delimiter(',')
          ->allow_extra_args(false)
          ->type_name("FLAG,...");
  app.add_option("--diagnostics-file", arguments.diagnostics.path, "Where the dumps go")
      ->needs(dumps)
      ->type_name("FILE");
  addBootstrap(app, arguments.bootstrap);
  addImputation(app, arguments.imputation);
  addOutput(app, arguments.output);
}

void addCounts(CLI::App& app, Arguments& arguments) {
  CountsOptions& counts = arguments.counts;
  auto* groups = app.add_option("COUNTS", counts.proportions,
                                "SUCCESSES/TRIALS of one sample, or of two groups");
  app.add_option("--paired", counts.paired, "Counts of pairs: BOTH,FIRST,SECOND,NEITHER")
      ->excludes(groups);
  app.add_option("--test-value", counts.testValue, "The hypothesised proportion");
  app.add_option("--level", counts.level, "Confidence level in percent");
  app.add_option("--tests", counts.tests, "Tests, by keyword")->type_name("LIST");
  app.add_option("--intervals", counts.intervals, "Intervals, by keyword")->type_name("LIST");
  addOutput(app, arguments.output);
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file) {
    throw Error(ErrorKind::Usage, "Cannot read command file ^1 ...", {path});
  }
  return text;
}

// What the options demand of one another.
void complete(Arguments& arguments) {
  if (arguments.action != Arguments::Action::Run) {
    return;
  }
  if (arguments.bootstrap.samples > 0) {
    const auto& level = arguments.bootstrap.bootstrap.level;
    if (level && !(*level > 0.0 && *level < 100.0)) {
      throw Error(ErrorKind::Usage, "Bootstrap level out of range ^1 ...",
                  {embedded::output::shortest(*level)});
    }
    arguments.request.bootstrap = arguments.bootstrap.bootstrap;
    arguments.request.bootstrap->samples = arguments.bootstrap.samples;
  }
  if (arguments.imputation.number) {
    arguments.request.imputation =
        embedded::Imputation{*arguments.imputation.number, arguments.imputation.df};
  }
  if (!arguments.commandFile.empty()) {
    arguments.request.command = readFile(arguments.commandFile);
  } else if (arguments.request.command.empty()) {
    throw Error(ErrorKind::Usage, "No command given ...");
  }
}

}  // namespace

std::optional<Arguments> readArguments(int argc, char** argv, int& exit) {
  Arguments arguments;
  arguments.output.invocation = invocationOf(argc, argv);
  CLI::App app("Inference on binomial proportions.", "proportions");
  app.set_version_flag("--version", "proportions " PROPORTIONS_VERSION);
  app.add_option("--module", arguments.module, "Description file of the procedure module")
      ->type_name("FILE");
  app.require_subcommand(1);

  const std::pair<CLI::App*, Arguments::Action> actions[] = {
      {app.add_subcommand("run", "Analyse data"), Arguments::Action::Run},
      {app.add_subcommand("counts", "Analyse counts"), Arguments::Action::Counts},
      {app.add_subcommand("describe", "Print the dictionary of data"), Arguments::Action::Describe},
      {app.add_subcommand("methods", "List the methods"), Arguments::Action::Methods}};
  addRun(*actions[0].first, arguments);
  addCounts(*actions[1].first, arguments);
  addData(*actions[2].first, arguments);
  actions[3].first->add_option("KEYWORD", arguments.keyword, "Only methods of this keyword");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& problem) {
    exit = app.exit(problem) == 0 ? 0 : wrongUsage;
    return std::nullopt;
  }
  for (const auto& [subcommand, action] : actions) {
    if (subcommand->parsed()) {
      arguments.action = action;
    }
  }
  arguments.request.splitsGiven = !arguments.request.splits.empty();
  arguments.request.version = PROPORTIONS_VERSION;
  complete(arguments);
  return arguments;
}

}  // namespace cli
