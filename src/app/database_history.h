// SPDX-License-Identifier: MIT
#pragma once

// The memory of a database: every change of a term file or rule list, as a note beside the data that is never written
// again. docs/formats/history.md.

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/lost_note.h"
#include "platform/file.h"
#include "platform/lease.h"
#include "platform/result.h"

namespace quillon {

/// What became of one file. No bytes: there is no such file.
struct FileChange {
    std::string file;  ///< below the root of the database, with "/": "Database/jpg.dat"
    std::optional<std::string> before;
    std::optional<std::string> after;

    friend bool operator==(const FileChange&, const FileChange&) = default;
};

/// One change, or a remark about one. All texts are UTF-8 and one line each.
struct DatabaseChange {
    std::string id;        ///< the name of the note without its end; sorts by time
    std::string computer;  ///< who made it: this and the user of the system
    std::string user;
    std::string screen;  ///< by what: "Extension Editor", "Job", "quillon-list"
    std::string job;     ///< the ID of the job that it was made for; may be empty
    std::string undoes;  ///< the ID of the change that it takes back; else empty
    std::string about;   ///< the ID of the change that it is a remark about; else empty
    std::string remark;  ///< why, in a person's words; may be empty
    std::vector<FileChange> files;

    friend bool operator==(const DatabaseChange&, const DatabaseChange&) = default;
};

/// One that the job of this ID makes, as it brings the local copies up to date.
[[nodiscard]] DatabaseChange changeByJob(std::string job = {});
/// One that a screen of this name makes.
[[nodiscard]] DatabaseChange changeBy(std::string screen);

/// The bytes of a note, and back; no value for bytes that are not one.
[[nodiscard]] std::string noteBytes(const DatabaseChange& change);
[[nodiscard]] std::optional<DatabaseChange> parseNote(std::string_view bytes);

/// `<settings folder>/History`.
[[nodiscard]] NativePath historyFolder(const NativePath& settings);

/// The notes below a settings folder, the newest first; at most `most`, those that cannot be read left out. No folder
/// gives none.
[[nodiscard]] std::vector<DatabaseChange> readHistory(const NativePath& settings, std::size_t most);

/// The note of this ID; none when there is no such note, or it cannot be read.
[[nodiscard]] std::optional<DatabaseChange> findChange(const NativePath& settings, const std::string& id);

/// The turn of this program at the database of one root (a local one or a share): other computers wait until it ends.
/// Where there is no settings folder, or it takes no files, there is neither lock nor history, and changes are made all
/// the same.
class DatabaseTurn {
public:
    /// Waits for the turn. `settings` is the settings folder of the root; empty for none. A screen waits by waitForTurn
    /// (app/history_dialogs). `watch` may be null.
    explicit DatabaseTurn(NativePath settings, LeaseTimes times = {}, LeaseWatch* watch = nullptr);

    /// Where a save keeps its temporary file, so that it cannot take anybody's place once the turn is over
    /// (saveWholeFileThrough). Empty without a lock.
    [[nodiscard]] NativePath through() const { return lease_ ? lease_->folder() : NativePath(); }
    /// The turn did not come, as others had it one after the other: what is written now may meet what they write.
    [[nodiscard]] bool isInVain() const { return inVain_; }
    /// The share did not answer, so that nobody knows whether others have their turn: nothing is to be written there.
    [[nodiscard]] bool isShareAway() const { return shareAway_; }
    /// Why nothing is to be written that others may be writing, too; none in a turn that came, and where there are
    /// none.
    [[nodiscard]] std::optional<FileError> refusal() const;
    /// What a share does not let go at once is given back on another thread (Lease::endBeside).
    void endBeside() {
        if (lease_)
            lease_->endBeside();
    }
    /// Somebody else has taken the turn, as this computer was silent for too long.
    [[nodiscard]] bool isLost() const { return lease_ && !lease_->isHeld(); }

    /// Makes one change and notes it: a process that dies on its way leaves either neither or both. The note gets its
    /// ID, computer and user here. Nothing is noted of a change that failed or changes nothing.
    [[nodiscard]] Result<void> make(DatabaseChange change, const std::function<Result<void>()>& apply);
    /// Notes what has been done, or a remark. Nothing to be noted is a success.
    [[nodiscard]] Result<void> note(DatabaseChange change);

    /// Why a change of this turn could not be noted; none when all were.
    [[nodiscard]] const LostNote& problem() const { return problem_; }

private:
    void finishNotes();
    void finishNote(const NativePath& prepared);
    [[nodiscard]] std::string nextId();
    void sign(DatabaseChange& change);
    [[nodiscard]] Result<NativePath> placeFor(const std::string& id);

    NativePath settings_;
    NativePath history_;  // empty: there is none
    std::optional<Lease> lease_;
    bool inVain_ = false;
    bool shareAway_ = false;
    std::string lastId_;
    LostNote noHistory_;  // why there is none, though there is a settings folder
    LostNote problem_;
};

/// Does something with one file of a root, whose settings folder this is, in a turn of its own, and notes what became
/// of the file. `file` may be empty: then nothing is noted. What was done stays done without a note.
[[nodiscard]] Result<LostNote> changeNoted(const NativePath& settings, const NativePath& file, DatabaseChange change,
                                           const std::function<Result<void>()>& apply);

/// The same in a turn that is there already.
[[nodiscard]] Result<LostNote> changeNoted(DatabaseTurn& turn, const NativePath& file, DatabaseChange change,
                                           const std::function<Result<void>()>& apply);

/// What a step does to many files of one root, put down in one note behind it. Other computers do not wait meanwhile.
class NotedStep {
public:
    /// `settings` is the settings folder of the root.
    NotedStep(NativePath settings, DatabaseChange change)
        : settings_(std::move(settings)), change_(std::move(change)) {}

    /// Does something with one file and remembers what became of it.
    [[nodiscard]] Result<void> change(const NativePath& file, const std::function<Result<void>()>& apply);
    /// Writes the note, if there is anything to be noted. Why that did not work; none when it did.
    LostNote finish();

private:
    NativePath settings_;
    DatabaseChange change_;
};

/// All term files and rule lists of a root, looked at ahead of a step that replaces them at its own pace, and behind
/// it.
class NotedDatabase {
public:
    NotedDatabase(NativePath settings, DatabaseChange change);
    /// Writes the note, if something became different. Why that did not work; none when it did.
    LostNote finish();

private:
    [[nodiscard]] std::map<std::string, std::string> look() const;

    NativePath settings_;
    DatabaseChange change_;
    std::map<std::string, std::string> before_;  // by place below the root
};

/// The place of a file below its root: "Database/jpg.dat".
[[nodiscard]] std::string placeInRoot(const NativePath& file);

}  // namespace quillon
