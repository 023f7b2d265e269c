// SPDX-License-Identifier: MIT
#pragma once

// A table of saves over an installation in a temporary folder, each of them on a disk of which every call fails once.

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/installation.h"
#include "app/kept_files.h"
#include "archive/zip_reader.h"
#include "platform/whole_file.h"
#include "support/failing_files.h"
#include "support/fake_surroundings.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"
#include "support/yes_dialogs.h"

namespace quillon::test {

using Bytes = std::map<std::string, std::string>;  // of the files below a folder, by their places there

/// An installation with its share, as a program finds it at its start.
class Place {
public:
    explicit Place(const NativePath& folder, bool shared = true)
        : root(folder), installation(folder / "app"), dialogs(folder / "out") {
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
        installation.settings.sharedPath.assign(pageFromPath(folder / "share"));
        installation.settings.useSharedDb = shared ? 1 : 0;
        installation.refreshPathVariables();
    }

    [[nodiscard]] const Paths& paths() const { return installation.paths(); }

    NativePath root;
    Installation installation;
    YesDialogs dialogs;
    FakeClock clock;
    DateTexts dates{"C"};
    CountingLoop loop;
    Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    KeptFiles kept{installation, clock};
};

/// One way to save. `run` does it and tells whether it says that all is done.
struct Save {
    std::string name;
    Bytes before;  // archives come by `prepare`
    std::function<bool(Place&)> run;
    bool newMayStand = false;  // behind a failure of its last steps
    bool keepsOld = false;     // what is replaced or removed stands under Kept
    bool inParts = false;      // a failure leaves each file old or new
    std::vector<std::pair<std::string, int>> refused = {};
    bool shared = true;
    std::string streamed = {};  // the place of a list of which a failure may leave some rows, old or new
    std::function<void(const NativePath& root)> prepare = {};
};

class SaveTable : public testing::Test {
protected:
    void disturb(const Save& save) {
        prepare(save);
        before_ = files(false);
        Place place(temp.path(), save.shared);
        ASSERT_TRUE(save.run(place)) << save.name << ": does not work undisturbed";
        after_ = files(false);
        DisturbedWork work;
        work.name = save.name;
        work.prepare = [&] { prepare(save); };
        work.run = [&] {
            Place again(temp.path(), save.shared);
            return save.run(again);
        };
        work.isOld = [&] { return isOld(save) && isKept(save); };
        work.isNew = [&] { return files(false) == after_ && isKept(save) && hasNoMark(); };
        work.leftover = [this] { return leftover(); };
        work.newMayStand = save.newMayStand;
        work.refused = save.refused;
        disturbEveryCall(work);
    }

    TempFolder temp;

private:
    void prepare(const Save& save) const {
        for (const auto& entry : std::filesystem::directory_iterator(temp.path())) std::filesystem::remove_all(entry);
        for (const char* folder :
             {"app", "local/Database", "local/Settings", "share/Database", "share/Settings", "zips", "out"})
            std::filesystem::create_directories(temp / folder);
        long seconds = 1'700'000'000;
        for (const auto& [name, bytes] : save.before) {
            setTimes(temp.write(name, bytes), seconds, seconds);
            seconds += 60;
        }
        if (save.prepare)
            save.prepare(temp.path());
    }

    // An archive counts by what it holds: its own bytes tell when it was made.
    [[nodiscard]] std::string content(const NativePath& path) const {
        std::string bytes = readWholeFile(path).value_or("cannot be read");
        const bool isWorkbook = path.extension() == ".xlsx";
        if (path.extension() != ".zip" && !isWorkbook)
            return bytes;
        const auto [at, added] = archives_.try_emplace(std::move(bytes));
        if (added) {
            const FailingFiles quick;  // none fails, and nothing waits for the medium
            const TempFolder out;
            const auto extracted = extractArchive(path, out.path());
            at->second = extracted ? "archive of" : "no archive";
            for (const auto& file : extracted.value_or(Extracted()).files)
                // A workbook tells when it was made.
                at->second += isWorkbook && file.filename() == "core.xml"
                                  ? ""
                                  : " " + file.filename().native() + "=" + readWholeFile(file).value_or("?");
        }
        return at->second;
    }

    [[nodiscard]] std::vector<NativePath> everyFile() const {
        std::vector<NativePath> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(temp.path())) {
            // What was done is noted beside it, each time under another name.
            const bool isNote = entry.path().parent_path().parent_path().filename() == "History";
            if (entry.is_regular_file() && !isNote)
                found.push_back(entry.path());
        }
        return found;
    }
    [[nodiscard]] std::string placeOf(const NativePath& file) const {
        return file.lexically_relative(temp.path()).native();
    }

    [[nodiscard]] static bool isMark(const NativePath& file) { return file.extension() == ".unfinished"; }
    [[nodiscard]] bool hasNoMark() const { return std::ranges::none_of(everyFile(), isMark); }

    // Those under Kept, or those that are not there; temporary files and marks of lists are in neither.
    [[nodiscard]] Bytes files(bool kept) const {
        Bytes found;
        for (const auto& file : everyFile()) {
            const bool isKept = placeOf(file).starts_with("local/Kept/");
            if (isKept == kept && !isMark(file) && !isTemporaryName(file.filename().native()))
                found[placeOf(file)] = content(file);
        }
        return found;
    }

    // Temporary files, and what under Kept is not whole.
    [[nodiscard]] std::string leftover() const {
        std::string names;
        for (const auto& file : everyFile()) {
            if (isTemporaryName(file.filename().native()))
                names += placeOf(file) + " ";
        }
        for (const auto& [name, bytes] : files(true)) names += isIn(before_, bytes) ? "" : name + " ";
        return names;
    }

    [[nodiscard]] static bool isIn(const Bytes& files, const std::string& bytes) {
        return std::ranges::any_of(files, [&bytes](const auto& file) { return file.second == bytes; });
    }

    // Whole 16-bit rows, each of them one of these.
    [[nodiscard]] static bool hasRowsOf(std::string_view bytes, const std::string& rows) {
        constexpr std::string_view end("\n\0", 2);
        while (!bytes.empty()) {
            const auto at = bytes.find(end);
            if (at == bytes.npos || rows.find(bytes.substr(0, at + end.size())) == rows.npos)
                return false;
            bytes.remove_prefix(at + end.size());
        }
        return true;
    }

    [[nodiscard]] bool isOld(const Save& save) const {
        const Bytes now = files(false);
        if (!save.inParts)
            return now == before_;
        return std::ranges::all_of(now, [&](const auto& file) {
            const auto [name, bytes] = file;
            const auto is = [&](const Bytes& state) { return state.contains(name) && state.at(name) == bytes; };
            const bool noBytesYet = bytes.empty() && !before_.contains(name);  // an append that failed
            return is(before_) || is(after_) || noBytesYet ||
                   (name == save.streamed && hasRowsOf(bytes, rowsOf(before_, name) + rowsOf(after_, name)));
        });
    }

    [[nodiscard]] static std::string rowsOf(const Bytes& files, const std::string& name) {
        return files.contains(name) ? files.at(name) : std::string();
    }

    [[nodiscard]] bool isKept(const Save& save) const {
        Bytes now = files(false);
        now.merge(files(true));
        return !save.keepsOld ||
               std::ranges::all_of(before_, [&now](const auto& old) { return isIn(now, old.second); });
    }

    Bytes before_;
    Bytes after_;
    mutable std::map<std::string, std::string> archives_;  // content by bytes
};

}  // namespace quillon::test
