// SPDX-License-Identifier: MIT
#pragma once

// A list and its copies, local and shared, as a screen edits it beside other workstations: what somebody else did to a
// copy since the screen loaded it stays, put together record by record.

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "app/database_history.h"
#include "app/dialogs.h"
#include "app/installation.h"
#include "app/lost_note.h"
#include "editors/list_saving.h"
#include "testing/record_merge.h"

namespace quillon {

/// How the bytes of a list are its records, and back. The records are those that its screen can hold, so bytes that the
/// screen would write differently are read as it would write them.
struct ListForm {
    const char* screen;  ///< who makes the changes, for the history
    Records (*records)(std::string_view bytes);
    std::string (*bytes)(const Records& records);
    RecordMerge (*merge)(const Records& base, const Records& ours, const Records& theirs, MergeChoice choice);
    /// A list without records is written too; else its files stay as they are.
    bool writesEmpty = true;
};

/// The lines of a list whose every line is a record.
[[nodiscard]] Records lineRecords(std::string_view bytes);
/// CR LF behind each.
[[nodiscard]] std::string lineBytes(const Records& records);

/// Of a term file, as its two screens have it: one of them leaves the files alone when there are no terms.
extern const ListForm kTermForm;
extern const ListForm kTermFormNeverEmpty;

/// Whether a copy that cannot be written keeps the others from being written.
enum class OnFailure { GoOn, End };

class ListCopies {
public:
    /// All must outlive this.
    ListCopies(const Installation& installation, Dialogs& dialogs, KeptFiles& kept, const ListForm& form)
        : installation_(installation), dialogs_(dialogs), kept_(kept), saver_(kept), form_(form) {}

    /// The screen has loaded its list: `shown` as it would write it. Looks at what the copies hold at this moment,
    /// which is what later changes of others are measured by. A shared copy that is another list than the loaded
    /// one, and has records in common with it or met an empty one, is measured by what both have.
    void loaded(std::string shown, const std::vector<NativePath>& copies);
    /// The job whose files the list is edited for, for the history.
    void ofJob(std::string job) { job_ = std::move(job); }
    /// Nothing of the list is on the screen any more: whatever the files hold is kept before it is overwritten.
    void forget() { saver_.forget(); }
    /// The screen takes this copy away, if it is there: it goes under Kept. One that cannot go stays, and so do records
    /// which others have added since the list was loaded.
    void moveAway(const NativePath& copy);
    /// Takes away what moveAway could not, as its turn did not come. False: it did not come again.
    bool moveAwayWhatWasLeft();
    /// Does something with a copy in this program's turn, and notes it in the history. Where the turn is not waited
    /// for, nothing is done and a box says so.
    [[nodiscard]] Result<void> change(const NativePath& copy, const std::function<Result<void>()>& apply);
    /// The last save did not get its turn, as the person did not wait for another computer, or others had theirs all
    /// the time: nothing was written, and a box has said so.
    [[nodiscard]] bool isLeft() const { return left_.has_value(); }
    /// Why, in the words of the box; none where the last save got its turn.
    [[nodiscard]] const std::optional<FileError>& whyLeft() const { return left_; }
    /// Asks whether the screen closes all the same, though something is not saved.
    [[nodiscard]] bool askToCloseUnsaved();

    /// Writes `bytes`, which the screen shows, to these copies in this order. What others did to a copy since it was
    /// loaded is put into `bytes` first, which then is what the screen has to show; where both changed the same record,
    /// a box of our own asks. Where nobody else did anything, the bytes are written as they are. A local copy that
    /// cannot be read is overwritten (and kept, as ListSaver does); a shared one is left alone, as is a share that does
    /// not answer, which is a failure of this copy. Other computers wait meanwhile, and every change is noted in the
    /// history of its root; a box tells once when that did not work. Gives one result for each copy; behind the failure
    /// that ended it, there are none. A wait that was left (waitForTurn), or that others made a vain one, is a failure
    /// of each.
    [[nodiscard]] std::vector<Result<void>> save(const std::vector<NativePath>& copies, std::string& bytes,
                                                 OnFailure onFailure = OnFailure::GoOn);

private:
    // What a copy held when it was last seen: nothing is known of one that could not be read.
    struct Base {
        bool known = false;
        std::optional<std::string> bytes;  // none: there was no such file
    };
    struct Merged {
        std::string bytes;
        std::vector<RecordConflict> conflicts;
        std::vector<std::string> takenIn;
    };

    [[nodiscard]] static Base lookAt(const NativePath& copy);
    [[nodiscard]] Base lookPatientlyAt(const NativePath& copy, const Base& before) const;
    [[nodiscard]] std::optional<Records> commonBase(const std::string& shown, const Base& shared) const;
    [[nodiscard]] Base baseOf(const NativePath& copy, const Base& known, const Base& now) const;
    [[nodiscard]] bool isShared(const NativePath& copy) const;
    [[nodiscard]] NativePath settingsOf(const NativePath& copy) const;
    [[nodiscard]] Merged merge(const std::vector<NativePath>& copies, const std::string& bytes, MergeChoice choice);
    void mergeCopy(const NativePath& copy, MergeChoice choice, Merged& merged);
    [[nodiscard]] bool isOthers(const NativePath& copy, const Base& base, const Base& now,
                                const std::string& ours) const;
    [[nodiscard]] MergeChoice ask(const NativePath& copy, const std::vector<RecordConflict>& conflicts);

    [[nodiscard]] Result<void> takeAway(const NativePath& copy, const NativePath& through);
    [[nodiscard]] Result<void> changeInTurn(DatabaseTurn& turn, const NativePath& copy,
                                            const std::function<Result<void>()>& apply);

    class Round;
    [[nodiscard]] bool begin(std::optional<Round>& round, const std::vector<NativePath>& copies);
    void tellLeft(const FileError& why);
    void tellNotChanged(const FileError& why, const char* whenThen);
    [[nodiscard]] bool isBeingChanged(const NativePath& copy) const;
    [[nodiscard]] bool write(const std::vector<NativePath>& copies, const std::string& bytes, OnFailure onFailure,
                             Round& round, std::vector<Result<void>>& results);
    [[nodiscard]] Result<void> writeCopy(const NativePath& copy, const std::string& bytes, Round& round);
    void tellProblem(const LostNote& problem);

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    ListSaver saver_;
    const ListForm& form_;
    std::map<NativePath, Base> bases_;
    std::set<NativePath> toMoveAway_;
    std::set<NativePath> unseen_;  // shared copies that could not be read ahead of the save
    std::string shown_;            // as it was loaded
    std::string job_;
    bool toldProblem_ = false;
    std::optional<FileError> left_;
};

}  // namespace quillon
