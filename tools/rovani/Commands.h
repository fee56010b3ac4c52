// The rovani program's commands. Each takes the words after its name and
// answers the exit status; failures are thrown as UsageError or InputError.
#ifndef ROVANI_TOOLS_COMMANDS_H
#define ROVANI_TOOLS_COMMANDS_H

#include <string>
#include <vector>

namespace cli {

using Words = std::vector<std::string>;

struct Command {
  const char* name;
  int (*run)(const Words& args);
  const char* synopsis;  // the words after the command's name
  const char* summary;   // one line
  const char* help;      // the rest of the command's help
};

// Every command, in the order --help lists them; ends with a null name.
extern const Command kCommands[];

// Thrown for "COMMAND --help" wherever it appears among the options.
struct HelpRequested {};

}  // namespace cli

#endif
