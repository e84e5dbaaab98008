// An output file that is there whole or not at all.
#pragma once

#include <ostream>
#include <string>

#include "DescriptorBuffer.h"

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

  std::ostream& stream() { return stream_; }
  // Hands on what was written so far. Throws Error(Output), with the reason, when some of it could
  // not be.
  void check();
  // The same, and the file takes its place.
  void commit();
  // Throws Error(Output) for that reason.
  [[noreturn]] void fail(const std::string& reason) const;
  // The same when what could not be written is a temporary file in that folder.
  [[noreturn]] void failFor(const std::string& folder, const std::string& reason) const;

 private:
  void open();
  std::string shownPath() const;

  std::string path_;
  std::string beside_;   // empty: written to as it is
  int descriptor_ = -1;  // of the file
  DescriptorBuffer buffer_;
  std::ostream stream_{&buffer_};
};

}  // namespace cli
