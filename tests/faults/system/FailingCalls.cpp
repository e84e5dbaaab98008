// Makes a system call of the program fail that loads this library first (LD_PRELOAD). Linux on
// x86-64, whose numbers and registers it knows.
//
// Calls are caught where the kernel takes them: a filter turns them into a signal, whose handler
// makes the call itself or lets it fail. So those that libraries make for themselves are among
// them: of streams and the stdio functions, of the loader, of the engine.
//
// Environment of the program:
//   FAILING_CALLS    the kind of call: a name in the table below
//   FAILING_FOLDERS  absolute folders, with ':' between them; files elsewhere are let alone
//   FAILING_AT       which of these calls, counted from 1
//   FAILING_HOW      the number of an error; 0: a read or a write does half of what it could
//   FAILING_LASTS    "1": all calls after that one as well
//   FAILING_REPORT   a file that gets the path of the first call that failed
#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <ucontext.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// The kernel's call as it is: the result or the negative number of an error. The filter knows it by
// the address behind its instruction.
asm(R"(
  .text
  .type plain_call, @function
plain_call:
  mov %rdi, %rax
  mov %rsi, %rdi
  mov %rdx, %rsi
  mov %rcx, %rdx
  mov %r8, %r10
  mov %r9, %r8
  mov 8(%rsp), %r9
  syscall
after_plain_call:
  ret
)");
extern "C" long plain_call(long number, long a, long b, long c, long d, long e, long f);
extern "C" const char after_plain_call;

namespace {

// How a call names its file, and what of it can be done in part.
enum class Names { Descriptor, Path, FolderAndPath };
enum class Part { None, Bytes, Pieces };

struct Call {
  std::string_view kind;
  long number;
  Names names;
  Part part = Part::None;
};

constexpr Call calls[] = {
    {"open", SYS_open, Names::Path},
    {"open", SYS_openat, Names::FolderAndPath},
    {"read", SYS_read, Names::Descriptor, Part::Bytes},
    {"read", SYS_pread64, Names::Descriptor, Part::Bytes},
    {"read", SYS_readv, Names::Descriptor, Part::Pieces},
    {"list", SYS_getdents64, Names::Descriptor},
    {"map", SYS_mmap, Names::Descriptor},
    {"status", SYS_stat, Names::Path},
    {"status", SYS_lstat, Names::Path},
    {"status", SYS_fstat, Names::Descriptor},
    {"status", SYS_newfstatat, Names::FolderAndPath},
    {"status", SYS_statx, Names::FolderAndPath},
    {"status", SYS_access, Names::Path},
    {"write", SYS_write, Names::Descriptor, Part::Bytes},
    {"write", SYS_pwrite64, Names::Descriptor, Part::Bytes},
    {"write", SYS_writev, Names::Descriptor, Part::Pieces},
    {"size", SYS_ftruncate, Names::Descriptor},
    {"size", SYS_fallocate, Names::Descriptor},
    {"sync", SYS_fsync, Names::Descriptor},
    {"sync", SYS_fdatasync, Names::Descriptor},
    {"close", SYS_close, Names::Descriptor},
    {"rename", SYS_rename, Names::Path},
    {"rename", SYS_renameat2, Names::FolderAndPath},
    {"make", SYS_mkdir, Names::Path},
    {"remove", SYS_unlink, Names::Path},
    {"remove", SYS_unlinkat, Names::FolderAndPath},
    {"remove", SYS_rmdir, Names::Path},
};

using Arguments = std::array<long, 6>;
using PathText = std::array<char, PATH_MAX>;

struct Plan {
  std::string_view kind;
  std::string_view folders;
  long at = 0;
  int error = 0;
  bool lasts = false;
  const char* report = nullptr;
};

// Set before the filter is, and read by the handler.
Plan plan;
std::atomic<long> seen = 0;

long make(long number, const Arguments& a) {
  return plain_call(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}

template <class Value>
long argument(Value* pointer) {
  return reinterpret_cast<long>(pointer);
}

// The file of a descriptor; empty when it has none.
std::string_view pathOf(long descriptor, PathText& text) {
  std::array<char, 64> link;
  if (descriptor == AT_FDCWD) {
    std::snprintf(link.data(), link.size(), "/proc/self/cwd");
  } else {
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%ld", descriptor);
  }
  const long length = make(SYS_readlink, {argument(link.data()), argument(text.data()),
                                          static_cast<long>(text.size()), 0, 0, 0});
  return {text.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

// The file that a path names, seen from a folder. An empty path is the folder itself.
std::string_view pathOf(long folder, const char* path, PathText& text) {
  if (path == nullptr || *path == '\0') return pathOf(folder, text);
  if (*path == '/') return path;
  const std::size_t length = pathOf(folder, text).size();
  const int more = std::snprintf(text.data() + length, text.size() - length, "/%s", path);
  return {text.data(), std::min(length + static_cast<std::size_t>(more), text.size() - 1)};
}

std::string_view fileOf(const Call& call, const Arguments& arguments, PathText& text) {
  switch (call.names) {
    case Names::Path:
      return pathOf(AT_FDCWD, reinterpret_cast<const char*>(arguments[0]), text);
    case Names::FolderAndPath:
      return pathOf(arguments[0], reinterpret_cast<const char*>(arguments[1]), text);
    case Names::Descriptor:
      // Memory is mapped from the descriptor in its fifth argument.
      return pathOf(call.number == SYS_mmap ? static_cast<int>(arguments[4]) : arguments[0], text);
  }
  return {};
}

// Files in the folders, and the folders themselves where they are listed.
bool isMeant(std::string_view file) {
  for (std::string_view rest = plan.folders; !rest.empty();) {
    const std::string_view folder = rest.substr(0, rest.find(':'));
    if (file == folder && plan.kind == "list") return true;
    if (file.starts_with(folder) && file.substr(folder.size()).starts_with('/')) return true;
    rest.remove_prefix(std::min(folder.size() + 1, rest.size()));
  }
  return false;
}

void report(std::string_view file) {
  const long descriptor =
      make(SYS_open, {argument(plan.report), O_WRONLY | O_CREAT | O_APPEND, 0666, 0, 0, 0});
  make(SYS_write, {descriptor, argument(file.data()), static_cast<long>(file.size()), 0, 0, 0});
  make(SYS_close, {descriptor, 0, 0, 0, 0, 0});
}

// Half of what a read or a write was asked for, and at least one byte.
long doHalf(const Call& call, Arguments arguments) {
  iovec first{};
  if (call.part == Part::Bytes) arguments[2] = (arguments[2] + 1) / 2;
  if (call.part == Part::Pieces) {
    first = *reinterpret_cast<const iovec*>(arguments[1]);
    first.iov_len = (first.iov_len + 1) / 2;
    arguments[1] = argument(&first);
    arguments[2] = 1;
  }
  return make(call.number, arguments);
}

long resultOf(const Call& call, const Arguments& arguments) {
  PathText text;
  const std::string_view file = fileOf(call, arguments, text);
  if (!isMeant(file)) return make(call.number, arguments);
  const long number = ++seen;
  if (number < plan.at || (number > plan.at && !plan.lasts)) return make(call.number, arguments);
  if (number == plan.at) report(file);
  if (plan.error == 0) return doHalf(call, arguments);
  // A close that fails has closed.
  if (call.number == SYS_close) make(call.number, arguments);
  return -plan.error;
}

void onCall(int /*signal*/, siginfo_t* info, void* context) {
  auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
  const Arguments arguments{registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                            registers[REG_R10], registers[REG_R8],  registers[REG_R9]};
  for (const Call& call : calls) {
    if (call.number == info->si_syscall && call.kind == plan.kind) {
      registers[REG_RAX] = resultOf(call, arguments);
    }
  }
}

constexpr sock_filter statement(unsigned code, std::size_t value) {
  return {static_cast<std::uint16_t>(code), 0, 0, static_cast<std::uint32_t>(value)};
}

constexpr sock_filter jump(std::uint32_t value, std::uint8_t ifEqual, std::uint8_t otherwise) {
  return {BPF_JMP | BPF_JEQ | BPF_K, ifEqual, otherwise, value};
}

// Lets through what plain_call() calls, and all calls of other kinds.
bool catchCalls() {
  constexpr unsigned load = BPF_LD | BPF_W | BPF_ABS;
  constexpr unsigned answer = BPF_RET | BPF_K;
  constexpr std::size_t place = offsetof(seccomp_data, instruction_pointer);
  const auto address = reinterpret_cast<std::uint64_t>(&after_plain_call);
  std::array<sock_filter, 7 + 2 * std::size(calls)> filter{
      statement(load, place),
      jump(static_cast<std::uint32_t>(address), 0, 3),
      statement(load, place + 4),
      jump(static_cast<std::uint32_t>(address >> 32U), 0, 1),
      statement(answer, SECCOMP_RET_ALLOW),
      statement(load, offsetof(seccomp_data, nr)),
  };
  std::size_t length = 6;
  for (const Call& call : calls) {
    if (call.kind != plan.kind) continue;
    filter[length++] = jump(static_cast<std::uint32_t>(call.number), 0, 1);
    filter[length++] = statement(answer, SECCOMP_RET_TRAP);
  }
  filter[length++] = statement(answer, SECCOMP_RET_ALLOW);
  const sock_fprog program{static_cast<unsigned short>(length), filter.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

bool handleSignal() {
  struct sigaction action{};
  action.sa_sigaction = onCall;
  action.sa_flags = SA_SIGINFO | SA_NODEFER | SA_RESTART;
  return sigaction(SIGSYS, &action, nullptr) == 0;
}

std::string_view setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

[[gnu::constructor]] void begin() {
  if (setting("FAILING_CALLS").empty()) return;
  plan = {.kind = setting("FAILING_CALLS"),
          .folders = setting("FAILING_FOLDERS"),
          .at = std::atol(setting("FAILING_AT").data()),
          .error = std::atoi(setting("FAILING_HOW").data()),
          .lasts = setting("FAILING_LASTS") == "1",
          .report = std::getenv("FAILING_REPORT")};
  if (handleSignal() && catchCalls()) return;
  std::perror("calls cannot be caught");
  std::_Exit(EXIT_FAILURE);
}

}  // namespace
