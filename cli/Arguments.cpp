#include "Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <iostream>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

#include "Help.h"
#include "Invocation.h"
#include "OutputFile.h"
#include "Terminal.h"
#include "WrongUsage.h"
#include "embedded/data/InputFile.h"
#include "embedded/errors/Error.h"
#include "embedded/messages/Catalogue.h"
#include "embedded/output/Values.h"
#include "render/Renderer.h"

namespace cli {

namespace {

using embedded::Error;
using embedded::ErrorKind;
using embedded::SplitLayout;

constexpr std::uint32_t mostSamples = 10'000'000;

std::vector<std::string> formatNames() {
  std::vector<std::string> names;
  for (const render::Format& format : render::formats()) {
    names.emplace_back(format.name);
  }
  return names;
}

// A number within bounds, both allowed.
CLI::Validator between(double low, double high) {
  const std::string from = embedded::output::shortest(low);
  const std::string to = embedded::output::shortest(high);
  const auto problem = [=](std::string& text) {
    double number = 0.0;
    const bool inside = CLI::detail::lexical_cast(text, number) && number >= low && number <= high;
    return inside ? std::string() : "Value " + text + " not in range " + from + " to " + to;
  };
  return {problem, "[" + from + " - " + to + "]"};
}

void addLanguage(CLI::App& app, OutputOptions& output) {
  const auto tags = embedded::messages::Catalogue::tags();
  app.add_option("--language", output.language, "Help --language ...")
      ->type_name("TAG:{" + CLI::detail::join(tags, ",") + "}");
}

void addOutput(CLI::App& app, OutputOptions& output) {
  app.add_option("--format", output.format, "Help --format ...")
      ->check(CLI::IsMember(formatNames()))
      ->type_name("FORMAT");
  app.add_option("-o,--output", output.path, "Help --output ...")->type_name("FILE");
  addLanguage(app, output);
  app.add_option("--color", output.colour, "Help --color ...")
      ->check(CLI::IsMember({"auto", "always", "never"}))
      ->type_name("WHEN");
  app.add_flag("--sentences", output.sentences, "Help --sentences ...");
  app.add_flag("--quiet", output.quiet, "Help --quiet ...");
}

void addData(CLI::App& app, Arguments& arguments) {
  embedded::Request& request = arguments.request;
  app.add_option("DATA", request.data, "Help DATA ...")->required();
  app.add_option("--schema", request.schema, "Help --schema ...")->type_name("FILE");
  app.add_option("--weight", request.weight, "Help --weight ...")->type_name("VAR");
  app.add_option("--split", request.splits, "Help --split ...")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("VAR,...");
  app.add_option("--locale", request.locale, "Help --locale ...")->type_name("TAG");
  app.add_option("--threads", request.threads, "Help --threads ...")
      ->check(between(1, 1024))
      ->type_name("N");
  app.add_option("--timeout", request.timeout, "Help --timeout ...")
      ->check(between(0.1, 1e6))
      ->type_name("SECONDS");
  app.add_option("--memory", request.memory, "Help --memory ...")->type_name("SIZE");
}

// What is wrong with a seed; empty when it is one.
std::string seedProblem(const std::string& text) {
  std::uint64_t seed = 0;
  const char* end = text.data() + text.size();
  const auto [stop, problem] = std::from_chars(text.data(), end, seed);
  return problem == std::errc() && stop == end
             ? ""
             : "Value " + text + " not in range 0 to 18446744073709551615";
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
  auto* samples = app.add_option("--bootstrap", options.samples, "Help --bootstrap ...")
                      ->check(between(1, mostSamples))
                      ->type_name("N");
  app.add_option("--seed", options.bootstrap.seed, "Help --seed ...")
      ->check(seedProblem)
      ->needs(samples)
      ->type_name("S");
  addChoice<Interval>(app, "--bootstrap-interval", options.bootstrap.interval,
                      {{"percentile", Interval::Percentile}, {"bca", Interval::Bca}},
                      "Help --bootstrap-interval ...")
      ->needs(samples);
  app.add_option("--bootstrap-level", options.bootstrap.level, "Help --bootstrap-level ...")
      ->needs(samples)
      ->type_name("L");
}

void addImputation(CLI::App& app, ImputationOptions& options) {
  using embedded::output::PoolingDf;
  auto* number = app.add_option("--imputation", options.number, "Help --imputation ...")
                     ->excludes("--bootstrap")
                     ->type_name("VAR");
  addChoice<PoolingDf>(app, "--pooling-df", options.df,
                       {{"barnard-rubin", PoolingDf::BarnardRubin}, {"rubin", PoolingDf::Rubin}},
                       "Help --pooling-df ...")
      ->needs(number);
}

void addRun(CLI::App& app, Arguments& arguments) {
  addData(app, arguments);
  auto* command = app.add_option("-c,--command", arguments.request.command, "Help --command ...")
                      ->type_name("COMMAND");
  app.add_option("-f,--file", arguments.commandFile, "Help --file ...")
      ->excludes(command)
      ->type_name("FILE");
  addChoice<SplitLayout>(app, "--split-layout", arguments.request.splitLayout,
                         {{"rows", SplitLayout::Rows}, {"tables", SplitLayout::Tables}},
                         "Help --split-layout ...");
  app.add_flag_callback(
      "--case-by-case",
      [&arguments] { arguments.request.delivery = embedded::CaseDelivery::CaseByCase; },
      "Help --case-by-case ...");
  // Of no use but to show that results do not depend on it, and so in no help.
  app.add_option("--rows-at-once", arguments.request.rowsAtOnce)->check(between(1, 1e6))->group("");
  auto* dumps =
      app.add_option("--diagnostics", arguments.diagnostics.flags, "Help --diagnostics ...")
          ->delimiter(',')
          ->allow_extra_args(false)
          ->type_name("FLAG,...");
  app.add_option("--diagnostics-file", arguments.diagnostics.path, "Help --diagnostics-file ...")
      ->needs(dumps)
      ->type_name("FILE");
  addBootstrap(app, arguments.bootstrap);
  addImputation(app, arguments.imputation);
  addOutput(app, arguments.output);
}

void addCounts(CLI::App& app, Arguments& arguments) {
  CountsOptions& counts = arguments.counts;
  auto* groups = app.add_option("COUNTS", counts.proportions, "Help COUNTS ...");
  app.add_option("--paired", counts.paired, "Help --paired ...")
      ->excludes(groups)
      ->type_name("B,F,S,N");
  app.add_option("--test-value", counts.testValue, "Help --test-value ...")->type_name("P");
  app.add_option("--level", counts.level, "Help --level ...")->type_name("L");
  app.add_option("--tests", counts.tests, "Help --tests ...")->type_name("LIST");
  app.add_option("--intervals", counts.intervals, "Help --intervals ...")->type_name("LIST");
  addOutput(app, arguments.output);
}

// Says what stopped the reading of the command line: help, the version, or a mistake.
// Returns the exit status.
int answer(const CLI::App& app, const CLI::ParseError& stop,
           const embedded::output::Sentences& sentences) {
  if (stop.get_exit_code() == 0) {
    OutputFile output("");
    app.exit(stop, output.stream());
    output.commit();
    return 0;
  }
  std::cerr << wrongUsage(app, stop, sentences);
  return embedded::exitStatus(ErrorKind::Usage);
}

std::string readFile(const std::string& path) {
  try {
    return embedded::data::contentOf(path);
  } catch (const std::system_error& problem) {
    throw Error(ErrorKind::Usage, "Cannot read command file ^1: ^2 ...",
                {path, problem.code().message()});
  }
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

std::optional<Arguments> readArguments(int argc, char** argv,
                                       const embedded::output::Sentences& sentences, int& exit) {
  Arguments arguments;
  arguments.output.invocation = invocationOf(argc, argv);
  CLI::App app("Help proportions ...", "proportions");
  app.formatter(std::make_shared<Help>(sentences, lineWidth()));
  app.set_help_flag("-h,--help", "Help --help ...");
  app.set_version_flag("--version", "proportions " PROPORTIONS_VERSION, "Help --version ...");
  addLanguage(app, arguments.output);
  app.add_option("--module", arguments.module, "Help --module ...")->type_name("FILE");
  app.require_subcommand(1);

  const std::pair<CLI::App*, Arguments::Action> actions[] = {
      {app.add_subcommand("run", "Help run ..."), Arguments::Action::Run},
      {app.add_subcommand("counts", "Help counts ..."), Arguments::Action::Counts},
      {app.add_subcommand("describe", "Help describe ..."), Arguments::Action::Describe},
      {app.add_subcommand("methods", "Help methods ..."), Arguments::Action::Methods}};
  addRun(*actions[0].first, arguments);
  addCounts(*actions[1].first, arguments);
  addData(*actions[2].first, arguments);
  addLanguage(*actions[2].first, arguments.output);
  addLanguage(*actions[3].first, arguments.output);
  actions[3].first->add_option("KEYWORD", arguments.keyword, "Help KEYWORD ...");

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& problem) {
    exit = answer(app, problem, sentences);
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
