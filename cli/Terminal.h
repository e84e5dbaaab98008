// What the program is connected to.
#pragma once

namespace cli {

// Columns of the terminal, or what COLUMNS says, or the usual width of 100; at least 40.
int lineWidth();

// Whether standard output is a terminal.
bool writesToTerminal();

}  // namespace cli
