// SPDX-License-Identifier: MIT
#include "answers/job_merge.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "app/list_mark.h"
#include "evidence/evidence_reader.h"
#include "evidence/job_keys.h"
#include "job/evidence_facts.h"
#include "job/list_digest.h"
#include "platform/whole_file.h"
#include "support/failing_files.h"
#include "support/list_bytes.h"
#include "support/temp_folder.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class JobMergeTest : public testing::Test {
protected:
    // A job of one file, with its list and its evidence.
    JobFiles made(const std::string& id) {
        const JobFiles job{id, folder / (id + ".csv"), folder / (id + ".sqlite")};
        const std::string source = "/s/" + id;
        ListRow line;
        line.beginFile(u"/s/" + std::u16string(id.begin(), id.end()) + u"/", "f.jpg");
        line.addFile({u"01/01/2026", 600, 32, u"" + std::u16string(4, static_cast<char16_t>(id.front()))});
        line.add(kGrades[Grade::Good].message.value);
        folder.write(id + ".csv", utf16Bytes(std::u16string(line.line()) + u"\r\n"));
        ListDigest digest;
        digest.add(line);
        EXPECT_TRUE(EvidenceStore::create(job.evidence));
        auto store = EvidenceStore::open(job.evidence);
        EvidenceRow row;
        row.row = 1;
        row.name = "f.jpg";
        row.size = 600;
        row.grade = Grade::Good;
        EXPECT_TRUE(store->setJob(job_keys::kSource, std::string_view(source))
                        .and_then([&] { return store->setJob(job_keys::kEnd, job_keys::kComplete); })
                        .and_then([&] { return store->add(row, nullptr); })
                        .and_then([&] { return writeListFacts(*store, job.list, digest.value()); })
                        .and_then([&] { return store->finish(); }));
        return job;
    }

    [[nodiscard]] std::string leftover() const {
        std::string names;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            if (isTemporaryName(entry.path().filename().native()))
                names += entry.path().filename().native() + " ";
        }
        return names;
    }

    TempFolder folder;
};

TEST_F(JobMergeTest, OnADiskThatFailsThereIsAllOfItOrNothing) {
    const std::vector<JobFiles> jobs = {made("a"), made("b")};
    const NativePath list = folder / "new.csv";
    const NativePath evidence = folder / "new.sqlite";
    ASSERT_TRUE(mergeJobs(folder.path(), "new", jobs));
    const auto whole = readWholeFile(list).value_or("");
    DisturbedWork work;
    work.name = "merge";
    work.prepare = [&] {
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            const auto name = entry.path().filename().native();
            if (name.starts_with("new.") || isTemporaryName(name))
                fs::remove(entry.path());
        }
    };
    work.run = [&] { return mergeJobs(folder.path(), "new", jobs).has_value(); };
    // What cannot be removed any more stays marked.
    work.isOld = [&] { return isUnfinished(list) || (!fs::exists(list) && !fs::exists(evidence)); };
    work.isNew = [&] {
        return readWholeFile(list).value_or("") == whole && EvidenceReader::open(evidence) && !isUnfinished(list);
    };
    work.leftover = [this] { return leftover(); };
    disturbEveryCall(work);
}

TEST_F(JobMergeTest, EveryRowHasTheTokenOfTheFirst) {
    ASSERT_TRUE(mergeJobs(folder.path(), "new", {made("b"), made("a")}));
    auto reader = ListReader::open(folder / "new.csv");
    ASSERT_TRUE(reader);
    ListRow row;
    for (const char* path : {"/s/a/f.jpg", "/s/b/f.jpg"}) {
        ASSERT_TRUE(reader->next(row));
        EXPECT_EQ(row.nativePath(), path);
        EXPECT_EQ(row.token(), u"aaaa");
    }
    EXPECT_FALSE(reader->next(row));
}

TEST_F(JobMergeTest, AMergedJobTellsWhatItWasMadeOf) {
    ASSERT_TRUE(mergeJobs(folder.path(), "new", {made("a"), made("b")}));
    auto evidence = EvidenceReader::open(folder / "new.sqlite");
    ASSERT_TRUE(evidence);
    EXPECT_EQ(evidence->jobText(job_keys::kMerged).value(), R"(["a","b"])");
    EXPECT_EQ(evidence->jobText(job_keys::kSource).value(), "/s");
    EXPECT_EQ(evidence->jobText(job_keys::kId).value(), "new");
}

TEST_F(JobMergeTest, WhatHasNoEndOrNoEvidenceIsRefused) {
    const JobFiles whole = made("a");
    const auto refused = [&](const JobFiles& job) {
        const auto merged = mergeJobs(folder.path(), "new", {whole, job});
        EXPECT_FALSE(merged);
        return merged ? std::string() : merged.error().text;
    };
    JobFiles other = made("b");
    EXPECT_EQ(refused({"b", other.list, {}}), "b: there is no evidence of it");
    EXPECT_EQ(refused({"b", {}, other.evidence}), "b: there is no list of it");
    ASSERT_TRUE(markUnfinished(other.list));
    EXPECT_EQ(refused(other), "b: its list is not whole");
    ASSERT_TRUE(markFinished(other.list));
    auto store = EvidenceStore::open(other.evidence);
    ASSERT_TRUE(store->setJob(job_keys::kEnd, job_keys::kStopped).and_then([&] { return store->commit(); }));
    EXPECT_EQ(refused(other), "b: it did not come to its end");
    EXPECT_FALSE(fs::exists(folder / "new.csv"));
}

}  // namespace

}  // namespace quillon::test
