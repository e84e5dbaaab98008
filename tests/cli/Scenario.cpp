#include "Scenario.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace cli_tests {

namespace {

constexpr std::string_view mark = "--- ";
constexpr std::array sectionNames{"options", "command", "status", "results", "messages", "text"};

// The place where the lines of a new section go.
std::string& open(Scenario& scenario, const std::string& heading) {
  const std::size_t blank = heading.find(' ');
  const std::string name = heading.substr(0, blank);
  if (name == "data" || name == "schema") {
    const std::string usual = name == "data" ? "data.csv" : "data.schema.json";
    return scenario.files[blank == std::string::npos ? usual : heading.substr(blank + 1)];
  }
  if (std::find(sectionNames.begin(), sectionNames.end(), name) == sectionNames.end()) {
    throw std::runtime_error(scenario.name + ": unknown section " + heading);
  }
  return scenario.sections[name];
}

}  // namespace

std::vector<std::string> Scenario::lines(const std::string& section) const {
  std::vector<std::string> found;
  if (has(section)) {
    std::istringstream stream(sections.at(section));
    for (std::string line; std::getline(stream, line);) {
      if (!line.empty()) {
        found.push_back(line);
      }
    }
  }
  return found;
}

std::string Scenario::text(const std::string& section) const {
  std::string text = has(section) ? sections.at(section) : "";
  text.erase(text.find_last_not_of('\n') + 1);
  return text;
}

int Scenario::status() const {
  return has("status") ? std::stoi(sections.at("status")) : 0;
}

Scenario readScenario(const std::filesystem::path& file) {
  Scenario scenario;
  scenario.name = file.stem().string();
  std::ifstream stream(file, std::ios::binary);
  std::string* section = nullptr;
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with(mark)) {
      section = &open(scenario, line.substr(mark.size()));
    } else if (section != nullptr) {
      *section += line + '\n';
    } else if (!line.empty() && !line.starts_with("#")) {
      throw std::runtime_error(scenario.name + ": a line before the first section: " + line);
    }
  }
  // A blank line before the next section belongs to neither.
  for (auto* texts : {&scenario.files, &scenario.sections}) {
    for (auto& [name, text] : *texts) {
      if (text.ends_with("\n\n")) {
        text.pop_back();
      }
    }
  }
  return scenario;
}

std::vector<Scenario> allScenarios() {
  std::vector<Scenario> scenarios;
  for (const auto& entry : std::filesystem::directory_iterator(PROJECT_ROOT "/tests/scenarios")) {
    if (entry.path().extension() == ".test") {
      scenarios.push_back(readScenario(entry.path()));
    }
  }
  std::sort(scenarios.begin(), scenarios.end(),
            [](const Scenario& a, const Scenario& b) { return a.name < b.name; });
  return scenarios;
}

void writeFiles(const Scenario& scenario, const Folder& folder) {
  for (const auto& [name, content] : scenario.files) {
    folder.write(name, content);
  }
}

Outcome runScenario(const Scenario& scenario, const Folder& folder,
                    const std::vector<std::string>& extra) {
  Call call{.arguments = {"run", "data.csv", "-c", scenario.text("command")},
            .folder = folder.path(),
            .input = {}};
  std::istringstream options(scenario.has("options") ? scenario.sections.at("options") : "");
  for (std::string word; options >> word;) {
    call.arguments.push_back(word);
  }
  call.arguments.insert(call.arguments.end(), extra.begin(), extra.end());
  return run(call);
}

}  // namespace cli_tests
