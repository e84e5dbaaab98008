// An output file that is there whole or not at all.
#pragma once

#include <fstream>
#include <ostream>
#include <string>

namespace cli {

// Written beside its target and renamed over it by commit(); without commit() the target stays
// as it was. An empty path is standard output.
class OutputFile {
 public:
  // Throws Error(Output) when the file cannot be made.
  explicit OutputFile(std::string path);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::ostream& stream();
  // Hands on what was written so far. Throws Error(Output) when some of it could not be.
  void check();
  // The same, and the file takes its place.
  void commit();

 private:
  std::string path_;
  std::string beside_;
  std::ofstream file_;
};

}  // namespace cli
