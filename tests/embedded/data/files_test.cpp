// What is asked of files themselves, and of standard input: identity, fingerprint, spooling.
#include "embedded/data/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <thread>

#include "Support.h"
#include "embedded/data/EngineMessages.h"
#include "embedded/data/TemporaryFolder.h"

namespace embedded::data {
namespace {

using Arguments = std::vector<std::string>;
using FileIdentity = DataTest;

TEST_F(FileIdentity, ChangesWithTheFileAndWhenItIsRemoved) {
  const std::string file = write("a.csv", "a\n1\n");
  const std::string before = identityOf({file});
  EXPECT_EQ(identityOf({file}), before);
  write("a.csv", "a\n1\n2\n");
  const std::string longer = identityOf({file});
  EXPECT_NE(longer, before);
  std::filesystem::remove(file);
  EXPECT_NE(identityOf({file}), longer);
}

using Fingerprints = DataTest;

TEST_F(Fingerprints, OfWhatIsNoFileAreAnErrorOfTheData) {
  Engine engine({});
  const std::pair<std::string, std::string> reasons[] = {
      {path("none.csv"), "No such file or directory"}, {path(""), "Is a directory"}};
  for (const auto& [gone, reason] : reasons) {
    const Failure failure = failureOf([&, &file = gone] { fingerprintOf(engine, {file}); });
    EXPECT_EQ(failure.id, messages::unreadable.id);
    EXPECT_EQ(failure.arguments, (Arguments{gone, reason}));
  }
}

// Standard input as another file, for a scope.
class Input {
 public:
  explicit Input(int file) : kept_(dup(STDIN_FILENO)) {
    dup2(file, STDIN_FILENO);
    close(file);
  }
  explicit Input(const std::string& path) : Input(open(path.c_str(), O_RDONLY)) {}
  ~Input() {
    dup2(kept_, STDIN_FILENO);
    close(kept_);
  }
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

 private:
  int kept_;
};

class Spooling : public DataTest {
 protected:
  std::string spooled() const {
    std::ostringstream text;
    text << std::ifstream(path("spooled")).rdbuf();
    return text.str();
  }
};

TEST_F(Spooling, CopiesStandardInputAndSaysWhetherThereWasAny) {
  const std::string large(3U << 20U, 'x');
  for (const std::string& content : {std::string("a\n1\n"), large, std::string()}) {
    const Input input(write("input", content));
    EXPECT_EQ(spoolStandardInput(path("spooled")), !content.empty());
    EXPECT_EQ(spooled() == content, true);
  }
}

TEST_F(Spooling, ToAFullDiskSaysSo) {
  // Little is written when the file is closed, much at once.
  for (const std::size_t size : {std::size_t{4}, std::size_t{3} << 20U}) {
    const Input input(write("input", std::string(size, '1')));
    const Failure failure = failureOf([] { spoolStandardInput("/dev/full"); });
    EXPECT_EQ(failure.id, messages::noRoomToSpill.id);
    EXPECT_EQ(failure.arguments, (Arguments{"-", "/", std::strerror(ENOSPC)}));
  }
}

TEST_F(Spooling, OfAFolderIsAnErrorOfTheData) {
  const Input input(path(""));
  const Failure failure = failureOf([&] { spoolStandardInput(path("spooled")); });
  EXPECT_EQ(failure.id, messages::unreadable.id);
  EXPECT_EQ(failure.arguments, (Arguments{"-", std::strerror(EISDIR)}));
}

std::atomic<int> signalsSeen = 0;

// A signal that is no interrupt, such as a terminal's change of size, loses nothing.
TEST_F(Spooling, GoesOnAfterASignal) {
  struct sigaction action{};
  struct sigaction before{};
  action.sa_handler = [](int) { ++signalsSeen; };
  sigaction(SIGUSR1, &action, &before);
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  const Input input(ends[0]);
  std::thread other([writing = ends[1], reader = pthread_self()] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    pthread_kill(reader, SIGUSR1);
    while (signalsSeen == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(::write(writing, "a\n1\n", 4), 4);
    close(writing);
  });
  EXPECT_TRUE(spoolStandardInput(path("spooled")));
  other.join();
  sigaction(SIGUSR1, &before, nullptr);
  EXPECT_EQ(spooled(), "a\n1\n");
}

// The folder of temporary files as the environment names it, for a scope.
class TemporaryFiles : public DataTest {
 protected:
  TemporaryFiles() {
    if (const char* value = std::getenv("TMPDIR")) kept_ = value;
  }
  ~TemporaryFiles() override {
    if (kept_)
      setenv("TMPDIR", kept_->c_str(), 1);
    else
      unsetenv("TMPDIR");
  }

 private:
  std::optional<std::string> kept_;
};

// The message named no folder where it was not there.
TEST_F(TemporaryFiles, WantAFolderAndAreRefusedByItsName) {
  for (const std::string& folder : {path("none"), write("file", "x"), std::string("/proc")}) {
    setenv("TMPDIR", folder.c_str(), 1);
    const Failure failure = failureOf([] { TemporaryFolder(); });
    EXPECT_EQ(failure.id, messages::noTemporaryFolder.id);
    ASSERT_EQ(failure.arguments.size(), 2U);
    EXPECT_EQ(failure.arguments[0], folder);
  }
}

// It could be taken for the folder in which the program runs.
TEST_F(TemporaryFiles, AnEmptyVariableNamesNoFolder) {
  setenv("TMPDIR", "", 1);
  EXPECT_TRUE(TemporaryFolder().path().is_absolute());
}

TEST_F(TemporaryFiles, GoAwayWithTheirFolder) {
  setenv("TMPDIR", path("").c_str(), 1);
  std::filesystem::path made;
  {
    const TemporaryFolder folder;
    made = folder.path();
    std::ofstream(made / "file") << "x";
    EXPECT_TRUE(std::filesystem::exists(made / "file"));
  }
  EXPECT_FALSE(std::filesystem::exists(made));
}

}  // namespace
}  // namespace embedded::data
