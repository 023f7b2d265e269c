// SPDX-License-Identifier: MIT
#include "editors/history_browser.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <fmt/format.h>

#include "app/history_dialogs.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr const char* kTitle = "Database History";
// A refresh or a set-up touches every term file: who wants all of it reads the note itself.
constexpr std::size_t kMostFilesTold = 50;

std::string recordLines(const Records& records, char sign) {
    std::string text;
    for (const auto& record : records)
        text += fmt::format("  {} {}\n", sign, readable(std::string_view(toUtf8(PageText{record}))));
    return text;
}

std::string fileDetails(const FileDifference& file) {
    std::string text = readable(std::string_view(file.file));
    if (file.created)
        text += "  (new)";
    if (file.removed)
        text += "  (removed)";
    if (!file.created && !file.removed && file.gone.empty() && file.added.empty())
        text += "  (another order)";
    return text + "\n" + recordLines(file.gone, '-') + recordLines(file.added, '+');
}

}  // namespace

void HistoryBrowser::load() {
    const HistoryRow* const before = chosen();
    const std::string id = before == nullptr ? std::string() : before->change.id;
    const Paths& paths = installation_.paths();
    rows_ = historyRows(readHistory(settingsFolderOf(paths, rootInUse(paths)), kMostHistoryNotes));
    const auto again = std::ranges::find_if(rows_, [&](const HistoryRow& row) { return row.change.id == id; });
    current_ = again == rows_.end() ? -1 : static_cast<int>(again - rows_.begin());
}

const HistoryRow* HistoryBrowser::chosen() const {
    return current_ < 0 ? nullptr : &rows_[static_cast<std::size_t>(current_)];
}

void HistoryBrowser::selectRow(int row) {
    current_ = row >= 0 && row < static_cast<int>(rows_.size()) ? row : -1;
}

std::string HistoryBrowser::heading() const {
    const bool shared = rootInUse(installation_.paths()) == HistoryRoot::Shared;
    const std::string which = shared ? "The shared database" : "The database of this computer";
    if (rows_.empty())
        return which + ": nothing was changed yet";
    return which + ": " + grouped(static_cast<std::int64_t>(rows_.size())) + " changes, the newest first";
}

std::string HistoryBrowser::details() const {
    const HistoryRow* const row = chosen();
    if (row == nullptr)
        return {};
    std::string text;
    if (!row->change.undoes.empty())
        text += "Takes back the change of " + momentText(row->change.undoes) + "\n";
    if (!row->undoneBy.empty())
        text += "Taken back " + momentText(row->undoneBy) + "\n";
    for (const auto& words : row->remarks) text += "\"" + readable(std::string_view(words)) + "\"\n";
    for (std::size_t i = 0; i < std::min(row->files.size(), kMostFilesTold); ++i) text += fileDetails(row->files[i]);
    if (row->files.size() > kMostFilesTold)
        text +=
            fmt::format("and {} more files\n", grouped(static_cast<std::int64_t>(row->files.size() - kMostFilesTold)));
    return text;
}

std::optional<std::string> HistoryBrowser::lookForEffect() {
    const HistoryRow* const row = chosen();
    const std::string id = row == nullptr ? std::string() : row->change.id;
    if (id == effectId_) {
        const bool came = effect_.valid() && hasCome(effect_, std::chrono::milliseconds(0));
        return came ? std::optional(effect_.get()) : std::nullopt;
    }
    effectId_ = id;
    *stop_ = true;  // nobody waits for the last one any more
    stop_ = std::make_shared<std::atomic<bool>>(false);
    effect_ = {};
    if (row == nullptr)
        return std::string();
    auto started = startBeside(
        std::function<std::string()>([change = row->change, folder = installation_.paths().localPath, stop = stop_] {
            return effectText(effectsOf({change}, folder, *stop).front());
        }));
    if (started)
        effect_ = std::move(*started);
    return std::string();
}

void HistoryBrowser::undo() {
    const HistoryRow* const row = chosen();
    if (row == nullptr || !dialogs_.ask(kTitle, "Do you want to take this change back ?\r\n\r\n" +
                                                    momentText(row->change.id) + "\r\n" + differenceText(*row)))
        return;
    const auto take = [this](const NativePath& settings) { return waitForTurn(dialogs_, settings); };
    const std::string id = row->change.id;
    const auto undone = undoChange(installation_, kept_, rootInUse(installation_.paths()), id, kTitle, take);
    if (!undone)
        dialogs_.warn(kTitle, undone.error().text);
    else
        warnOfLostNote(dialogs_, *undone);
    load();
}

void HistoryBrowser::addRemark() {
    const HistoryRow* const row = chosen();
    if (row == nullptr || remark.empty())
        return;
    DatabaseChange note = changeBy(kTitle);
    note.about = row->change.id;
    note.remark = remark;
    const Paths& paths = installation_.paths();
    auto turn = waitForTurn(dialogs_, settingsFolderOf(paths, rootInUse(paths)));
    const auto noted = turn ? turn->note(std::move(note)) : Result<void>(failure(turnNotWaitedFor()));
    if (!noted)
        dialogs_.warn(kTitle, noted.error().text);
    else
        remark.clear();
    load();
}

}  // namespace quillon
