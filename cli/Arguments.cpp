#include "Arguments.h"

#include <CLI/CLI.hpp>
#include <fstream>
#include <iterator>
#include <map>

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
  app.add_flag("--quiet", output.quiet, "No messages on standard error but errors");
}

void addData(CLI::App& app, Arguments& arguments) {
  embedded::Request& request = arguments.request;
  app.add_option("DATA", request.data, "A file (csv, tsv, parquet, json, duckdb), or - for csv")
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
  app.add_option("--memory", request.memory, "Memory of the data engine, such as 2GB")
      ->type_name("SIZE");
}

void addBootstrap(CLI::App& app, BootstrapOptions& options) {
  static const std::map<std::string, embedded::output::BootstrapInterval> intervals{
      {"percentile", embedded::output::BootstrapInterval::Percentile},
      {"bca", embedded::output::BootstrapInterval::Bca}};
  auto* samples = app.add_option("--bootstrap", options.samples, "Bootstrap samples to draw")
                      ->check(CLI::Range(1U, mostSamples))
                      ->type_name("N");
  app.add_option("--seed", options.bootstrap.seed, "Seed of the samples")
      ->needs(samples)
      ->type_name("S");
  app.add_option("--bootstrap-interval", options.bootstrap.interval, "Kind of bootstrap interval")
      ->transform(CLI::CheckedTransformer(intervals, CLI::ignore_case))
      ->needs(samples)
      ->type_name("percentile|bca");
  app.add_option("--bootstrap-level", options.bootstrap.level, "Its level in percent")
      ->needs(samples)
      ->type_name("L");
}

void addRun(CLI::App& app, Arguments& arguments) {
  static const std::map<std::string, SplitLayout> layouts{{"rows", SplitLayout::Rows},
                                                          {"tables", SplitLayout::Tables}};
  addData(app, arguments);
  auto* command = app.add_option("-c,--command", arguments.request.command, "The command");
  app.add_option("-f,--file", arguments.commandFile, "A file that holds the command")
      ->excludes(command);
  app.add_option("--split-layout", arguments.request.splitLayout,
                 "Split groups as rows of common tables, or as tables of their own")
      ->transform(CLI::CheckedTransformer(layouts, CLI::ignore_case))
      ->type_name("rows|tables");
  app.add_flag_callback(
      "--case-by-case",
      [&arguments] { arguments.request.delivery = embedded::CaseDelivery::CaseByCase; },
      "Read every case by itself");
  app.add_option("--diagnostics", arguments.diagnostics.flags, "Diagnostic dumps to write")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("FLAG,...");
  app.add_option("--diagnostics-file", arguments.diagnostics.path, "Where the dumps go")
      ->type_name("FILE");
  addBootstrap(app, arguments.bootstrap);
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
  if (!arguments.commandFile.empty()) {
    arguments.request.command = readFile(arguments.commandFile);
  } else if (arguments.request.command.empty()) {
    throw Error(ErrorKind::Usage, "No command given ...");
  }
}

}  // namespace

std::optional<Arguments> readArguments(int argc, char** argv, int& exit) {
  Arguments arguments;
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
