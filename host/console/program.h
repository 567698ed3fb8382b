// The console as a program: its options, its input and output, and how it ends.
#pragma once

#include "host/console/loaded_plugin.h"

namespace korvel {

// The arguments are those of main. The loader says itself why it returned nothing; the program ends
// then. The result is the exit status.
int run_program(int argc, char** argv, const PluginLoader& load_plugin);

}  // namespace korvel
