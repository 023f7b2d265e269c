// SPDX-License-Identifier: MIT
// Steps that change files of a database, and their notes.
#include "app/database_history.h"
#include "app/rule_list_names.h"
#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

std::optional<std::string> bytesNow(const NativePath& file) {
    auto bytes = readWholeFile(file);
    return bytes ? std::optional(std::move(*bytes)) : std::nullopt;
}

}  // namespace

std::string placeInRoot(const NativePath& file) {
    return file.parent_path().filename().native() + "/" + file.filename().native();
}

Result<LostNote> changeNoted(const NativePath& settings, const NativePath& file, DatabaseChange change,
                             const std::function<Result<void>()>& apply) {
    if (file.empty())
        return apply().map([] { return LostNote(); });
    DatabaseTurn turn(settings);
    return changeNoted(turn, file, std::move(change), apply);
}

Result<LostNote> changeNoted(DatabaseTurn& turn, const NativePath& file, DatabaseChange change,
                             const std::function<Result<void>()>& apply) {
    auto before = bytesNow(file);
    auto done = apply();
    auto after = bytesNow(file);
    if (before == after)
        return done.map([] { return LostNote(); });
    change.files = {{placeInRoot(file), std::move(before), std::move(after)}};
    passOver(turn.note(std::move(change)), "the turn tells it");
    return done.map([&turn] { return turn.problem(); });
}

Result<void> NotedStep::change(const NativePath& file, const std::function<Result<void>()>& apply) {
    auto before = bytesNow(file);
    auto done = apply();
    auto after = bytesNow(file);
    if (before != after)
        change_.files.push_back({placeInRoot(file), std::move(before), std::move(after)});
    return done;
}

LostNote NotedStep::finish() {
    if (change_.files.empty())
        return std::nullopt;
    DatabaseTurn turn(settings_);
    passOver(turn.note(std::exchange(change_, {})), "the turn tells it");
    return turn.problem();
}

NotedDatabase::NotedDatabase(NativePath settings, DatabaseChange change)
    : settings_(std::move(settings)), change_(std::move(change)), before_(look()) {
}

std::map<std::string, std::string> NotedDatabase::look() const {
    std::map<std::string, std::string> all;
    const auto take = [&](const NativePath& file) {
        if (auto bytes = bytesNow(file))
            all.emplace(placeInRoot(file), std::move(*bytes));
    };
    const NativePath database = settings_.parent_path() / "Database";
    for (const auto& name : listFiles(database).value_or(std::vector<std::string>{})) take(database / name);
    for (const char* name : kRuleListNames) take(settings_ / name);
    return all;
}

LostNote NotedDatabase::finish() {
    auto after = look();
    for (auto& [file, bytes] : before_) {
        const auto now = after.find(file);
        if (now == after.end())
            change_.files.push_back({file, std::move(bytes), std::nullopt});
        else if (now->second != bytes)
            change_.files.push_back({file, std::move(bytes), std::move(now->second)});
        if (now != after.end())
            after.erase(now);
    }
    for (auto& [file, bytes] : after) change_.files.push_back({file, std::nullopt, std::move(bytes)});
    if (change_.files.empty())
        return std::nullopt;
    DatabaseTurn turn(settings_);
    passOver(turn.note(std::move(change_)), "the turn tells it");
    return turn.problem();
}

}  // namespace quillon
