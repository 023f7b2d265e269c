// SPDX-License-Identifier: MIT
#include "editors/list_copies.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "app/history_dialogs.h"
#include "platform/disk_calls.h"
#include "platform/folders.h"
#include "testing/rule_line.h"
#include "testing/term_file.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/page_text.h"

namespace quillon {

namespace {

// Each time somebody else has taken the lock meanwhile, which takes as long as a lease.
constexpr int kMostRounds = 5;
constexpr std::size_t kToldConflicts = 5;
constexpr int kMostLooks = 6;
constexpr std::chrono::milliseconds kBetweenLooks{40};

std::string shownRecord(const std::string& record) {
    return record.empty() ? std::string("(deleted)") : toUtf8(PageText{record});
}

std::string conflictText(const std::string& file, const std::vector<RecordConflict>& conflicts) {
    std::string text = "While it was open here, another workstation changed the same records of " + file + ".\r\n";
    for (std::size_t i = 0; i < std::min(conflicts.size(), kToldConflicts); ++i) {
        const RecordConflict& one = conflicts[i];
        if (one == RecordConflict{})
            text += "\r\nBoth put the records in an order of their own.\r\n";
        else
            text += "\r\nBefore : " + shownRecord(one.base) + "\r\nHere : " + shownRecord(one.ours) +
                    "\r\nThere : " + shownRecord(one.theirs) + "\r\n";
    }
    if (conflicts.size() > kToldConflicts)
        text += "\r\nand " + std::to_string(conflicts.size() - kToldConflicts) + " more\r\n";
    return text + "\r\nDo you want to keep what was entered here ? With No, theirs stands. What either added stays.";
}

}  // namespace

Records lineRecords(std::string_view bytes) {
    Records records;
    for (const auto line : splitLines(bytes)) records.emplace_back(line);
    return records;
}

std::string lineBytes(const Records& records) {
    std::string bytes;
    for (const auto& record : records) bytes += record + "\r\n";
    return bytes;
}

const ListForm kTermForm{"Manual Update",
                         [](std::string_view bytes) { return lineRecords(termFileBytes(parseTermFile(bytes))); },
                         lineBytes, mergeRecords};
const ListForm kTermFormNeverEmpty{"Extension Editor", kTermForm.records, lineBytes, mergeRecords, false};

ListCopies::Base ListCopies::lookAt(const NativePath& copy) {
    if (copy.empty())
        return {};
    auto bytes = readRuleFile(copy);
    if (bytes)
        return {true, std::move(*bytes)};
    const bool missing = bytes.error().kind == ErrorKind::NotFound && isFolder(copy.parent_path());
    return {missing, {}};
}

// Where another computer replaces a file, a share may show none for a moment, or not let it be read; taken for what it
// looks like, that would be a list which somebody has deleted, or one to be overwritten.
ListCopies::Base ListCopies::lookPatientlyAt(const NativePath& copy, const Base& before) const {
    Base now = lookAt(copy);
    if (!isShared(copy))
        return now;
    if (!isFolder(copy.parent_path()))
        return now.bytes ? now : Base{};  // the share went between two looks
    // As a list is loaded, others may have the turn; at a save it is ours. They are looked for behind the list: who has
    // begun since, and is done by now, would have to be quicker than one look.
    const auto isDoubtful = [&] {
        return !now.known || (!now.bytes && (before.known ? before.bytes.has_value() : isBeingChanged(copy)));
    };
    for (int looks = 1; isDoubtful() && looks < kMostLooks; ++looks) {
        disk().wait(kBetweenLooks);
        now = lookAt(copy);
    }
    return now;
}

bool ListCopies::isBeingChanged(const NativePath& copy) const {
    return Lease::isTaken(historyFolder(settingsOf(copy)));
}

void ListCopies::loaded(std::string shown, const std::vector<NativePath>& copies) {
    bases_.clear();
    toMoveAway_.clear();
    left_.reset();
    for (const auto& copy : copies) bases_[copy] = lookPatientlyAt(copy, {});
    for (auto& [copy, base] : bases_) {
        const auto common = isShared(copy) ? commonBase(shown, base) : std::nullopt;
        if (common)
            base.bytes = form_.bytes(*common);
    }
    shown_ = shown;
    saver_.loaded(std::move(shown));
}

// A screen that has loaded the local copy may find a shared one that others have taught since it was fetched last. What
// either has more is an addition of its side, as if it had been made just now: nobody can tell here what was deleted,
// and what a save could not bring to the share is not to go for that. Two lists without a record in common are two
// lists, unless there was nothing to be loaded.
std::optional<Records> ListCopies::commonBase(const std::string& shown, const Base& shared) const {
    if (!shared.bytes || form_.bytes(form_.records(*shared.bytes)) == shown)
        return std::nullopt;
    Records theirs = form_.records(*shared.bytes);
    Records common;
    for (const auto& record : form_.records(shown)) {
        const auto same = std::ranges::find(theirs, record);
        if (same == theirs.end())
            continue;
        common.push_back(record);
        theirs.erase(same);
    }
    const bool nothingLoaded = shown.empty() && std::ranges::any_of(bases_, [this](const auto& copy) {
                                   return !isShared(copy.first) && copy.second.known;
                               });
    return common.empty() && !nothingLoaded ? std::nullopt : std::optional(std::move(common));
}

bool ListCopies::isShared(const NativePath& copy) const {
    const Paths& paths = installation_.paths();
    const NativePath folder = copy.parent_path();
    return !folder.empty() && (folder == paths.sharedDatabase || folder == paths.sharedSettings);
}

void ListCopies::moveAway(const NativePath& copy) {
    if (copy.empty() || !pathExists(copy)) {
        if (lookAt(copy).known)
            toMoveAway_.erase(copy);  // gone; of a share that is away nothing is known
        return;
    }
    auto turn = waitToWrite(dialogs_, settingsOf(copy));
    if (!turn) {
        if (form_.writesEmpty)
            return tellNotChanged(turn.error(), "It can be done again later.");
        toMoveAway_.insert(copy);
        return tellNotChanged(turn.error(), "It is done when this screen saves.");
    }
    if (!changeInTurn(*turn, copy, [&] { return takeAway(copy, turn->through()); }))
        return;
    toMoveAway_.erase(copy);
    bases_[copy] = {true, {}};
}

// All that this screen knew goes; what others have added since it was loaded stays in the list.
Result<void> ListCopies::takeAway(const NativePath& copy, const NativePath& through) {
    const auto known = bases_.find(copy);
    const Base now = lookPatientlyAt(copy, known == bases_.end() ? Base{} : known->second);
    if (known != bases_.end() && now.bytes) {
        const Base base = baseOf(copy, known->second, now);
        const Records theirs = form_.records(*now.bytes);
        const auto rest = form_.merge(form_.records(base.bytes.value_or("")), {}, theirs, MergeChoice::Theirs).records;
        if (isOthers(copy, base, now, "") && !rest.empty())
            return saver_.save(copy, form_.bytes(rest), through);
    }
    return kept_.moveAway(copy).map([](const NativePath&) {});
}

bool ListCopies::moveAwayWhatWasLeft() {
    for (const auto& copy : std::set(toMoveAway_)) moveAway(copy);
    return toMoveAway_.empty();
}

Result<void> ListCopies::change(const NativePath& copy, const std::function<Result<void>()>& apply) {
    auto turn = waitToWrite(dialogs_, copy.empty() ? NativePath() : settingsOf(copy));
    if (turn)
        return changeInTurn(*turn, copy, apply);
    tellNotChanged(turn.error(), "It can be done again later.");
    return failure(turn.error());
}

Result<void> ListCopies::changeInTurn(DatabaseTurn& turn, const NativePath& copy,
                                      const std::function<Result<void>()>& apply) {
    DatabaseChange noted;
    noted.screen = form_.screen;
    noted.job = job_;
    Result<LostNote> changed;
    writePatiently(dialogs_, copy.parent_path(), [&] { changed = changeNoted(turn, copy, std::move(noted), apply); });
    return changed.map([this](const LostNote& lost) { tellProblem(lost); });
}

// Whether somebody else has changed the copy, so that there is something to be put together.
bool ListCopies::isOthers(const NativePath& copy, const Base& base, const Base& now, const std::string& ours) const {
    if (!base.known || !now.known || base.bytes == now.bytes)
        return false;
    // A local file that is gone was taken away by the refresh of a job, which nobody has taught.
    if (!now.bytes)
        return isShared(copy);
    // Kept: a list that nobody touched here, and that the share did not have when it was loaded, takes the place of one
    // that came there meanwhile (test ASharedFileOfAnotherWorkstationIsKeptBeforeItIsOverwritten).
    return base.bytes || !isShared(copy) || shown_.empty() || ours != shown_;
}

// A shared copy that could not be read as the list was loaded is measured by what is the same in both: nobody can tell
// which of the others were there then, and none of them is to go for that.
ListCopies::Base ListCopies::baseOf(const NativePath& copy, const Base& known, const Base& now) const {
    if (known.known || !isShared(copy) || !now.bytes)
        return known;
    if (form_.bytes(form_.records(*now.bytes)) == shown_)
        return now;
    return {true, form_.bytes(commonBase(shown_, now).value_or(Records{}))};
}

void ListCopies::mergeCopy(const NativePath& copy, MergeChoice choice, Merged& merged) {
    const auto known = bases_.find(copy);
    if (known == bases_.end())
        return;
    const Base now = lookPatientlyAt(copy, known->second);
    if (!now.known && isShared(copy))
        unseen_.insert(copy);
    const Base base = baseOf(copy, known->second, now);
    if (!isOthers(copy, base, now, merged.bytes))
        return;
    const Records theirs = form_.records(now.bytes.value_or(""));
    auto result = form_.merge(form_.records(base.bytes.value_or("")), form_.records(merged.bytes), theirs, choice);
    merged.bytes = form_.bytes(result.records);
    if (result.conflicts.empty() && form_.bytes(theirs) == now.bytes)
        merged.takenIn.push_back(*now.bytes);
    merged.conflicts.insert(merged.conflicts.end(), result.conflicts.begin(), result.conflicts.end());
}

// The shared copy first: the local one then gets what came from there.
ListCopies::Merged ListCopies::merge(const std::vector<NativePath>& copies, const std::string& bytes,
                                     MergeChoice choice) {
    Merged merged{bytes, {}, {}};
    unseen_.clear();
    for (const bool shared : {true, false}) {
        for (const auto& copy : copies) {
            if (isShared(copy) == shared)
                mergeCopy(copy, choice, merged);
        }
    }
    return merged;
}

MergeChoice ListCopies::ask(const NativePath& copy, const std::vector<RecordConflict>& conflicts) {
    const std::string name = readable(copy.filename().native());
    const bool ours = dialogs_.ask("Changed by another workstation", conflictText(name, conflicts));
    return ours ? MergeChoice::Ours : MergeChoice::Theirs;
}

NativePath ListCopies::settingsOf(const NativePath& copy) const {
    const Paths& paths = installation_.paths();
    return isShared(copy) ? paths.sharedSettings : paths.localSettings;
}

// This program's turn at the roots of the copies; all of them end with this.
class ListCopies::Round {
public:
    explicit Round(const ListCopies& list) : list_(list) {}

    /// Waits for the turn at the root of this copy, unless it is there. False: the person did not wait, or others had
    /// it all the time, so that a save would meet theirs.
    [[nodiscard]] bool take(const NativePath& copy) {
        const NativePath settings = list_.settingsOf(copy);
        if (turns_.contains(settings))
            return true;
        auto turn = waitForTurn(list_.dialogs_, settings);
        if (!turn)
            refusal_ = turnNotWaitedFor();
        else if (turn->isInVain())
            refusal_ = turn->refusal();
        else
            turns_.try_emplace(settings, std::move(*turn));
        return !refusal_;
    }
    /// Why a turn is not there.
    [[nodiscard]] const std::optional<FileError>& refusal() const { return refusal_; }

    [[nodiscard]] DatabaseTurn& at(const NativePath& copy) { return turns_.at(list_.settingsOf(copy)); }

    /// Why something could not be noted.
    [[nodiscard]] LostNote problem() const {
        const auto failed =
            std::ranges::find_if(turns_, [](const auto& turn) { return turn.second.problem().has_value(); });
        return failed == turns_.end() ? std::nullopt : failed->second.problem();
    }

private:
    const ListCopies& list_;
    std::map<NativePath, DatabaseTurn> turns_;
    std::optional<FileError> refusal_;
};

// The share first, as all others do: nobody waits for it with another turn in hand.
bool ListCopies::begin(std::optional<Round>& round, const std::vector<NativePath>& copies) {
    left_.reset();
    round.emplace(*this);
    for (const bool shared : {true, false}) {
        for (const auto& copy : copies) {
            if (isShared(copy) != shared || round->take(copy))
                continue;
            left_ = round->refusal();
            return false;
        }
    }
    return true;
}

void ListCopies::tellLeft(const FileError& why) {
    dialogs_.warn(form_.screen, "Nothing was saved, as " + why.text +
                                    ". What was entered stays here until it is saved, or this screen is closed.");
}

void ListCopies::tellNotChanged(const FileError& why, const char* whenThen) {
    dialogs_.warn(form_.screen, "Nothing was changed, as " + why.text + ". " + whenThen);
}

bool ListCopies::askToCloseUnsaved() {
    MessageBox box{"Close without saving ?",
                   "What was done here is not saved yet. Do you want to close this screen and drop it ?",
                   BoxStyle::Warning, BoxButtons::YesNo, true};
    box.loss = BoxLoss::File;
    return dialogs_.show(box) == BoxAnswer::Yes;
}

Result<void> ListCopies::writeCopy(const NativePath& copy, const std::string& bytes, Round& round) {
    DatabaseTurn& turn = round.at(copy);
    if (isShared(copy) && (turn.isShareAway() || unseen_.contains(copy)))
        return failure(ErrorKind::PathAccess, "the share cannot be read at this moment");
    DatabaseChange change;
    change.screen = form_.screen;
    change.job = job_;
    change.files = {{placeInRoot(copy), lookAt(copy).bytes, bytes}};
    return turn.make(std::move(change), [&] { return saver_.save(copy, bytes, turn.through()); });
}

void ListCopies::tellProblem(const LostNote& problem) {
    if (!problem || toldProblem_)
        return;
    toldProblem_ = true;
    warnOfLostNote(dialogs_, problem);
}

// False when somebody else has taken a lock on the way, so that it has to be done again.
bool ListCopies::write(const std::vector<NativePath>& copies, const std::string& bytes, OnFailure onFailure,
                       Round& round, std::vector<Result<void>>& results) {
    results.clear();
    for (const auto& copy : copies) {
        results.push_back(writeCopy(copy, bytes, round));
        if (results.back())
            bases_[copy] = {true, bytes};
        else if (round.at(copy).isLost())
            return false;
        else if (onFailure == OnFailure::End)
            break;
    }
    return true;
}

std::vector<Result<void>> ListCopies::save(const std::vector<NativePath>& copies, std::string& bytes,
                                           OnFailure onFailure) {
    MergeChoice choice = MergeChoice::Tell;
    std::vector<Result<void>> results;
    for (int rounds = 0; rounds < kMostRounds; ++rounds) {
        std::optional<Round> round;
        if (!begin(round, copies)) {
            round.reset();  // nobody has to wait for a person
            tellLeft(*left_);
            return std::vector<Result<void>>(copies.size(), failure(*left_));
        }
        const NativePath folder = copies.empty() ? NativePath() : copies.back().parent_path();
        Merged merged;
        writePatiently(dialogs_, folder, [&] { merged = merge(copies, bytes, choice); });
        if (!merged.conflicts.empty() && choice == MergeChoice::Tell) {
            round.reset();
            choice = ask(copies.back(), merged.conflicts);
            continue;
        }
        bytes = merged.bytes;
        for (auto& seen : merged.takenIn) saver_.takenIn(std::move(seen));
        if (!form_.writesEmpty && form_.records(bytes).empty())
            return {};
        bool written = false;
        writePatiently(dialogs_, folder, [&] { written = write(copies, bytes, onFailure, *round, results); });
        if (written) {
            tellProblem(round->problem());
            toMoveAway_.clear();  // the list is there again
            break;
        }
    }
    return results;
}

}  // namespace quillon
