// SPDX-License-Identifier: MIT
#include "programs/given_arguments.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "text/list_text.h"

namespace quillon {

namespace {

const CLI::Option* optionIn(const CLI::App& command, const std::string& name) {
    if (!name.starts_with('-') || name == "-" || name == "--")
        return nullptr;
    return command.get_option_no_throw(name);
}

// An option of the command, or of the one of its commands that the arguments name. Null: it is none.
const CLI::Option* optionOf(const CLI::App& command, const std::vector<std::string>& arguments,
                            const std::string& name) {
    if (const auto* option = optionIn(command, name); option != nullptr)
        return option;
    for (const CLI::App* sub : command.get_subcommands({})) {
        if (std::ranges::find(arguments, sub->get_name()) == arguments.end())
            continue;
        if (const auto* option = optionIn(*sub, name); option != nullptr)
            return option;
    }
    return nullptr;
}

bool takesValue(const CLI::Option* option) {
    return option != nullptr && option->get_items_expected_max() > 0;
}

}  // namespace

void parseArguments(CLI::App& command, const std::vector<std::string>& arguments) {
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        const auto equals = std::min(arguments[i].find('='), arguments[i].size());
        const std::string name = arguments[i].substr(0, equals);
        const CLI::Option* option = optionOf(command, arguments, name);
        if (!takesValue(option))
            continue;
        const bool apart = equals == arguments[i].size();
        if (apart && i + 1 == arguments.size())
            continue;  // the parser says so
        const std::string value = apart ? arguments[++i] : arguments[i].substr(equals + 1);
        if (value.empty() && option->get_delimiter() == '\0')
            throw CLI::ValidationError(name, "needs a value that is not empty");
        if (optionOf(command, arguments, value.substr(0, value.find('='))) != nullptr)
            throw CLI::ValidationError(name,
                                       "needs a value, and " + readable(std::string_view(value)) + " is an option");
        if (value.empty() && !apart)
            throw CLI::ValidationError(name, "needs a value");
    }
    command.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
}

}  // namespace quillon
