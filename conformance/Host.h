// What the engineer of a host writes to have it checked: one function that carries out a run.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace conformance {

// A variable of the sample and its values; nothing where a value is system-missing (a number) or
// null (a text).
struct SampleVariable {
  std::string name;
  int width = 0;  // of a string variable, in bytes; 0 for a number
  std::vector<std::optional<double>> numbers;
  std::vector<std::optional<std::string>> texts;
  std::vector<double> userMissing;
};

// The data set of every run: the cases as a file would have them, in no order.
struct Sample {
  std::vector<SampleVariable> variables;  // dictionary indices are places in this list
  std::string weight;                     // names
  std::string split;
  std::size_t rows() const;
};

// v, s, w and g: a number with user-missing 9, a string of 12 bytes, the weight, and the split
// variable. Three split groups, one of a missing value.
Sample sample();

class Host {
 public:
  virtual ~Host() = default;

  // Makes the sample the active data set, delivered case by case and with its split groups laid as
  // rows; makes `command` the command that is being carried out; calls `procedure` as it would
  // call the entry of a module; and lets what that throws pass.
  virtual void run(const Sample& data, const std::string& command,
                   const std::function<void()>& procedure) = 0;
};

// The host under test, for the program in main.cpp: whoever links the kit defines it.
std::unique_ptr<Host> makeHost();

}  // namespace conformance
