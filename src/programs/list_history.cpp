// SPDX-License-Identifier: MIT
#include "programs/list_history.h"

#include <ostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "editors/history_effect.h"
#include "testing/database_undo.h"
#include "testing/history_rows.h"
#include "text/json_text.h"
#include "text/list_text.h"
#include "text/page_text.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> texts(const Records& records) {
    std::vector<std::string> all;
    for (const auto& record : records) all.push_back(toUtf8(PageText{record}));
    return all;
}

// Of each row, in the same order; empty where they are not asked for.
using Effects = std::vector<std::vector<ChangeEffect>>;

Json effectsJson(const std::vector<ChangeEffect>& effects) {
    Json all = Json::array();
    for (const auto& one : effects)
        all.push_back(
            {{"extension", one.extension}, {"heads", one.heads}, {"before", one.before}, {"after", one.after}});
    return all;
}

std::string historyJson(const std::vector<HistoryRow>& rows, const Effects& effects) {
    Json all = Json::array();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const HistoryRow& row = rows[i];
        Json files = Json::array();
        for (const auto& file : row.files)
            files.push_back({{"file", file.file},
                             {"created", file.created},
                             {"removed", file.removed},
                             {"added", texts(file.added)},
                             {"gone", texts(file.gone)}});
        all.push_back({{"id", row.change.id},
                       {"when", momentText(row.change.id)},
                       {"computer", row.change.computer},
                       {"user", row.change.user},
                       {"screen", row.change.screen},
                       {"job", row.change.job},
                       {"undoes", row.change.undoes},
                       {"undone_by", row.undoneBy},
                       {"remarks", row.remarks},
                       {"files", std::move(files)}});
        if (!effects.empty())
            all.back()["effects"] = effectsJson(effects[i]);
    }
    return jsonText(all) + "\n";
}

std::string effectLines(const std::vector<ChangeEffect>& effects) {
    std::string lines;
    for (const auto& one : effects) lines += "    " + effectText({one}) + "\n";
    return lines;
}

std::string historyText(const std::vector<HistoryRow>& rows, const Effects& effects) {
    std::string text;
    const auto shown = [](const std::string& value) { return readable(std::string_view(value)); };
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const HistoryRow& row = rows[i];
        const DatabaseChange& change = row.change;
        text += fmt::format("{}  {}\n    {} by {} on {}{}: {}\n", momentText(change.id), change.id,
                            shown(change.screen), shown(change.user), shown(change.computer),
                            change.job.empty() ? "" : ", job " + shown(change.job), differenceText(row));
        if (!change.undoes.empty())
            text += "    takes back " + shown(change.undoes) + "\n";
        if (!row.undoneBy.empty())
            text += "    taken back by " + shown(row.undoneBy) + "\n";
        for (const auto& remark : row.remarks) text += "    \"" + shown(remark) + "\"\n";
        if (!effects.empty())
            text += effectLines(effects[i]);
    }
    return text.empty() ? "nothing was changed\n" : text;
}

Effects effectsOfRows(const std::vector<HistoryRow>& rows, const NativePath& listFolder) {
    std::vector<DatabaseChange> changes;
    for (const auto& row : rows) changes.push_back(row.change);
    const std::atomic<bool> goOn{false};
    return effectsOf(changes, listFolder, goOn);
}

Result<int> addRemark(const NativePath& settings, const HistoryWish& wish) {
    if (!findChange(settings, wish.about))
        return failure(ErrorKind::NotFound, "There is no change " + wish.about + " in the history");
    DatabaseChange remark;
    remark.screen = "quillon-list";
    remark.about = wish.about;
    remark.remark = wish.remark;
    return DatabaseTurn(settings).note(std::move(remark)).map([] { return kListSame; });
}

}  // namespace

Result<int> showHistory(const Installation& installation, const ListCommandOptions& options,
                        const ListStreams& streams) {
    const Paths& paths = installation.paths();
    const HistoryWish& wish = options.history;
    const HistoryRoot root = wish.local ? HistoryRoot::Local : rootInUse(paths);
    const NativePath settings = settingsFolderOf(paths, root);
    if (!wish.undo.empty()) {
        const SystemClock clock;
        KeptFiles kept(installation, clock);
        return undoChange(installation, kept, root, wish.undo, "quillon-list").map([&streams](const LostNote& lost) {
            if (lost)
                streams.err << "quillon-list: " << lostNoteText(*lost) << '\n';
            return kListSame;
        });
    }
    if (!wish.about.empty())
        return addRemark(settings, wish);
    auto rows = historyRows(readHistory(settings, wish.last));
    const Effects effects = wish.effect ? effectsOfRows(rows, paths.localPath) : Effects();
    streams.out << (options.json ? historyJson(rows, effects) : historyText(rows, effects));
    return kListSame;
}

}  // namespace quillon
