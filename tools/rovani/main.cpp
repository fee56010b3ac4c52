// rovani: the library's settings documents, user defaults and small
// services from the shell.
//
// Exit status: 0 success, 1 bad input, 2 bad usage. Messages go to
// standard error as "rovani COMMAND: message"; so do the platform's log
// lines, which never reach standard output.
#include <cstdio>
#include <cstring>
#include <string>

#include "Cli.h"
#include "Commands.h"

namespace {

const char kProgram[] = "rovani";

std::string GeneralHelp() {
  std::string text = std::string("Usage: ") + kProgram + " COMMAND [ARGS...]\n"
                     "       " + kProgram + " COMMAND --help\n"
                     "       " + kProgram + " --version\n\nCommands:\n";
  for (const cli::Command* command = cli::kCommands; command->name != nullptr; ++command) {
    char line[160];
    std::snprintf(line, sizeof line, "  %-10s %s\n", command->name, command->summary);
    text += line;
  }
  return text + "\nExit status: 0 success, 1 bad input, 2 bad usage.\n";
}

std::string CommandHelp(const cli::Command& command) {
  return std::string("Usage: ") + kProgram + " " + command.name + " " + command.synopsis +
         "\n\n" + command.summary + ".\n\n" + command.help;
}

int Fail(const std::string& where, const std::string& message, int status) {
  std::fprintf(stderr, "%s: %s\n", where.c_str(), message.c_str());
  if (status == 2) {
    std::fprintf(stderr, "Try '%s --help'.\n", where.c_str());
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  RVAutoreleasePool pool;
  if (argc < 2) {
    std::fputs(GeneralHelp().c_str(), stderr);
    return 2;
  }
  std::string first = argv[1];
  if (first == "--help" || first == "-h" || first == "help") {
    std::fputs(GeneralHelp().c_str(), stdout);
    return 0;
  }
  if (first == "--version") {
    std::printf("%s %s\n", kProgram, ROVANI_VERSION);
    return 0;
  }
  const cli::Command* command = cli::kCommands;
  while (command->name != nullptr && first != command->name) ++command;
  if (command->name == nullptr) {
    if (first.size() > 1 && first[0] == '-') {
      return Fail(kProgram, "unknown option '" + first + "'", 2);
    }
    return Fail(kProgram, "unknown command '" + first + "'", 2);
  }

  std::string where = std::string(kProgram) + " " + command->name;
  cli::Words args(argv + 2, argv + argc);
  try {
    return command->run(args);
  } catch (cli::HelpRequested&) {
    std::fputs(CommandHelp(*command).c_str(), stdout);
    return 0;
  } catch (cli::UsageError& error) {
    return Fail(where, error.message, 2);
  } catch (cli::InputError& error) {
    return Fail(where, error.message, 1);
  } catch (...) {
    // A platform exception the library let through.
    return Fail(where, "the platform refused the operation", 1);
  }
}
