// The command line program: reads its arguments, does what they ask, and turns what goes wrong into
// a message and an exit status.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <span>
#include <string>
#include <string_view>

#include "Arguments.h"
#include "ErrorText.h"
#include "Program.h"
#include "embedded/errors/Error.h"
#include "embedded/messages/Catalogue.h"
#include "embedded/session/Session.h"

namespace {

using embedded::Error;
using embedded::ErrorKind;
using embedded::messages::Catalogue;

void interrupt(int /*signal*/) {
  embedded::Session::cancelled = true;
}

// The language that the user asks for, as it stands on the command line: errors in reading that
// line are told in it too.
std::string_view languageOf(std::span<char*> words) {
  constexpr std::string_view option = "--language";
  for (std::size_t i = 1; i < words.size(); ++i) {
    const std::string_view word = words[i];
    if (word == option && i + 1 < words.size()) {
      return words[i + 1];
    }
    if (word.starts_with(option) && word.substr(option.size()).starts_with('=')) {
      return word.substr(option.size() + 1);
    }
  }
  return "en";
}

// What cannot be thrown out of a destructor ends here, with the status of an internal error.
[[noreturn]] void endAtOnce() {
  std::fputs("proportions: Internal error: the program could not go on.\n", stderr);
  std::_Exit(embedded::exitStatus(ErrorKind::Internal));
}

void expectLanguage(std::string_view tag) {
  if (Catalogue::find(tag) != nullptr) {
    return;
  }
  std::string known;
  for (const std::string& one : Catalogue::tags()) {
    known += (known.empty() ? "" : ", ") + one;
  }
  throw Error(ErrorKind::Usage, "Unknown language ^1 ^2 ...", {std::string(tag), known});
}

int act(const cli::Arguments& arguments, const Catalogue& sentences) {
  switch (arguments.action) {
    case cli::Arguments::Action::Run:
      return cli::runData(arguments, sentences);
    case cli::Arguments::Action::Counts:
      return cli::runCounts(arguments, sentences);
    case cli::Arguments::Action::Describe:
      return cli::describeData(arguments);
    case cli::Arguments::Action::Methods:
      return cli::listMethods(arguments, sentences);
  }
  return 0;
}

int report(const Error& error, const Catalogue& sentences) {
  std::cerr << cli::errorLine(error, sentences);
  return embedded::exitStatus(error.kind());
}

}  // namespace

int main(int argc, char** argv) {
  std::ios::sync_with_stdio(false);
  std::signal(SIGINT, interrupt);
  std::signal(SIGTERM, interrupt);
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is an error of its write
  std::set_terminate(endAtOnce);
  const std::string_view language = languageOf({argv, static_cast<std::size_t>(argc)});
  const Catalogue& sentences = Catalogue::forLanguage(language);
  try {
    int exit = 0;
    const auto arguments = cli::readArguments(argc, argv, sentences, exit);
    if (!arguments) {
      return exit;
    }
    expectLanguage(arguments->output.language);
    return act(*arguments, Catalogue::forLanguage(arguments->output.language));
  } catch (const Error& error) {
    return report(error, sentences);
  } catch (const std::bad_alloc&) {
    return report(Error(ErrorKind::Memory, "Out of memory ..."), sentences);
  } catch (const std::exception& problem) {
    return report(Error(ErrorKind::Internal, "Internal error: ^1 ...", {problem.what()}),
                  sentences);
  }
}
