// SPDX-License-Identifier: MIT
// A workstation that teaches one extension again and again, as its editor does it: opens the terms, adds one of its own
// and saves, while another one does the same through its own mount. Then whoever checks finds every term that either
// has saved, each once, and each change once in the history.
//
// Usage: quillon_bench_teach_rounds teach LOCAL SHARE ROUNDS NUMBER
//        quillon_bench_teach_rounds check SHARE NUMBER=TERMS...    terms of a workstation: at least so many
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <fmt/format.h>

#include "app/database_history.h"
#include "editors/extension_editor.h"
#include "job/job.h"
#include "platform/whole_file.h"

using namespace quillon;

namespace {

constexpr const char* kFile = "Database/qlx.dat";
constexpr int kMostTries = 100;

// Nobody sits here: a box would be a conflict, or a note that was lost.
class CountingDialogs final : public Dialogs {
public:
    BoxAnswer show(const MessageBox& box) override {
        fmt::print(stderr, "{}: {}\n", box.title, box.text);
        ++boxes;
        return BoxAnswer::No;
    }
    std::optional<std::string> input(const std::string&, const std::string&, const std::string&) override { return {}; }
    std::optional<NativePath> pickFolder(const std::string&, const NativePath&) override { return {}; }
    std::vector<NativePath> pickFiles(const FilePick&) override { return {}; }

    int boxes = 0;
};

class NoLoop final : public EventLoop {
public:
    void turn() override {}
};

class NoScreen final : public ScreenHost {
public:
    void showState() override {}
    void beep() override {}
    void focus(const char* /*control*/) override {}
};

// How often each term of a list of bytes stands there.
std::map<std::string, int> termsOf(const std::string& bytes) {
    std::map<std::string, int> terms;
    for (const auto& row : parseTermFile(bytes)) ++terms[row.term.bytes];
    return terms;
}

bool holds(const NativePath& file, const std::string& term) {
    return termsOf(readWholeFile(file).value_or("")).contains(term);
}

// One workstation. Prints each round that is saved, so that one that is killed has told how far it came.
int teach(const NativePath& local, const NativePath& share, int rounds, const std::string& number) {
    for (const NativePath& root : {local, share}) {
        for (const char* folder : {"Database", "Settings"}) std::filesystem::create_directories(root / folder);
    }
    SystemClock clock;
    const DateTexts dates("C");
    CountingDialogs dialogs;
    NoLoop loop;
    NoScreen screen;
    Installation installation(local / "app");
    std::filesystem::create_directories(installation.appFolder());
    installation.settings.localPath.assign(pageFromPath(local));
    installation.settings.sharedPath.assign(pageFromPath(share));
    installation.settings.useSharedDb = 1;
    installation.refreshPathVariables();
    Job job(installation, {clock, dates, dialogs, loop, "LAB" + number});
    int refused = 0;
    std::mt19937 random(static_cast<unsigned>(std::stoul(number)));
    for (int round = 0; round < rounds; ++round) {
        ExtensionEditor editor(installation, dialogs, job.kept(), job.messages, screen, [] {});
        editor.load({1, u"qlx", {}, {}, {}});
        // A person needs a moment between opening and saving.
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 20));
        editor.state.position = "1";
        editor.state.term = number + "-" + std::to_string(round);
        editor.addOrUpdate();
        editor.save();
        // "Done" tells no failure: a save that a busy share refused is done again, as whoever misses the term would.
        for (int tries = 1; tries < kMostTries && !holds(share / kFile, editor.state.term); ++tries) {
            ++refused;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            editor.save();
        }
        fmt::print("{}\n", round + 1);
        std::fflush(stdout);
    }
    if (refused > 0)
        fmt::print(stderr, "workstation {}: {} saves did not reach the share at once\n", number, refused);
    return dialogs.boxes == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

int check(const NativePath& share, const std::map<std::string, int>& saved) {
    const auto terms = termsOf(readWholeFile(share / kFile).value_or(""));
    const auto notes = readHistory(share / "Settings", 1'000'000);
    int missing = 0;
    for (const auto& [number, rounds] : saved) {
        for (int round = 0; round < rounds; ++round)
            missing += terms.contains(number + "-" + std::to_string(round)) ? 0 : 1;
    }
    const auto twice = std::ranges::count_if(terms, [](const auto& term) { return term.second != 1; });
    // From the first change on, each begins with the bytes that the one before has left.
    std::optional<std::string> before;
    int gaps = 0;
    for (auto note = notes.rbegin(); note != notes.rend(); ++note) {
        gaps += note->files.front().before == before ? 0 : 1;
        before = note->files.front().after;
    }
    gaps += before == readWholeFile(share / kFile).value_or("") ? 0 : 1;
    fmt::print("terms {}, missing {}, twice {}; notes {}, gaps {}\n", terms.size(), missing, twice, notes.size(), gaps);
    return missing == 0 && twice == 0 && gaps == 0 && notes.size() == terms.size() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 5 && arguments[0] == "teach")
        return teach(arguments[1], arguments[2], std::stoi(arguments[3]), arguments[4]);
    if (arguments.size() >= 3 && arguments[0] == "check") {
        std::map<std::string, int> saved;
        for (std::size_t i = 2; i < arguments.size(); ++i) {
            const auto at = arguments[i].find('=');
            saved[arguments[i].substr(0, at)] = std::stoi(arguments[i].substr(at + 1));
        }
        return check(arguments[1], saved);
    }
    fmt::print(stderr, "usage: {} teach LOCAL SHARE ROUNDS NUMBER | check SHARE NUMBER=TERMS...\n", argv[0]);
    return 2;
}
