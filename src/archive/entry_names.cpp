// SPDX-License-Identifier: MIT
#include "archive/entry_names.h"

#include "app/rule_list_names.h"
#include "platform/folders.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::string_view kDatabaseFolder = "Database";
constexpr std::string_view kSettingsFolder = "Settings";

bool hasForbiddenCharacter(std::string_view name) {
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || c == '\\' || c == ':')
            return true;
    }
    return false;
}

tl::unexpected<FileError> badName(std::string_view name) {
    return failure(ErrorKind::BadName, "The archive holds a name that is not allowed: " + readable(name));
}

bool sameName(std::string_view a, std::string_view b) {
    return foldedName(a) == foldedName(b);
}

}  // namespace

Result<std::vector<std::string>> entryParts(std::string_view name) {
    std::string_view rest = name;
    if (!rest.empty() && rest.back() == '/')
        rest.remove_suffix(1);
    if (rest.empty() || hasForbiddenCharacter(rest))
        return badName(name);
    std::vector<std::string> parts;
    for (const auto part : splitFields(rest, '/')) {
        if (!isFileName(part))
            return badName(name);
        parts.emplace_back(part);
    }
    return parts;
}

std::string settingsSpelling(std::string_view name) {
    for (const char* known : kRuleListNames) {
        if (sameName(name, known))
            return known;
    }
    return std::string(name);
}

std::vector<std::string> canonicalParts(std::vector<std::string> parts) {
    if (sameName(parts.front(), kDatabaseFolder)) {
        parts.front() = kDatabaseFolder;
        if (parts.size() == 2)
            parts.back() = foldedName(parts.back());
    } else if (sameName(parts.front(), kSettingsFolder)) {
        parts.front() = kSettingsFolder;
        if (parts.size() == 2)
            parts.back() = settingsSpelling(parts.back());
    }
    return parts;
}

Result<void> TakenPlaces::take(const std::vector<std::string>& parts, bool folder) {
    std::string place;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        place += "/" + foldedName(parts[i]);
        const Kind kind = folder || i + 1 < parts.size() ? Kind::Folder : Kind::File;
        const auto [at, added] = taken_.emplace(place, kind);
        if (!added && (kind == Kind::File || at->second == Kind::File)) {
            return failure(ErrorKind::BadName, "The archive holds a name twice: " + readable(place.substr(1)));
        }
    }
    return {};
}

}  // namespace quillon
