#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

namespace cli {

namespace {

constexpr int usualWidth = 100;
constexpr int narrowest = 40;

}  // namespace

int lineWidth() {
  winsize size{};
  if (writesToTerminal() && ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    return std::max<int>(size.ws_col, narrowest);
  }
  const char* columns = std::getenv("COLUMNS");
  const int wanted = columns == nullptr ? 0 : std::atoi(columns);
  return wanted >= narrowest ? wanted : usualWidth;
}

bool writesToTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}

}  // namespace cli
