// SPDX-License-Identifier: MIT
#include "app/database_history.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <utility>

#include <fmt/format.h>

#include "platform/folders.h"
#include "platform/host.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

constexpr std::string_view kFirstLine = "Quillon database change 1";
constexpr std::string_view kNoteEnd = ".txt";
constexpr std::string_view kPreparedNote = "note";
// "20261122T123456.123456Z"
constexpr std::size_t kStampLength = 23;

struct TextField {
    std::string_view name;
    std::string DatabaseChange::*value;
};
constexpr TextField kTextFields[] = {
    {"id", &DatabaseChange::id},         {"computer", &DatabaseChange::computer}, {"user", &DatabaseChange::user},
    {"screen", &DatabaseChange::screen}, {"job", &DatabaseChange::job},           {"undoes", &DatabaseChange::undoes},
    {"about", &DatabaseChange::about},   {"remark", &DatabaseChange::remark},
};

std::string oneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
    return text;
}

std::string fileBytes(std::string_view name, const std::optional<std::string>& bytes) {
    if (!bytes)
        return fmt::format("{}: none\n", name);
    return fmt::format("{}: {}\n{}\n", name, bytes->size(), *bytes);
}

// Takes a note apart, from its beginning on.
class NoteReader {
public:
    explicit NoteReader(std::string_view bytes) : rest_(bytes) {}

    std::optional<DatabaseChange> read() {
        if (line() != kFirstLine)
            return std::nullopt;
        DatabaseChange change;
        while (!rest_.empty()) {
            const auto [name, value] = field();
            const auto known = std::ranges::find(kTextFields, name, &TextField::name);
            if (known != std::end(kTextFields))
                change.*known->value = value;
            else if (name == "file")
                change.files.push_back({std::string(value), content("before"), content("after")});
            if (bad_)
                return std::nullopt;
        }
        return change;
    }

private:
    std::string_view line() {
        const auto end = rest_.find('\n');
        bad_ = bad_ || end == rest_.npos;
        const std::string_view found = rest_.substr(0, end);
        rest_.remove_prefix(end == rest_.npos ? rest_.size() : end + 1);
        return found;
    }
    std::pair<std::string_view, std::string_view> field() {
        const std::string_view whole = line();
        const auto colon = whole.find(": ");
        bad_ = bad_ || colon == whole.npos;
        return {whole.substr(0, colon), colon == whole.npos ? std::string_view() : whole.substr(colon + 2)};
    }
    std::optional<std::string> content(std::string_view wanted) {
        const auto [name, value] = field();
        if (name == wanted && value == "none")
            return std::nullopt;
        std::size_t length = 0;
        const auto [end, error] = std::from_chars(value.begin(), value.end(), length);
        if (name != wanted || error != std::errc() || end != value.end() || length >= rest_.size() ||
            rest_[length] != '\n') {
            bad_ = true;
            return std::nullopt;
        }
        std::string bytes(rest_.substr(0, length));
        rest_.remove_prefix(length + 1);
        return bytes;
    }

    std::string_view rest_;
    bool bad_ = false;
};

std::string stampText(std::int64_t microseconds) {
    using namespace std::chrono;
    const sys_time<std::chrono::microseconds> moment{std::chrono::microseconds(microseconds)};
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(moment - day);
    return fmt::format("{:04}{:02}{:02}T{:02}{:02}{:02}.{:06}Z", int{date.year()}, unsigned{date.month()},
                       unsigned{date.day()}, time.hours().count(), time.minutes().count(), time.seconds().count(),
                       time.subseconds().count());
}

// The moment that a note's name tells; 0 for a name of another form.
std::int64_t stampOf(std::string_view id) {
    using namespace std::chrono;
    if (id.size() < kStampLength)
        return 0;
    bool good = true;
    const auto number = [&](std::size_t at, std::size_t length) {
        int value = 0;
        const auto* const begin = id.data() + at;
        good = good && std::from_chars(begin, begin + length, value).ptr == begin + length;
        return value;
    };
    const year_month_day date(year(number(0, 4)), month(static_cast<unsigned>(number(4, 2))),
                              day(static_cast<unsigned>(number(6, 2))));
    const auto time = hours(number(9, 2)) + minutes(number(11, 2)) + seconds(number(13, 2)) +
                      std::chrono::microseconds(number(16, 6));
    if (!good || !date.ok())
        return 0;
    return duration_cast<std::chrono::microseconds>(sys_days(date).time_since_epoch() + time).count();
}

std::int64_t microsecondsNow() {
    const FileTime now = fileTimeNow();
    return now.seconds * 1'000'000 + now.nanoseconds / 1000;
}

bool isNote(const std::string& name) {
    return name.ends_with(kNoteEnd) && stampOf(name) != 0;
}

// A folder for each month: what is old enough can be taken away as a whole.
std::string monthOf(std::string_view id) {
    return std::string(id.substr(0, 4)) + "-" + std::string(id.substr(4, 2));
}

// The names of the notes in a history, newest first; at most so many.
std::vector<NativePath> newestNotes(const NativePath& history, std::size_t most) {
    auto months = listEntries(history).value_or(std::vector<std::string>{});
    std::erase_if(months, [](const std::string& name) { return name.size() != 7 || name[4] != '-'; });
    std::ranges::sort(months, std::greater<>());
    std::vector<NativePath> notes;
    for (const auto& month : months) {
        auto names = listFiles(history / month).value_or(std::vector<std::string>{});
        std::erase_if(names, [](const std::string& name) { return !isNote(name); });
        for (auto name = names.rbegin(); name != names.rend() && notes.size() < most; ++name)
            notes.push_back(history / month / *name);
        if (notes.size() >= most)
            break;
    }
    return notes;
}

// Half a note is none, so it needs no other name until it is whole.
Result<void> fillNew(const NativePath& path, const std::string& bytes) {
    return File::createNew(path).and_then([&bytes](File file) {
        return file.write(bytes).and_then([&] { return file.sync(); }).and_then([&] { return file.close(); });
    });
}

bool changesNothing(const DatabaseChange& change) {
    return change.about.empty() &&
           std::ranges::all_of(change.files, [](const FileChange& file) { return file.before == file.after; });
}

// Neither there nor missing, as on a share that does not answer.
bool isUnknown(const NativePath& path) {
    const auto looked = modificationTime(path);
    return !looked && looked.error().kind == ErrorKind::PathAccess;
}

// A share may do what it then says it could not.
bool isDone(const FileChange& change, const NativePath& root) {
    const auto now = readWholeFile(root / change.file);
    return now && change.after == *now;
}

}  // namespace

DatabaseChange changeBy(std::string screen) {
    DatabaseChange change;
    change.screen = std::move(screen);
    return change;
}

DatabaseChange changeByJob(std::string job) {
    DatabaseChange change = changeBy("Job");
    change.job = std::move(job);
    return change;
}

std::string lostNoteText(const FileError& why) {
    return "Not noted in the history of the database : " + why.text;
}

std::string noteBytes(const DatabaseChange& change) {
    std::string bytes = std::string(kFirstLine) + "\n";
    for (const auto& field : kTextFields) {
        if (const std::string& value = change.*field.value; !value.empty())
            bytes += fmt::format("{}: {}\n", field.name, oneLine(value));
    }
    for (const auto& file : change.files)
        bytes += fmt::format("file: {}\n", oneLine(file.file)) + fileBytes("before", file.before) +
                 fileBytes("after", file.after);
    return bytes;
}

std::optional<DatabaseChange> parseNote(std::string_view bytes) {
    return NoteReader(bytes).read();
}

NativePath historyFolder(const NativePath& settings) {
    return settings / "History";
}

std::optional<DatabaseChange> findChange(const NativePath& settings, const std::string& id) {
    if (!isFileName(id) || stampOf(id) == 0)
        return std::nullopt;
    const auto bytes = readWholeFile(historyFolder(settings) / monthOf(id) / (id + std::string(kNoteEnd)));
    auto change = bytes ? parseNote(*bytes) : std::nullopt;
    if (change)
        change->id = id;
    return change;
}

std::vector<DatabaseChange> readHistory(const NativePath& settings, std::size_t most) {
    std::vector<DatabaseChange> changes;
    if (settings.empty())
        return changes;
    for (const auto& note : newestNotes(historyFolder(settings), most)) {
        const auto bytes = readWholeFile(note);
        if (auto change = bytes ? parseNote(*bytes) : std::nullopt) {
            change->id = note.stem().native();
            changes.push_back(std::move(*change));
        }
    }
    return changes;
}

DatabaseTurn::DatabaseTurn(NativePath settings, LeaseTimes times, LeaseWatch* watch) : settings_(std::move(settings)) {
    if (settings_.empty())
        return;
    if (!isFolder(settings_)) {
        shareAway_ = isUnknown(settings_);
        return;
    }
    const NativePath history = historyFolder(settings_);
    if (auto made = createFolder(history); !made) {
        shareAway_ = isUnknown(history);
        noHistory_ = made.error();
        return;
    }
    history_ = history;
    LeaseWatch ours;
    LeaseWatch& seen = watch == nullptr ? ours : *watch;
    if (auto lease = Lease::take(history_, times, &seen)) {
        lease_.emplace(std::move(*lease));
        finishNotes();
    }
    inVain_ = !lease_ && seen.isInVain();
    shareAway_ = !lease_ && seen.isShareAway();
}

std::optional<FileError> DatabaseTurn::refusal() const {
    if (inVain_)
        return FileError{ErrorKind::PathAccess, "other computers were changing the database all the time"};
    if (shareAway_)
        return FileError{ErrorKind::PathAccess, "the share does not answer"};
    return std::nullopt;
}

// Of what others had in hand as they lost their turn: what they had done by then is noted now.
void DatabaseTurn::finishNotes() {
    for (const auto& taken : takenLeases(history_)) {
        for (const auto& file : leftInLease(taken)) {
            if (file.filename().native().starts_with(kPreparedNote))
                finishNote(file);
        }
        removeTakenLease(taken);
    }
}

void DatabaseTurn::finishNote(const NativePath& prepared) {
    const auto bytes = readWholeFile(prepared);
    const auto change = bytes ? parseNote(*bytes) : std::nullopt;
    if (!change || change->files.empty() || stampOf(change->id) == 0 || !isFileName(change->id))
        return;
    const NativePath file = settings_.parent_path() / change->files.front().file;
    const auto now = readWholeFile(file);
    const bool done = now ? change->files.front().after == *now : !change->files.front().after && !pathExists(file);
    if (!done)
        return;
    const auto place = placeFor(change->id);
    if (place)
        passOver(renameFile(prepared, *place), "a full share costs the note");
}

// Later than all others, whatever the clocks of their computers say.
std::string DatabaseTurn::nextId() {
    if (lastId_.empty()) {
        const auto newest = newestNotes(history_, 1);
        if (!newest.empty())
            lastId_ = newest.front().stem().native();
    }
    const std::int64_t moment = std::max(microsecondsNow(), stampOf(lastId_) + 1);
    // Without a lock two computers may take the same moment.
    std::string computer = hostName();
    std::ranges::replace_if(
        computer, [](char c) { return c == '/' || c == '\\' || static_cast<unsigned char>(c) < 0x21; }, '_');
    lastId_ = stampText(moment) + "-" + computer + temporaryName().substr(ownTemporaryPrefix().size() - 1);
    return lastId_;
}

void DatabaseTurn::sign(DatabaseChange& change) {
    change.id = nextId();
    change.computer = hostName();
    change.user = userName();
}

Result<NativePath> DatabaseTurn::placeFor(const std::string& id) {
    const NativePath month = history_ / monthOf(id);
    return createFolder(month).map([&] { return month / (id + std::string(kNoteEnd)); });
}

Result<void> DatabaseTurn::note(DatabaseChange change) {
    if (changesNothing(change))
        return {};
    if (history_.empty()) {
        problem_ = noHistory_;
        return noHistory_ ? Result<void>(failure(*noHistory_)) : Result<void>();
    }
    sign(change);
    auto noted =
        placeFor(change.id).and_then([&](const NativePath& place) { return saveWholeFile(place, noteBytes(change)); });
    if (!noted)
        problem_ = noted.error();
    return noted;
}

Result<void> DatabaseTurn::make(DatabaseChange change, const std::function<Result<void>()>& apply) {
    if (!lease_ || changesNothing(change))
        return apply().and_then([&]() -> Result<void> {
            passOver(note(std::move(change)), "the turn tells it");
            return {};
        });
    sign(change);
    const NativePath prepared = lease_->folder() / (std::string(kPreparedNote) + temporaryName());
    const auto place = placeFor(change.id);
    auto ready = place ? fillNew(prepared, noteBytes(change)) : Result<void>(failure(place.error()));
    auto made = apply();
    if (!made && change.files.size() == 1 && isDone(change.files.front(), settings_.parent_path()))
        made = {};
    if (ready && made)
        ready = renameFile(prepared, *place);
    if (!ready && made && place)  // a mount that remembers names may not know a folder that was just renamed
        ready = saveWholeFile(*place, noteBytes(change));
    // What became of the file, or of its note, is for whoever has the next turn to see, once the share answers again.
    const auto removed = made ? Result<void>() : removeFile(prepared);
    const bool inDoubt = made ? !ready && isUnknown(history_) : !removed && removed.error().kind != ErrorKind::NotFound;
    if (inDoubt)
        lease_->leaveToOthers();
    else if (!ready && made)
        problem_ = ready.error();
    return made;
}

}  // namespace quillon
