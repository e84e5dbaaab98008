// Blocks of files go to threads; each thread counts by itself, and their tables are put together.
#include "CsvCounting.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include "CsvLines.h"
#include "InputFile.h"
#include "embedded/session/Session.h"

namespace embedded::data {
namespace {

// How much longer than a block what is read of it may be: no line of plain data is longer.
constexpr std::size_t longestLine = std::size_t{64} << 10U;

// An open file, cut into blocks. Throws std::system_error when it cannot be read.
class BlockFile {
 public:
  explicit BlockFile(const CsvForm::File& file) : file_(file.path), size_(file_.size()) {
    findData(file.header);
  }

  bool isUsable() const { return usable_; }
  bool returns() const { return returns_; }
  std::size_t size() const { return size_; }
  std::size_t blocks(std::size_t block) const { return (size_ - begin_ + block - 1) / block; }

  // The lines that begin in a block, with CsvLines::padding behind them. False when they cannot be
  // had whole.
  bool read(std::size_t index, std::size_t block, std::vector<char>& buffer,
            std::span<const char>& lines) const {
    const std::size_t from = begin_ + index * block;
    const std::size_t to = std::min(from + block, size_);
    // A line begins behind a line feed: looked for from the byte before the block, and from the
    // byte before its end.
    const std::size_t length = std::min(to + longestLine, size_) - (from - 1);
    buffer.resize(length + 2 + CsvLines::padding);
    if (!readBytes(from - 1, {buffer.data(), length})) return false;
    std::span<char> bytes(buffer.data(), length);
    if (from - 1 + length == size_ && bytes.back() != '\n') bytes = ended(buffer, length);
    const auto begin = std::ranges::find(bytes, '\n');
    const auto end = std::ranges::find(bytes.subspan(to - from), '\n');
    if (begin == bytes.end() || end == bytes.end()) return false;
    lines = {begin + 1, end + 1};
    std::fill_n(buffer.begin() + static_cast<std::ptrdiff_t>(bytes.size()), CsvLines::padding,
                '\n');
    return true;
  }

 private:
  // The line feed that the last line lacks.
  std::span<char> ended(std::vector<char>& buffer, std::size_t length) const {
    if (returns_) buffer[length++] = '\r';
    buffer[length++] = '\n';
    return {buffer.data(), length};
  }

  // False where the file has become shorter.
  bool readBytes(std::size_t offset, std::span<char> bytes) const {
    return file_.readAt(offset, bytes) == bytes.size();
  }

  // The end of the header's line tells how lines end.
  void findData(std::size_t header) {
    char first = '\0';
    char second = '\0';
    if (header < size_ && !readBytes(header, {&first, 1})) return;
    if (header + 1 < size_ && !readBytes(header + 1, {&second, 1})) return;
    returns_ = first == '\r';
    begin_ = header + (returns_ ? 2 : 1);
    usable_ = begin_ <= size_ && (returns_ ? second : first) == '\n';
  }

  InputFile file_;
  std::size_t size_;
  std::size_t begin_ = 0;  // of the first line of data
  bool returns_ = false;
  bool usable_ = false;
};

// How far all files together have come.
struct Read {
  std::size_t all = 0;  // bytes of the files
  std::atomic<std::uint64_t> bytes = 0;
  std::atomic<std::uint64_t> lines = 0;

  Progress progress() const {
    const auto whole = static_cast<double>(all) / static_cast<double>(bytes);
    return {lines, static_cast<std::uint64_t>(static_cast<double>(lines) * std::max(whole, 1.0))};
  }
};

// What the threads of one file share.
struct Work {
  const BlockFile& file;
  std::size_t block;
  Read& read;
  std::atomic<std::size_t> next = 0;  // the next block that nobody has taken
  std::atomic<bool> stopped = false;
  std::mutex mutex;
  std::exception_ptr problem;  // guarded by the mutex
};

// One thread's share; `progress` may be empty. Nothing is thrown: what goes wrong is left in the
// work.
void countBlocks(Work& work, CsvLines& counter, const ProgressListener& progress) noexcept {
  try {
    std::vector<char> buffer;
    std::span<const char> lines;
    const std::size_t blocks = work.file.blocks(work.block);
    for (std::size_t index = work.next++; index < blocks; index = work.next++) {
      if (work.stopped || Session::cancelled.load(std::memory_order_relaxed)) return;
      const std::uint64_t before = counter.lines();
      if (!work.file.read(index, work.block, buffer, lines) || !counter.add(lines)) {
        work.stopped = true;
        return;
      }
      work.read.bytes += lines.size();
      work.read.lines += counter.lines() - before;
      if (progress && work.read.bytes > 0) progress(work.read.progress());
    }
  } catch (...) {
    const std::scoped_lock lock(work.mutex);
    work.problem = std::current_exception();
    work.stopped = true;
  }
}

// Counts a file by several threads, this one among them; false as countTexts() has nothing.
bool countFile(Work& work, std::span<const std::unique_ptr<CsvLines>> counters,
               const ProgressListener& progress) {
  {
    std::vector<std::jthread> threads;
    try {
      for (const auto& counter : counters.subspan(1))
        threads.emplace_back([&work, &counter] { countBlocks(work, *counter, {}); });
    } catch (const std::system_error&) {  // NOLINT(bugprone-empty-catch)
      // Fewer threads are to be had; they do it all.
    }
    countBlocks(work, *counters.front(), progress);
  }
  if (work.problem) std::rethrow_exception(work.problem);
  Session::checkCancelled();
  return !work.stopped;
}

std::size_t threadsFor(const BlockFile& file, const CsvReading& reading) {
  const auto wanted = reading.threads > 0 ? static_cast<unsigned>(reading.threads)
                                          : std::max(1U, std::thread::hardware_concurrency());
  return std::clamp<std::size_t>(file.blocks(reading.block), 1, wanted);
}

}  // namespace

std::optional<CountedTexts> countTexts(const CsvForm& form, const std::vector<std::size_t>& wanted,
                                       const CsvReading& reading) try {
  std::vector<CsvTexts> texts(wanted.size());
  CountingTable all(std::vector<int>(wanted.size(), 0), false);
  Read read;
  for (const CsvForm::File& one : form.files) read.all += BlockFile(one).size();
  for (const CsvForm::File& one : form.files) {
    const BlockFile file(one);
    if (!file.isUsable()) return std::nullopt;
    std::vector<std::unique_ptr<CsvLines>> counters(threadsFor(file, reading));
    for (auto& counter : counters)
      counter =
          std::make_unique<CsvLines>(form.delimiter, file.returns(), form.fields, wanted, texts);
    Work work{file, reading.block, read, {}, {}, {}, {}};
    if (!countFile(work, counters, reading.progress)) return std::nullopt;
    for (const auto& counter : counters)
      if (!all.combine(counter->table())) return std::nullopt;
  }
  CountedTexts counted;
  for (const CsvTexts& column : texts) counted.texts.push_back(column.texts());
  counted.patterns = all.finish();
  return counted;
} catch (const std::system_error&) {
  return std::nullopt;  // the engine reads the file then, or says why it cannot
}

}  // namespace embedded::data
