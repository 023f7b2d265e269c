// SPDX-License-Identifier: MIT
// Walks of volumes that make one wait: whoever asks for what, and whenever it comes, rows, counts and log are those of
// one request after the other.
#include <random>

#include <sys/mount.h>

#include "job/folder_walk.h"
#include "job/job_fixture.h"
#include "job/testing_pass.h"
#include "support/scripted_volume.h"

namespace quillon::test {

namespace {

using Kind = ScriptedEntry::Kind;

// A loop of a window or of a command.
class EitherLoop final : public EventLoop {
public:
    void turn() override {
        ++turns;
        if (onTurn)
            onTurn();
    }
    bool mayStandStill() const override { return standsStill; }

    bool standsStill = false;
    int turns = 0;
    std::function<void()> onTurn;
};

struct Seen {
    std::vector<std::u16string> rows;
    std::vector<std::string> log;
    JobCounters counters;

    friend bool operator==(const Seen&, const Seen&) = default;
};

class WalkAheadTest : public JobFixture {
protected:
    WalkAheadTest() : slow(installation, {fake.clock, fake.dates, fake.dialogs, loop, "LAB7"}) {
        slow.messages = ReportMessages::fallback();
        slow.state.options = state.options;
    }

    // One request after the other, by the thread of the walk.
    static std::shared_ptr<SourceCare> oneByOne() { return std::make_shared<SourceCare>(SourceCare::Reason::Asked); }
    static std::shared_ptr<SourceCare> asItLikes() { return std::make_shared<SourceCare>(); }

    Seen walk(bool standsStill, const std::shared_ptr<SourceCare>& care) {
        loop.standsStill = standsStill;
        JobState& ours = slow.state;
        ours.counters = {};
        ours.log.clear();
        ours.stopRequested = false;
        ours.care = care;
        ours.careTold = true;  // by whom it is asked is all that may differ
        ListFolders(slow.passContext(), folder / "source");
        auto writer = ListWriter::create(folder / "app/tFile.csv");
        FolderWalk(slow.passContext(), slow.skipList, *writer).run(folder / "source");
        EXPECT_TRUE(writer->close());
        Seen seen{rowsOf("app/tFile.csv"), {}, ours.counters};
        for (const auto& row : ours.log.rows()) seen.log.push_back(row.text);
        return seen;
    }

    EitherLoop loop;
    Job slow;
};

ScriptedEntry& addFile(ScriptedEntry& in, const std::string& name, const std::string& bytes = "x") {
    ScriptedEntry& file = in.add(name, Kind::File);
    file.bytes = bytes;
    return file;
}

class RandomTree {
public:
    explicit RandomTree(unsigned seed) : random_(seed) {
        fill(root, 0);
        root.add("loop", Kind::Folder).add("inner", Kind::Folder);
    }
    ScriptedEntry root = ScriptedEntry::folder();

private:
    unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }
    bool oneIn(unsigned n) { return below(n) == 0; }

    void fill(ScriptedEntry& in, int depth) {
        const unsigned most = oneIn(8) ? 120 : 12;
        for (unsigned i = below(most); i > 0 && left_ > 0; --i, --left_) {
            const bool isFolder = depth < 5 && oneIn(3);
            ScriptedEntry& entry =
                in.add(std::to_string(below(100000)) + "_" + std::to_string(i), isFolder ? Kind::Folder : Kind::File);
            entry.bytes.resize(isFolder ? 0 : below(3000));
            misbehave(entry);
            if (isFolder)
                fill(entry, depth + 1 + static_cast<int>(below(2)));
        }
    }

    void misbehave(ScriptedEntry& entry) {
        if (oneIn(15))
            entry.lookUpError = oneIn(2) ? ENOENT : EACCES;
        if (oneIn(15))
            entry.openError = oneIn(2) ? EACCES : EPERM;
        if (oneIn(15))
            entry.listError = EACCES;
        if (oneIn(15))
            entry.kind = static_cast<Kind>(below(4));  // it has changed since it was listed
        if (oneIn(30))
            entry.listedAs = entry.kind = oneIn(2) ? Kind::Fifo : Kind::Link;
        if (oneIn(20))
            entry.wait = std::chrono::milliseconds(below(3));
    }

    std::minstd_rand random_;
    int left_ = 200;  // entries
};

TEST_F(WalkAheadTest, AHundredRandomTreesAreWalkedAsOneAfterTheOther) {
    for (unsigned seed = 1; seed <= 100; ++seed) {
        const RandomTree tree(seed);
        const auto volume = ScriptedVolume::mount(folder / "source", tree.root);
        if (!volume)
            GTEST_SKIP();
        const std::string loopsTo = folder / "source/loop/inner";
        const bool loops = seed % 5 == 0 && ::mount((folder / "source").c_str(), loopsTo.c_str(), "", MS_BIND, "") == 0;
        const Seen expected = walk(true, oneByOne());
        EXPECT_EQ(walk(true, asItLikes()), expected) << "a command's walk of tree " << seed;
        EXPECT_EQ(walk(false, asItLikes()), expected) << "a window's walk of tree " << seed;
        EXPECT_EQ(walk(false, oneByOne()), expected) << "a window's gentle walk of tree " << seed;
        if (loops)
            ::umount2(loopsTo.c_str(), MNT_DETACH);
    }
}

class SlowVolumeTest : public WalkAheadTest {
protected:
    // Twelve folders of five files, all of which take their time.
    void makeSlowTree(std::chrono::milliseconds wait) {
        for (int i = 0; i < 12; ++i) {
            ScriptedEntry& sub = root.add("folder" + std::to_string(i), Kind::Folder);
            sub.wait = wait;
            for (int k = 0; k < 5; ++k) addFile(sub, std::to_string(k) + ".txt", std::string(600, 'X')).wait = wait;
        }
    }
    ScriptedEntry& file(std::size_t ofFolder, std::size_t index) { return *root.entries[ofFolder]->entries[index]; }
    bool mount() {
        volume = ScriptedVolume::mount(folder / "source", root);
        return volume != nullptr;
    }

    ScriptedEntry root = ScriptedEntry::folder();
    std::unique_ptr<ScriptedVolume> volume;
};

TEST_F(SlowVolumeTest, FilesOfManyFoldersAreAskedForAtOnce) {
    makeSlowTree(std::chrono::milliseconds(3));
    if (!mount())
        GTEST_SKIP();
    for (const bool standsStill : {true, false}) {
        EXPECT_EQ(walk(standsStill, asItLikes()).rows.size(), 60U);
        EXPECT_GT(volume->mostAtOnce(), 5) << "more than one folder has files";
    }
}

TEST_F(SlowVolumeTest, AGentleWalkHasOneRequestUnderWay) {
    makeSlowTree(std::chrono::milliseconds(1));
    if (!mount())
        GTEST_SKIP();
    for (const bool standsStill : {true, false}) {
        EXPECT_EQ(walk(standsStill, oneByOne()).rows.size(), 60U);
        EXPECT_EQ(volume->mostAtOnce(), 1);
    }
}

TEST_F(SlowVolumeTest, StopEndsAWalkThatHangsWhateverItHangsAt) {
    makeSlowTree({});
    for (ScriptedEntry* const hangs : {root.entries[2].get(), &file(2, 3)}) {
        hangs->hangs = true;
        if (!mount())
            GTEST_SKIP();
        loop.onTurn = [this] { slow.state.stopRequested = volume->hanging() > 0; };
        // The folder test is held up first, by a folder.
        const Seen seen = walk(false, asItLikes());
        EXPECT_LE(seen.rows.size(), 25U);
        EXPECT_GT(volume->hanging(), 0) << "nobody has waited for it";
        loop.onTurn = nullptr;
        volume.reset();
        hangs->hangs = false;
    }
}

TEST_F(SlowVolumeTest, AFolderThatHangsDoesNotHoldTheWindow) {
    makeSlowTree({});
    root.entries[4]->hangs = true;
    if (!mount())
        GTEST_SKIP();
    int turnsMeanwhile = 0;
    loop.onTurn = [&] {
        turnsMeanwhile += volume->hanging() > 0 ? 1 : 0;
        if (turnsMeanwhile == 10)
            volume->letGo();
    };
    EXPECT_EQ(walk(false, asItLikes()).rows.size(), 60U);
    EXPECT_GE(turnsMeanwhile, 10);
}

// The first folder: a walk that waits for a busy machine ahead of a later one would name what it waits for then.
TEST_F(SlowVolumeTest, WhatTakesLongerThanThirtySecondsIsNamedInLogAndStatus) {
    makeSlowTree({});
    root.entries[0]->hangs = true;
    if (!mount())
        GTEST_SKIP();
    std::string status;
    loop.onTurn = [&] {
        if (volume->hanging() == 0)
            return;
        fake.clock.tick += 1000;
        status = slow.state.texts.status;
        if (status.find("seconds") != status.npos)
            volume->letGo();
    };
    const std::string text = "No answer for 30 seconds : " + (folder / "source/folder0").native() + "/";
    const Seen seen = walk(false, asItLikes());
    EXPECT_EQ(seen.log, std::vector<std::string>{text});
    EXPECT_EQ(status, text);
    EXPECT_EQ(slow.state.texts.status.find("seconds"), std::string::npos) << "the status is as before";
}

TEST_F(SlowVolumeTest, AFolderWithAReadErrorMakesTheJobGentleAndTheLogSaysSo) {
    makeSlowTree({});
    root.entries[0]->listError = EIO;
    if (!mount())
        GTEST_SKIP();
    const auto care = asItLikes();
    walk(true, care);
    EXPECT_EQ(care->reason(), SourceCare::Reason::ReadError);
    slow.state.careTold = false;
    slow.state.log.clear();
    ListFolders(slow.passContext(), folder / "source");
    ASSERT_EQ(slow.state.log.rows().size(), 1U);
    EXPECT_EQ(slow.state.log.rows()[0].text,
              "The source is read gently, one request at a time from here on : the source has a read error");
}

class SlowHeadsTest : public SlowVolumeTest {
protected:
    // The grades of all files, after a walk.
    std::vector<std::u16string> test() {
        termFile("txt", "1,XX,T\r\n");
        const auto care = slow.state.care;
        walk(false, care);
        TestingPass(slow.passContext(), slow.lists(), slow.grader(), nullptr).run();
        std::vector<std::u16string> grades;
        for (const auto& row : finalRows()) grades.push_back(row.substr(row.rfind(u',') + 1));
        return grades;
    }
};

TEST_F(SlowHeadsTest, AHeadThatHangsBeyondTheLimitIsAnUnreadableOne) {
    makeSlowTree({});
    file(0, 2).readHangs = true;
    if (!mount())
        GTEST_SKIP();
    slow.state.options.hangLimit = std::chrono::seconds(5);
    loop.onTurn = [this] { fake.clock.tick += volume->hanging() > 0 ? 100 : 0; };
    const auto grades = test();
    ASSERT_EQ(grades.size(), 60U);
    EXPECT_EQ(grades[2], u"Header Corrupt") << "as a head that cannot be read";
    EXPECT_EQ(slow.state.counters.unreadHeads, 1);
    EXPECT_EQ(slow.state.counters[Grade::Good], 59);
    EXPECT_GT(volume->hanging(), 0);
    const std::string path = (folder / "source/folder0/2.txt").native();
    ASSERT_FALSE(slow.state.log.rows().empty());
    EXPECT_EQ(slow.state.log.rows().back().text, "No answer, given up : " + path);
}

// A window's Stop is looked at behind the last row; a head that is waited for without an end is let go.
TEST_F(SlowHeadsTest, StopEndsTheWaitForAHeadThatWasNamed) {
    makeSlowTree({});
    file(0, 2).readHangs = file(3, 0).readHangs = true;
    if (!mount())
        GTEST_SKIP();
    fake.dialogs.expectBox("Delete partial file list?",
                           "Process stopped, do you want to delete the current file list ?", BoxAnswer::No);
    loop.onTurn = [this] {
        fake.clock.tick += volume->hanging() > 0 ? 500 : 0;
        if (slow.state.texts.status.find("seconds") != std::string::npos)
            slow.state.stopRequested = true;
    };
    EXPECT_EQ(test().size(), 60U);
    EXPECT_EQ(slow.state.counters.unreadHeads, 2);
}

TEST_F(SlowHeadsTest, AReadErrorMakesTheRestOfThePassGentle) {
    makeSlowTree(std::chrono::milliseconds(1));
    file(1, 0).readError = EIO;
    if (!mount())
        GTEST_SKIP();
    slow.state.care = asItLikes();
    EXPECT_EQ(test().size(), 60U);
    EXPECT_EQ(slow.state.care->reason(), SourceCare::Reason::ReadError);
    EXPECT_EQ(slow.state.counters.unreadHeads, 1);
    EXPECT_EQ(slow.state.counters[Grade::Good], 59);
}

TEST_F(SlowHeadsTest, AGentlePassHasOneRequestUnderWay) {
    makeSlowTree(std::chrono::milliseconds(1));
    if (!mount())
        GTEST_SKIP();
    slow.state.care = oneByOne();
    EXPECT_EQ(test().size(), 60U);
    EXPECT_EQ(volume->mostAtOnce(), 1);
}

}  // namespace

}  // namespace quillon::test
