// What can go wrong in the host: a closed list of kinds, each with an exit status of its own.
//
// Errors travel as exceptions inside the host. They never cross a procedure: what happens while a
// procedure reads cases is kept in the session and makes FatalError() true.
#pragma once

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {

enum class ErrorKind {
  Command,    // the command was refused
  Usage,      // the program was called in a wrong way
  Data,       // the data could not be read or do not fit the request
  Output,     // the output could not be written
  Cancelled,  // the user interrupted
  Memory,     // out of memory
  Internal    // always a bug
};

// The process's exit status for an error of this kind: 1, 2, 3, 4, 130, 70, 70.
constexpr int exitStatus(ErrorKind kind) {
  switch (kind) {
    case ErrorKind::Command:
      return 1;
    case ErrorKind::Usage:
      return 2;
    case ErrorKind::Data:
      return 3;
    case ErrorKind::Output:
      return 4;
    case ErrorKind::Cancelled:
      return 130;
    case ErrorKind::Memory:
    case ErrorKind::Internal:
      return 70;
  }
  return 70;
}

// An error by its identifier in the message catalogue and the texts that fill ^1, ^2, ...;
// what() is the identifier with its arguments, for logs.
class Error : public std::runtime_error {
 public:
  Error(ErrorKind kind, std::string_view identifier, std::vector<std::string> arguments = {});

  ErrorKind kind() const { return kind_; }
  const std::string& identifier() const { return identifier_; }
  const std::vector<std::string>& arguments() const { return arguments_; }

 private:
  ErrorKind kind_;
  std::string identifier_;
  std::vector<std::string> arguments_;
};

}  // namespace embedded
