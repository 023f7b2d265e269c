// SPDX-License-Identifier: MIT
#pragma once

// The history of the database as its screen shows it, without the screen. docs/formats/history.md.

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/dialogs.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "editors/history_effect.h"
#include "platform/start_beside.h"
#include "testing/database_undo.h"
#include "testing/history_rows.h"

namespace quillon {

/// At most so many notes are read, the newest ones.
inline constexpr std::size_t kMostHistoryNotes = 2000;

class HistoryBrowser {
public:
    /// All must outlive this. Nothing is read before `load`.
    HistoryBrowser(const Installation& installation, Dialogs& dialogs, KeptFiles& kept)
        : installation_(installation), dialogs_(dialogs), kept_(kept) {}
    HistoryBrowser(const HistoryBrowser&) = delete;
    HistoryBrowser& operator=(const HistoryBrowser&) = delete;
    /// Does not wait for what is under way.
    ~HistoryBrowser() { *stop_ = true; }

    std::string remark;  ///< `note_`, UTF-8

    /// Reads the history of the database in use: the shared one while sharing is on, else that of this computer. The
    /// chosen change stays chosen.
    void load();

    /// Newest first.
    [[nodiscard]] const std::vector<HistoryRow>& rows() const { return rows_; }
    /// The chosen row from 0, -1 for none.
    [[nodiscard]] int current() const { return current_; }
    void selectRow(int row);

    /// Which database it is, and how many changes are shown.
    [[nodiscard]] std::string heading() const;
    /// The chosen change in full: what was added and what is gone, remarks, and whether it was taken back. UTF-8.
    [[nodiscard]] std::string details() const;

    /// What the chosen change did to the grades of kept heads, found on a thread of its own: another text when there is
    /// one, UTF-8. To be called again and again.
    [[nodiscard]] std::optional<std::string> lookForEffect();

    [[nodiscard]] bool mayUndo() const { return current_ >= 0; }
    [[nodiscard]] bool mayAddRemark() const { return current_ >= 0 && !remark.empty(); }

    /// Asks, takes the chosen change back as a new change, and reads the history again. What does not work is told.
    void undo();
    /// Puts the remark down beside the chosen change.
    void addRemark();

private:
    [[nodiscard]] const HistoryRow* chosen() const;

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    std::vector<HistoryRow> rows_;
    int current_ = -1;
    std::string effectId_;  // the change that the effect is told of, or looked for
    std::shared_ptr<std::atomic<bool>> stop_ = std::make_shared<std::atomic<bool>>(false);
    AnswerBeside<std::function<std::string()>> effect_;
};

}  // namespace quillon
