#pragma once

#include "Action.h"

namespace CLI {
class App;
}

namespace Tool {

/// Each adds a subcommand to `app`. If the user chooses it, parsing the command line sets `action`,
/// to which `app` keeps a reference.
void AddAboutCommand(CLI::App& app, Action& action);
void AddIniCommand(CLI::App& app, Action& action);
void AddIpcCommand(CLI::App& app, Action& action);
void AddLogCommand(CLI::App& app, Action& action);
void AddPathsCommand(CLI::App& app, Action& action);
void AddZipCommand(CLI::App& app, Action& action);

} // namespace Tool
