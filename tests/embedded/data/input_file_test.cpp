// Files that are read to their end, and what stops it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>
#include <system_error>
#include <thread>

#include "embedded/data/InputFile.h"

namespace {

using embedded::data::contentOf;
using embedded::data::InputFile;

std::string written(const std::string& text) {
  std::string path = testing::TempDir() + "input_file_test.txt";
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

int reasonOf(const std::string& path) {
  try {
    contentOf(path);
  } catch (const std::system_error& problem) {
    return problem.code().value();
  }
  return 0;
}

TEST(InputFile, IsReadWhole) {
  const std::string text = std::string(200000, 'x') + '\0' + "end";
  EXPECT_EQ(contentOf(written(text)), text);
  EXPECT_EQ(contentOf(written("")), "");
}

TEST(InputFile, IsReadNoFurtherThanAsked) {
  const std::string path = written("0123456789");
  EXPECT_EQ(contentOf(path, 4), "0123");
  EXPECT_EQ(contentOf(path, 10), "0123456789");
  EXPECT_EQ(contentOf(path, 11), "0123456789");
}

TEST(InputFile, IsReadFromAPlaceToItsEndAtMost) {
  const InputFile file(written("0123456789"));
  EXPECT_EQ(file.size(), 10U);
  std::array<char, 4> bytes{};
  EXPECT_EQ(file.readAt(2, bytes), 4U);
  EXPECT_EQ(std::string(bytes.data(), 4), "2345");
  EXPECT_EQ(file.readAt(8, bytes), 2U);
  EXPECT_EQ(file.readAt(20, bytes), 0U);
}

// A pipe brings what is there, and more later.
TEST(InputFile, OfAPipeIsReadToItsEnd) {
  std::array<int, 2> ends{};
  ASSERT_EQ(pipe(ends.data()), 0);
  const std::string text(150000, 'y');
  std::thread writer([&] {
    for (std::size_t at = 0; at < text.size(); at += 50000)
      EXPECT_EQ(write(ends[1], text.data() + at, 50000), 50000);
    close(ends[1]);
  });
  EXPECT_EQ(contentOf("/dev/fd/" + std::to_string(ends[0])).size(), text.size());
  writer.join();
  close(ends[0]);
}

TEST(InputFile, TellsWhyItCannotBeRead) {
  EXPECT_EQ(reasonOf("/nowhere/at/all"), ENOENT);
  EXPECT_EQ(reasonOf(testing::TempDir()), EISDIR);
}

}  // namespace
