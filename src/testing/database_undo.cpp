// SPDX-License-Identifier: MIT
#include "testing/database_undo.h"

#include <algorithm>
#include <utility>

#include "app/history_dialogs.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "testing/record_merge.h"
#include "text/fields.h"

namespace quillon {

namespace {

Records linesOf(const std::optional<std::string>& bytes) {
    Records lines;
    if (bytes) {
        for (const auto line : splitLines(*bytes)) lines.emplace_back(line);
    }
    return lines;
}

std::string bytesOf(const Records& lines) {
    std::string bytes;
    for (const auto& line : lines) bytes += line + "\r\n";
    return bytes;
}

std::optional<std::string> bytesNow(const NativePath& file) {
    auto bytes = readWholeFile(file);
    return bytes ? std::optional(std::move(*bytes)) : std::nullopt;
}

// A note is plain text in a folder of many: what it names has to be a file of the database.
bool isDatabaseFile(const NativePath& file) {
    const NativePath folder = file.parent_path();
    return (folder == "Database" || folder == "Settings") && isFileName(file.filename().native());
}

// One file of an undo.
struct Step {
    NativePath path;
    FileChange change;
};

class Undo {
public:
    Undo(const Installation& installation, KeptFiles& kept, HistoryRoot root, const char* screen, const TakeTurn& take)
        : paths_(installation.paths()), kept_(kept), root_(root), screen_(screen), take_(take) {}

    Result<LostNote> run(const std::string& id) {
        const NativePath settings = settingsFolderOf(paths_, root_);
        const auto change = settings.empty() ? std::nullopt : findChange(settings, id);
        if (!change)
            return failure(ErrorKind::NotFound, "There is no change " + id + " in the history");
        auto turn = take_(settings);
        if (!turn)
            return failure(turnNotWaitedFor());
        if (auto refused = turn->refusal())
            return failure(std::move(*refused));
        const auto steps = plan(*change, settings.parent_path());
        if (!steps)
            return failure(steps.error());
        const auto done = makeAll(*turn, *steps, id);
        LostNote lost = turn->problem();
        if (done && root_ == HistoryRoot::Shared) {
            auto lostHere = followLocally(*steps, id);
            if (!lost)
                lost = std::move(lostHere);
        }
        return done.map([&lost] { return std::move(lost); });
    }

private:
    [[nodiscard]] static Result<std::vector<Step>> plan(const DatabaseChange& change, const NativePath& root) {
        std::vector<Step> steps;
        for (const auto& file : change.files) {
            if (!isDatabaseFile(file.file))
                return failure(ErrorKind::BadName, file.file + " is no file of a database");
            const NativePath path = root / file.file;
            auto now = bytesNow(path);
            auto taken = takeBack(file.file, file.before, file.after, now);
            if (taken.conflict)
                return failure(ErrorKind::PathAccess,
                               file.file + ": the same records were changed again since. Undo the later change first");
            if (taken.bytes != now)
                steps.push_back({path, {file.file, std::move(now), std::move(taken.bytes)}});
        }
        return steps;
    }

    [[nodiscard]] Result<void> makeAll(DatabaseTurn& turn, const std::vector<Step>& steps, const std::string& id) {
        DatabaseChange change;
        change.screen = screen_;
        change.undoes = id;
        if (steps.size() == 1) {
            change.files = {steps.front().change};
            return turn.make(std::move(change), [&] { return apply(steps.front(), turn); });
        }
        Result<void> all;
        for (const auto& step : steps) {
            all = apply(step, turn);
            if (!all)
                break;
            change.files.push_back(step.change);
        }
        passOver(turn.note(std::move(change)), "the turn tells it");
        return all;
    }

    [[nodiscard]] Result<void> apply(const Step& step, const DatabaseTurn& turn) {
        if (!step.change.after)
            return kept_.moveAway(step.path).map([](const NativePath&) {});
        if (turn.through().empty())
            return saveWholeFile(step.path, *step.change.after, TemporaryPlace::AboveFolder);
        return saveWholeFileThrough(turn.through(), step.path, *step.change.after);
    }

    // The next job fetches what cannot be done here. Gives why it could not be noted.
    LostNote followLocally(const std::vector<Step>& steps, const std::string& id) {
        const NativePath settings = settingsFolderOf(paths_, HistoryRoot::Local);
        if (settings.empty())
            return {};
        std::vector<Step> local;
        for (const auto& step : steps) {
            const NativePath path = settings.parent_path() / step.change.file;
            if (bytesNow(path) == step.change.before)
                local.push_back({path, step.change});
        }
        auto turn = local.empty() ? std::nullopt : take_(settings);
        if (!turn)
            return {};
        passOver(makeAll(*turn, local, id), "the next job fetches it");
        return turn->problem();
    }

    const Paths& paths_;
    KeptFiles& kept_;
    HistoryRoot root_;
    const char* screen_;
    const TakeTurn& take_;
};

}  // namespace

NativePath settingsFolderOf(const Paths& paths, HistoryRoot root) {
    return root == HistoryRoot::Shared ? paths.sharedSettings : paths.localSettings;
}

std::optional<DatabaseTurn> waitWithoutAWord(const NativePath& settings) {
    return DatabaseTurn(settings);
}

HistoryRoot rootInUse(const Paths& paths) {
    return paths.useSharedDb && !paths.sharedSettings.empty() ? HistoryRoot::Shared : HistoryRoot::Local;
}

TakenBack takeBack(std::string_view file, const std::optional<std::string>& before,
                   const std::optional<std::string>& after, const std::optional<std::string>& now) {
    if (now == after)
        return {before, false};
    const bool places = file == std::string("Settings/") + kErrorsFileName;
    const auto merged =
        (places ? mergePlaces : mergeRecords)(linesOf(after), linesOf(before), linesOf(now), MergeChoice::Tell);
    if (merged.records == linesOf(now))
        return {now, !merged.conflicts.empty()};
    return {bytesOf(merged.records), !merged.conflicts.empty()};
}

Result<LostNote> undoChange(const Installation& installation, KeptFiles& kept, HistoryRoot root, const std::string& id,
                            const char* screen, const TakeTurn& take) {
    return Undo(installation, kept, root, screen, take).run(id);
}

}  // namespace quillon
