// SPDX-License-Identifier: MIT
// `quillon-list copy` on disks that fill up, fail in reading or writing, or go away, at a hundred random calls: what is
// called copied is equal, what failed is named with its side, and a second run makes the missing copies.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <random>
#include <set>

#include "evidence/evidence_reader.h"
#include "job/check_sum_file.h"
#include "platform/whole_file.h"
#include "programs/command_fixture.h"
#include "programs/list_command.h"
#include "support/failing_files.h"
#include "text/list_text.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

constexpr int kRuns = 100;
constexpr int kFiles = 12;

struct Trouble {
    const char* call;  // empty: every kind
    Fault fault;
};
// The last one is a target that was pulled out: nothing works any more.
const Trouble kTroubles[] = {{"write", {ENOSPC, true}}, {"write", {ENOSPC, false, true}},
                             {"write", {EIO}},          {"read", {EIO}},
                             {"sync", {EIO}},           {"link", {EIO}},
                             {"open", {EACCES}},        {"copyRange", {EIO}},
                             {"", {EIO, true}}};

class CopyFaultsTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        for (int i = 0; i < kFiles; ++i) {
            const std::string name = "d" + std::to_string(i % 3) + "/f" + std::to_string(i) + ".abc";
            files_[name] = "MZ" + std::string(static_cast<std::size_t>(600 + i * 30'000), static_cast<char>('a' + i));
            folder.write("source/" + name, files_[name]);
        }
        ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
        fs::copy_file(folder / "local/1234.sqlite", folder / "job.sqlite");
    }

    // As if nothing was ever copied.
    void begin() const {
        for (const char* left : {"target", "local/1234.sha256"}) fs::remove_all(folder / left);
        fs::copy_file(folder / "job.sqlite", folder / "local/1234.sqlite", fs::copy_options::overwrite_existing);
    }
    int copy(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {
            "copy",  "1234",  "--to", (folder / "target").native(), "--app", (folder / "app").native(),
            "--yes", "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        out.str("");
        err.str("");
        return runListCommand(arguments, {out, err, false, false, nullptr});
    }
    [[nodiscard]] NativePath landed(const std::string& name) const {
        return (folder / "target").native() + (folder / "source" / name).native();
    }
    [[nodiscard]] std::set<std::string> recorded() const {
        std::set<std::string> names;
        auto reader = CheckSumReader::open(folder / "target/1234.sha256");
        while (reader) {
            const auto sum = reader->next();
            if (!sum || !*sum)
                break;
            names.insert((*sum)->name);
        }
        return names;
    }

    void expectNothingCutAndNothingCalledCopiedThatIsNot(const std::string& run) const {
        for (const auto& [name, bytes] : files_) {
            const auto copy = readWholeFile(landed(name));
            EXPECT_TRUE(!copy || *copy == bytes) << run << name << " is cut";
            const auto below = landed(name).native().substr((folder / "target/").native().size());
            EXPECT_TRUE(copy || !recorded().contains(below)) << run << name << " has a check sum and no copy";
            EvidenceRow row;
            auto evidence = EvidenceReader::open(folder / "local/1234.sqlite");
            ASSERT_TRUE(evidence && evidence->findPath(name, row).value_or(false)) << run << name;
            EXPECT_TRUE(row.copied != 1 || copy) << run << name << " is called copied";
        }
    }

    // Where the run came to its end.
    void expectEachFailureIsNamed(const std::string& run) const {
        const auto json = nlohmann::json::parse(out.str(), nullptr, false);
        if (json.is_discarded())
            return;
        EXPECT_EQ(json["failed"], json["errors"].size()) << run;
        EXPECT_EQ(json["copied"].get<int>() + json["failed"].get<int>(), kFiles) << run;
        for (const auto& error : json["errors"]) {
            const auto why = error["error"].get<std::string>();
            EXPECT_TRUE(why.starts_with("source: ") || why.starts_with("target: ")) << run << why;
            EXPECT_FALSE(error["path"].get<std::string>().empty()) << run;
        }
    }

    std::map<std::string, std::string> files_;
};

TEST_F(CopyFaultsTest, AHundredDisturbedRunsCallNothingCopiedThatIsNotAndTheNextOneCompletesThem) {
    std::mt19937 chance(20261122);
    int met = 0;
    for (int i = 0; i < kRuns; ++i) {
        const Trouble& trouble = kTroubles[static_cast<std::size_t>(i) % std::size(kTroubles)];
        begin();
        std::string run;
        {
            FailingFiles disk;
            const int at = std::uniform_int_distribution(1, *trouble.call == '\0' ? 150 : 12)(chance);
            disk.failAt(at, trouble.fault, trouble.call);
            const int status = copy(i % 2 == 0 ? std::vector<std::string>{} : std::vector<std::string>{"--verify"});
            run = "run " + std::to_string(i) + ", " + trouble.call + " " + std::to_string(at) + ": ";
            met += disk.met() ? 1 : 0;
            EXPECT_TRUE(status == 0 || disk.met()) << run << err.str();
        }
        expectNothingCutAndNothingCalledCopiedThatIsNot(run);
        expectEachFailureIsNamed(run);
        const auto missing = kFiles - static_cast<int>(recorded().size());
        const FailingFiles quick;  // none fails, and nothing waits for the medium
        ASSERT_EQ(copy({"--failed"}), 0) << run << err.str();
        EXPECT_EQ(json()["copied"], missing) << run;
        for (const auto& [name, bytes] : files_) EXPECT_EQ(readWholeFile(landed(name)).value_or(""), bytes) << run;
        EXPECT_EQ(recorded().size(), files_.size()) << run;
    }
    EXPECT_GT(met, kRuns / 2) << "or this proves little";
}

// The place is told where bytes were on their way.
TEST_F(CopyFaultsTest, AFailureInTheMiddleOfAFileTellsItsByte) {
    FailingFiles disk;
    std::atomic<bool> asked = false;
    disk.ahead("write", [&] {
        if (fs::exists(landed("d0/f0.abc").parent_path()) && !asked.exchange(true))
            disk.failAt(1, {ENOSPC}, "write");
    });
    EXPECT_EQ(copy(), 1);
    const auto errors = json()["errors"];
    ASSERT_EQ(errors.size(), 1U) << out.str();
    const auto why = errors[0]["error"].get<std::string>();
    EXPECT_TRUE(why.starts_with("target: ")) << why;
    EXPECT_NE(why.find(" at byte 0"), std::string::npos) << why;
}

}  // namespace
}  // namespace quillon::test
