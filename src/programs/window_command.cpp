// SPDX-License-Identifier: MIT
#include "programs/window_command.h"

#include <algorithm>

#include <fmt/format.h>

#include "app/version.h"

namespace quillon {

namespace {

constexpr const char* kHelp =
    "Usage: quillon [--help | --version]\n"
    "Opens the window that lists and grades the files of a recovered tree.\n"
    "\n"
    "Options:\n"
    "  -h, --help     show this help\n"
    "      --version  tell the version\n"
    "\n"
    "On a computer without a display use quillon-job.\n";

}  // namespace

std::optional<std::string> windowAnswer(const std::vector<std::string>& arguments) {
    const auto has = [&arguments](const char* option) {
        return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
    };
    if (has("--help") || has("-h"))
        return kHelp;
    if (!has("--version"))
        return std::nullopt;
    const Version version = programVersion();
    return fmt::format("quillon {}.{}.{}\n", version.major, version.minor, version.revision);
}

std::string withoutDisplay(const std::string& reason) {
    return "quillon: no window can be opened: there is no display, or Qt has no plugin for it. Without a display use "
           "quillon-job.\n" +
           reason + (reason.ends_with('\n') ? "" : "\n");
}

}  // namespace quillon
