// The command line program: reads its arguments, does what they ask, and turns what goes wrong into
// a message and an exit status.
#include <csignal>
#include <exception>
#include <iostream>
#include <new>

#include "Arguments.h"
#include "Program.h"
#include "embedded/errors/Error.h"
#include "embedded/messages/Catalogue.h"
#include "embedded/session/Session.h"

namespace {

using embedded::Error;
using embedded::ErrorKind;

void interrupt(int /*signal*/) {
  embedded::Session::cancelled = true;
}

const embedded::output::Sentences& sentencesOf(const cli::Arguments& arguments) {
  return embedded::messages::Catalogue::forLanguage(arguments.output.language);
}

int act(const cli::Arguments& arguments) {
  switch (arguments.action) {
    case cli::Arguments::Action::Run:
      return cli::runData(arguments, sentencesOf(arguments));
    case cli::Arguments::Action::Counts:
      return cli::runCounts(arguments, sentencesOf(arguments));
    case cli::Arguments::Action::Describe:
      return cli::describeData(arguments);
    case cli::Arguments::Action::Methods:
      return cli::listMethods(arguments);
  }
  return 0;
}

int report(const Error& error) {
  const auto& sentences = embedded::messages::Catalogue::forLanguage("en");
  std::vector<embedded::output::TextPtr> texts;
  for (const std::string& argument : error.arguments()) {
    texts.push_back(embedded::output::Text::string(argument, false));
  }
  const auto text = embedded::output::Text::composite(error.identifier(), std::move(texts));
  std::cerr << "proportions: " << embedded::output::readerText(*text, sentences) << '\n';
  return embedded::exitStatus(error.kind());
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  std::signal(SIGINT, interrupt);
  std::signal(SIGTERM, interrupt);
  std::signal(SIGPIPE, SIG_IGN);
  try {
    int exit = 0;
    const auto arguments = cli::readArguments(argc, argv, exit);
    return arguments ? act(*arguments) : exit;
  } catch (const Error& error) {
    return report(error);
  } catch (const std::bad_alloc&) {
    return report(Error(ErrorKind::Memory, "Out of memory ..."));
  } catch (const std::exception& problem) {
    return report(Error(ErrorKind::Internal, "Internal error: ^1 ...", {problem.what()}));
  }
}
