// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace quillon {

/// Parses the arguments of a command and throws as its parser does. An option that lacks its value is refused here: the
/// parser would take the next option for it, so that `--target= --yes` copied into a folder "--yes" without asking. A
/// value that is empty is refused, too, but in a list of several. A folder that is called like an option is given
/// as "./--yes".
void parseArguments(CLI::App& command, const std::vector<std::string>& arguments);

}  // namespace quillon
