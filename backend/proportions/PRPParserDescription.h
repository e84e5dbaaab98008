// The grammar of the command, as the host's parser is told it.
#pragma once

#include "host/command/CommandDescriptor.h"

// Every subcommand, parameter, keyword, qualifier and bound of the command. The keywords of the
// method lists are those of the tables of methods, in their order, then ALL and NONE.
CommandDescriptor PRPDescribeCommand();
