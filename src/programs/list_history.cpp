// SPDX-License-Identifier: MIT
#include "programs/list_history.h"

#include <ostream>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "testing/database_undo.h"
#include "testing/history_rows.h"
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

std::string historyJson(const std::vector<HistoryRow>& rows) {
    Json all = Json::array();
    for (const auto& row : rows) {
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
    }
    return all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string historyText(const std::vector<HistoryRow>& rows) {
    std::string text;
    const auto shown = [](const std::string& value) { return readable(std::string_view(value)); };
    for (const auto& row : rows) {
        const DatabaseChange& change = row.change;
        text += fmt::format("{}  {}\n    {} by {} on {}{}: {}\n", momentText(change.id), change.id,
                            shown(change.screen), shown(change.user), shown(change.computer),
                            change.job.empty() ? "" : ", job " + shown(change.job), differenceText(row));
        if (!change.undoes.empty())
            text += "    takes back " + shown(change.undoes) + "\n";
        if (!row.undoneBy.empty())
            text += "    taken back by " + shown(row.undoneBy) + "\n";
        for (const auto& remark : row.remarks) text += "    \"" + shown(remark) + "\"\n";
    }
    return text.empty() ? "nothing was changed\n" : text;
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
        return undoChange(installation, kept, root, wish.undo, "quillon-list").map([] { return kListSame; });
    }
    if (!wish.about.empty())
        return addRemark(settings, wish);
    auto rows = historyRows(readHistory(settings, wish.last));
    streams.out << (options.json ? historyJson(rows) : historyText(rows));
    return kListSame;
}

}  // namespace quillon
