// The words of `gaengine --help` and of each sub-command's help that are not option lists:
// where files go, the environment, and one example per sub-command.
#pragma once

namespace CLI {
class App;
}

namespace gaecli {

// Puts the footers on the application and on every registered sub-command.
void AddHelpFooters(CLI::App& app);

}  // namespace gaecli
