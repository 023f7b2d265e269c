// SPDX-License-Identifier: MIT
#include "testing/history_rows.h"

#include <algorithm>
#include <map>
#include <string_view>

#include <fmt/format.h>

#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::size_t kToldFiles = 3;

// The lines of `list` that `other` has fewer of.
Records missingIn(const std::string& other, const std::string& list) {
    std::map<std::string_view, int> held;
    for (const auto line : splitLines(other)) ++held[line];
    Records missing;
    for (const auto line : splitLines(list)) {
        if (--held[line] < 0)
            missing.emplace_back(line);
    }
    return missing;
}

std::string fileText(const FileDifference& file) {
    const std::string name = readable(std::string_view(file.file).substr(file.file.rfind('/') + 1));
    if (file.removed)
        return name + " removed";
    if (file.created)
        return fmt::format("{} new +{}", name, file.added.size());
    if (file.gone.empty() && file.added.empty())
        return name + " reordered";
    return fmt::format("{} +{} -{}", name, file.added.size(), file.gone.size());
}

}  // namespace

FileDifference differenceOf(const FileChange& change) {
    const std::string before = change.before.value_or("");
    const std::string after = change.after.value_or("");
    return {change.file, missingIn(after, before), missingIn(before, after), !change.before, !change.after};
}

std::vector<HistoryRow> historyRows(const std::vector<DatabaseChange>& notes) {
    std::vector<HistoryRow> rows;
    std::map<std::string, std::string> undone;  // newest first, so an undo that was undone is known by then
    std::map<std::string, std::vector<std::string>> remarks;
    for (const auto& note : notes) {
        if (!note.about.empty()) {
            remarks[note.about].insert(remarks[note.about].begin(), note.remark);
            continue;
        }
        HistoryRow row{note, {}, {}, undone.contains(note.id) ? undone[note.id] : std::string()};
        if (!note.undoes.empty() && row.undoneBy.empty())
            undone.try_emplace(note.undoes, note.id);
        if (!note.remark.empty())
            row.remarks.push_back(note.remark);
        const auto& later = remarks[note.id];
        row.remarks.insert(row.remarks.end(), later.begin(), later.end());
        for (const auto& file : note.files) row.files.push_back(differenceOf(file));
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string differenceText(const HistoryRow& row) {
    std::string text;
    for (std::size_t i = 0; i < std::min(row.files.size(), kToldFiles); ++i)
        text += (i == 0 ? "" : ", ") + fileText(row.files[i]);
    if (row.files.size() > kToldFiles)
        text += fmt::format(" and {} more", row.files.size() - kToldFiles);
    return text;
}

std::string momentText(const std::string& id) {
    if (id.size() < 15)
        return id;
    return id.substr(0, 4) + "-" + id.substr(4, 2) + "-" + id.substr(6, 2) + " " + id.substr(9, 2) + ":" +
           id.substr(11, 2) + ":" + id.substr(13, 2) + " UTC";
}

}  // namespace quillon
