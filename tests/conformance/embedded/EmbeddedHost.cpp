// Writes the sample as a file with its sidecar, opens it, and makes a session of it current.
#include "EmbeddedHost.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "embedded/data/OpenData.h"
#include "embedded/session/Session.h"

namespace conformance_tests {

namespace {

using conformance::Sample;
using conformance::SampleVariable;

std::string cell(const SampleVariable& variable, std::size_t row) {
  if (variable.width > 0) return variable.texts[row].value_or("");
  const auto& number = variable.numbers[row];
  return number ? std::to_string(*number) : "";
}

void writeCsv(const Sample& data, const std::string& path) {
  std::ofstream file(path);
  for (const SampleVariable& variable : data.variables) {
    file << (&variable == data.variables.data() ? "" : ",") << variable.name;
  }
  for (std::size_t row = 0; row < data.rows(); ++row) {
    file << '\n';
    for (const SampleVariable& variable : data.variables) {
      file << (&variable == data.variables.data() ? "" : ",") << cell(variable, row);
    }
  }
  file << '\n';
}

void writeSchema(const Sample& data, const std::string& path) {
  std::ofstream file(path);
  file << R"({"fields": [)";
  for (const SampleVariable& variable : data.variables) {
    file << (&variable == data.variables.data() ? "" : ", ") << R"({"name": ")" << variable.name
         << R"(", "type": ")" << (variable.width > 0 ? "string" : "number") << '"';
    if (variable.width > 0) file << R"(, "constraints": {"maxLength": )" << variable.width << '}';
    file << R"(, "missingValues": [""])";
    if (!variable.userMissing.empty()) {
      file << R"(, "proportions:missingRanges": [{"min": )" << variable.userMissing.front()
           << R"(, "max": )" << variable.userMissing.front() << "}]";
    }
    file << '}';
  }
  file << "]}";
}

}  // namespace

void EmbeddedHost::run(const Sample& data, const std::string& command,
                       const std::function<void()>& procedure) {
  const auto folder =
      std::filesystem::temp_directory_path() / ("conformance-" + std::to_string(::getpid()));
  std::filesystem::create_directories(folder);
  const std::string file = (folder / "sample.csv").string();
  writeCsv(data, file);
  writeSchema(data, (folder / "sample.schema.json").string());

  embedded::Session session;
  const embedded::Session::Scope scope(session);
  session.commandText = command;
  embedded::data::DataOptions options;
  options.address = file;
  options.weight = data.weight;
  options.splits = std::vector<std::string>{data.split};
  options.cases.mode = embedded::data::CaseMode::CaseByCase;
  auto opened = embedded::data::openData(options);
  session.dictionary = std::move(opened.dictionary);
  session.cases = std::move(opened.cases);
  session.document.data = std::move(opened.info);
  procedure();
  std::filesystem::remove_all(folder);
}

}  // namespace conformance_tests

std::unique_ptr<conformance::Host> conformance::makeHost() {
  return std::make_unique<conformance_tests::EmbeddedHost>();
}
