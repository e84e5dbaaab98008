// What patterns of file names stand for.
#include <cerrno>
#include <cstring>

#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "embedded/data/FilePattern.h"

namespace embedded::data {
namespace {

class FilePatterns : public DataTest {
 protected:
  void make(std::initializer_list<std::string> files) const {
    for (const std::string& file : files) {
      std::filesystem::create_directories(std::filesystem::path(path(file)).parent_path());
      write(file, "v\n1\n");
    }
  }

  // Without the test's own folder in front.
  std::vector<std::string> found(const std::string& pattern) const {
    std::vector<std::string> paths = pathsOf(path(pattern));
    for (std::string& one : paths) one.erase(0, path("").size());
    return paths;
  }

  using Paths = std::vector<std::string>;
};

TEST_F(FilePatterns, StandForFilesInTheOrderOfTheirNames) {
  make({"b.csv", "a.csv", "c.txt", "ab.csv"});
  EXPECT_EQ(found("*.csv"), (Paths{"a.csv", "ab.csv", "b.csv"}));
  EXPECT_EQ(found("?.csv"), (Paths{"a.csv", "b.csv"}));
  EXPECT_EQ(found("[b-c].*"), (Paths{"b.csv", "c.txt"}));
  EXPECT_EQ(found("[!b-c].*"), Paths{"a.csv"});
  EXPECT_EQ(found("x*"), Paths{});
}

TEST_F(FilePatterns, MayStandInAnyPartOfThePath) {
  make({"2024/a.csv", "2024/deep/a.csv", "2025/a.csv", "2025/b.csv", "2026.csv"});
  EXPECT_EQ(found("20*/a.csv"), (Paths{"2024/a.csv", "2025/a.csv"}));
  EXPECT_EQ(found("20*//*.csv"), (Paths{"2024//a.csv", "2025//a.csv", "2025//b.csv"}));
  EXPECT_EQ(found("*/*/*"), Paths{"2024/deep/a.csv"});
  EXPECT_EQ(found("2024/../2025/[a]*"), Paths{"2024/../2025/a.csv"});
}

TEST_F(FilePatterns, MayBeRelative) {
  make({"inner/a.csv"});
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(path("inner"));
  const std::vector<std::string> here = pathsOf("*.csv");
  std::filesystem::current_path(path(""));
  const std::vector<std::string> below = pathsOf("i*/*.csv");
  std::filesystem::current_path(before);
  EXPECT_EQ(here, Paths{"a.csv"});
  EXPECT_EQ(below, Paths{"inner/a.csv"});
}

TEST_F(FilePatterns, DoNotMeetHiddenFilesUnlessTheySayThePoint) {
  make({".hidden.csv", "seen.csv"});
  EXPECT_EQ(found("*.csv"), Paths{"seen.csv"});
  EXPECT_EQ(found(".*.csv"), Paths{".hidden.csv"});
}

// As a shell once did: the files of the folder above would be counted as well.
TEST_F(FilePatterns, DoNotLeadToTheirOwnFolderOrTheOneAbove) {
  make({"above.csv", "inner/own.csv", "inner/.hidden/one.csv"});
  EXPECT_EQ(found("inner/.*/*.csv"), Paths{"inner/.hidden/one.csv"});
}

TEST_F(FilePatterns, TakeWhatStandsBehindABackslashAsItIs) {
  make({"a*.csv", "ab.csv", "a*/b.csv"});
  EXPECT_EQ(found("a\\*.*"), Paths{"a*.csv"});
  EXPECT_EQ(found("a\\*/?.csv"), Paths{"a*/b.csv"});
}

TEST_F(FilePatterns, LeaveOutLinksThatLeadNowhereInTheMiddle) {
  make({"real/a.csv"});
  std::filesystem::create_symlink(path("none"), path("dangling"));
  std::filesystem::create_directory_symlink(path("real"), path("linked"));
  EXPECT_EQ(found("*/a.csv"), (Paths{"linked/a.csv", "real/a.csv"}));
}

TEST_F(FilePatterns, OfManyPartsAreNoBurden) {
  std::string deep = "*";
  for (int i = 0; i < 50'000; ++i) deep += "/*";
  EXPECT_EQ(found(deep), Paths{});
}

// A name that is too long for the system is one that cannot be looked at.
TEST_F(FilePatterns, ThatCannotBeFollowedToTheirEndAreAnError) {
  make({"inner/a.csv"});
  const std::string name(300, 'n');
  const Failure failure = failureOf([&] { pathsOf(path("i*/" + name)); });
  EXPECT_EQ(failure.id, messages::unreadable.id);
  EXPECT_EQ(failure.arguments, (Paths{path("inner/" + name), std::strerror(ENAMETOOLONG)}));
  EXPECT_EQ(failureOf([&] { pathsOf(path(name + "/*.csv")); }).id, messages::unreadable.id);
}

}  // namespace
}  // namespace embedded::data
