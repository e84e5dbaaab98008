// `run` and `describe`: from the request to the written document.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "OutputFile.h"
#include "Program.h"
#include "ProgressLine.h"
#include "Terminal.h"
#include "embedded/errors/Error.h"
#include "render/Messages.h"
#include "render/Renderer.h"

namespace cli {

namespace {

using embedded::Error;
using embedded::ErrorKind;
using embedded::output::Document;
using embedded::output::Severity;

bool usesColour(const OutputOptions& output) {
  if (output.colour != "auto") {
    return output.colour == "always";
  }
  return output.path.empty() && writesToTerminal() && std::getenv("NO_COLOR") == nullptr;
}

const render::Format& chooseFormat(const OutputOptions& output) {
  const render::Format* byName = render::findFormat(output.format);
  const render::Format* byFile = render::formatOfFile(output.path);
  if (byName != nullptr) {
    return *byName;
  }
  if (!output.path.empty() && byFile == nullptr) {
    throw Error(ErrorKind::Usage, "Unknown output format of ^1 ...", {output.path});
  }
  return byFile == nullptr ? render::formats().front() : *byFile;
}

// The format that is wanted, where it can be written.
const render::Format& expectFormat(const OutputOptions& output) {
  const render::Format& format = chooseFormat(output);
  if (format.content == render::Content::Bytes && output.path.empty() && writesToTerminal()) {
    throw Error(ErrorKind::Usage, "No terminal can show ^1 ...", {std::string(format.name)});
  }
  return format;
}

std::string moduleDescription(const Arguments& arguments) {
  if (!arguments.module.empty()) {
    return arguments.module;
  }
  const auto program = std::filesystem::read_symlink("/proc/self/exe");
  return (program.parent_path().parent_path() / "lib" / "proportions.module.json").string();
}

// The sentences of a language for formats that programs read: numbers in them have a decimal point.
class PointDecimals final : public embedded::output::Sentences {
 public:
  static constexpr std::string_view decimalMark = "Decimal mark";

  explicit PointDecimals(const Sentences& sentences) : sentences_(sentences) {}
  std::string_view sentence(std::string_view identifier) const override {
    return identifier == decimalMark ? "." : sentences_.sentence(identifier);
  }

 private:
  const Sentences& sentences_;
};

// Messages on standard error: of a refused command, and where the format has no room for them.
void writeMessages(const Document& document, const render::Context& context,
                   const OutputOptions& output) {
  for (const auto& message : document.messages) {
    if (!output.quiet || message.severity == Severity::Error) {
      std::cerr << render::messageText(document, message, context);
    }
  }
}

// The diagnostic dumps: text lines, to a file or to standard error.
class Diagnostics {
 public:
  explicit Diagnostics(const Arguments& arguments)
      : flags_(arguments.diagnostics.flags), file_(std::make_shared<std::ofstream>()) {
    // The probe writes to standard output by itself.
    if (std::find(flags_.begin(), flags_.end(), "probe") != flags_.end() &&
        arguments.output.path.empty()) {
      throw Error(ErrorKind::Usage, "Probe wants an output file ...");
    }
    if (const std::string& path = arguments.diagnostics.path; !path.empty()) {
      file_->open(path);
      if (!*file_) {
        throw Error(ErrorKind::Output, "Cannot write ^1: ^2 ...", {path, std::strerror(errno)});
      }
    }
  }

  bool wanted() const { return !flags_.empty(); }

  void prepare(const embedded::Module& module, embedded::Request& request) const {
    if (!wanted()) {
      return;
    }
    for (const std::string& flag : flags_) {
      module.switchOn(flag);
    }
    request.diagnostics = [file = file_](const std::string& line) {
      (file->is_open() ? *file : std::cerr) << line << '\n';
    };
  }

 private:
  const std::vector<std::string>& flags_;
  std::shared_ptr<std::ofstream> file_;
};

// What renderers need to know, but for the sentences.
render::Context contextOf(const OutputOptions& output, const embedded::Module& module) {
  render::Context context;
  context.description = &module.description();
  context.width = lineWidth();
  context.colour = usesColour(output);
  context.language = output.language;
  context.invocation = output.invocation;
  context.rowSentences = output.sentences;
  return context;
}

// Writes the document: the first split groups may leave while the last ones are computed.
class PartWriter {
 public:
  PartWriter(const render::Format& format, const render::Context& context, OutputFile& output)
      : format_(format), context_(context), output_(output) {}

  // Whole split groups of a document that will go on.
  void add(const Document& part) {
    if (!begun_) {
      format_.begin(part, context_, output_.stream());
      begun_ = true;
    }
    format_.part(part, context_, output_.stream());
    output_.check();
  }

  // The document, or what is left of it.
  void finish(const Document& document) {
    try {
      (begun_ ? format_.part : format_.render)(document, context_, output_.stream());
    } catch (const std::filesystem::filesystem_error& problem) {
      output_.failFor(problem.path1().string(), problem.code().message());
    }
    output_.commit();
  }

 private:
  const render::Format& format_;
  const render::Context& context_;
  OutputFile& output_;
  bool begun_ = false;
};

}  // namespace

int runAndWrite(embedded::Request request, const Arguments& arguments,
                const embedded::output::Sentences& sentences) {
  const render::Format& format = expectFormat(arguments.output);
  const Diagnostics diagnostics(arguments);
  const auto module = embedded::Module::load(moduleDescription(arguments), diagnostics.wanted());
  diagnostics.prepare(module, request);
  const PointDecimals forMachines(sentences);
  render::Context context = contextOf(arguments.output, module);
  if (format.forMachines) {
    context.sentences = &forMachines;
  } else {
    context.sentences = &sentences;
    context.decimalPoint = sentences.sentence(PointDecimals::decimalMark);
  }
  OutputFile output(arguments.output.path);
  PartWriter writer(format, context, output);
  ProgressLine progress(sentences, !arguments.output.quiet && !diagnostics.wanted());
  request.progress = progress.listener();
  if (format.part != nullptr) {
    request.finishedGroups = [&](const Document& part) {
      progress.clear();
      writer.add(part);
    };
  }
  const auto session = embedded::run(request, module);
  progress.clear();
  const Document& document = session->document;

  // A document that holds its messages, and stands on the terminal, says them itself.
  const bool written = document.accepted || (format.forMachines && format.holdsMessages);
  if (!(written && format.holdsMessages && arguments.output.path.empty())) {
    writeMessages(document, context, arguments.output);
  }
  if (written) {
    writer.finish(document);
  }
  return document.accepted ? 0 : embedded::exitStatus(ErrorKind::Command);
}

int runData(const Arguments& arguments, const embedded::output::Sentences& sentences) {
  return runAndWrite(arguments.request, arguments, sentences);
}

int describeData(const Arguments& arguments) {
  OutputFile output("");
  output.stream() << embedded::describe(arguments.request);
  output.commit();
  return 0;
}

}  // namespace cli
