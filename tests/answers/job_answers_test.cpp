// SPDX-License-Identifier: MIT
// The same job asked by its evidence and by its list.
#include "answers/job_answers.h"

#include <filesystem>
#include <fstream>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "app/file_list.h"
#include "evidence/evidence_store.h"
#include "evidence/job_keys.h"
#include "platform/whole_file.h"
#include "support/temp_folder.h"
#include "text/unicode.h"

namespace quillon::test {

namespace {

struct SampleFile {
    const char* folder;
    const char* name;
    const char* extension;
    Grade grade;
    std::int64_t size;
    std::optional<Reason> reason;
};

const std::vector<SampleFile> kSample = {
    {"", "a.jpg", "jpg", Grade::Good, 1000, {}},
    {"photos", "b.jpg", "jpg", Grade::Corrupt, 2000, Reason::ZeroFilled},
    {"photos/2019", "c.JPG", "jpg", Grade::Corrupt, 3000, Reason::Noise},
    {"photos/2019", "d.png", "png", Grade::CommonHeader, 4000, Reason::OtherFormat},
    {"photos2", "e", "", Grade::NoExtension, 10, {}},
    {"photos2", "f.xyz", "xyz", Grade::Unknown, 5000, {}},
};

class JobAnswersTest : public testing::Test {
protected:
    void SetUp() override {
        writeEvidence();
        writeList();
    }

    void writeEvidence() const {
        ASSERT_TRUE(EvidenceStore::create(folder / "1.sqlite"));
        auto store = EvidenceStore::open(folder / "1.sqlite");
        ASSERT_TRUE(store);
        ASSERT_TRUE(store->setJob(job_keys::kSource, "/source"));
        std::int64_t number = 0;
        for (const auto& file : kSample) {
            EvidenceRow row;
            row.row = ++number;
            row.folder = file.folder;
            row.name = file.name;
            row.extension = file.extension;
            row.size = file.size;
            row.grade = file.grade;
            row.reason = file.reason;
            if (file.grade == Grade::CommonHeader)
                row.result = "Appears to be of file type: : Zip";
            if (number == 1)
                row.doubt = "cut";
            FileHead head;
            head.length = 512;
            head.bytes.fill(static_cast<char>(number));
            ASSERT_TRUE(store->add(row, &head));
        }
        ASSERT_TRUE(store->commit());
    }

    void writeList() const {
        auto writer = ListWriter::create(folder / "1.csv");
        ASSERT_TRUE(writer);
        for (const auto& file : kSample) {
            ListRow row;
            const std::string parent = std::string("/source") + (*file.folder != '\0' ? "/" : "") + file.folder;
            row.beginFile(utf8ToUtf16(parent + "/"), file.name);
            row.addFile({u"01/01/2026", static_cast<std::uint64_t>(file.size), 32, u"TOKEN"});
            const std::u16string message = kGrades[file.grade].message.value;
            row.add(file.grade == Grade::CommonHeader ? message + u": Zip" : message);
            ASSERT_TRUE(writer->write(row));
        }
        ASSERT_TRUE(writer->close());
    }

    [[nodiscard]] std::unique_ptr<JobAnswers> ask(bool byEvidence) const {
        JobFiles job{"1", byEvidence ? NativePath() : folder / "1.csv",
                     byEvidence ? folder / "1.sqlite" : NativePath()};
        auto answers = openAnswers(job, ReportMessages::fallback());
        EXPECT_TRUE(answers);
        return std::move(*answers);
    }

    TempFolder folder;
};

// The bytes of the page whose cells hold this text.
void damageFolderPage(const NativePath& evidence, const std::string& text) {
    constexpr char kTableLeaf = 13;
    std::string bytes = *readWholeFile(evidence);
    const std::size_t page =
        static_cast<std::size_t>(static_cast<unsigned char>(bytes[16])) * 256 + static_cast<unsigned char>(bytes[17]);
    int damaged = 0;
    for (std::size_t at = page; at + page <= bytes.size(); at += page) {
        if (bytes[at] == kTableLeaf && std::string_view(bytes).substr(at, page).find(text) != std::string::npos) {
            bytes.replace(at, 8, 8, '\xEE');
            ++damaged;
        }
    }
    ASSERT_EQ(damaged, 1);
    std::ofstream(evidence, std::ios::binary) << bytes;
}

// The file behind it lies in a folder that can be read: nothing else would tell of the one that cannot be given.
TEST_F(JobAnswersTest, AFileWhoseFolderIsDamagedIsNotPassedOver) {
    constexpr int kFolders = 600;
    constexpr int kWhole = 450;
    const NativePath evidence = folder / "1.sqlite";
    std::filesystem::remove(evidence);
    ASSERT_TRUE(EvidenceStore::create(evidence));
    const auto nameOf = [](int number) { return fmt::format("folder{:04}-{}", number, std::string(100, 'x')); };
    {
        auto store = EvidenceStore::open(evidence);
        ASSERT_TRUE(store);
        for (int i = 1; i <= kFolders + 1; ++i) {
            EvidenceRow row;
            row.row = i;
            row.folder = nameOf(i <= kFolders ? i : 1);
            row.name = "f" + std::to_string(i);
            row.grade = Grade::Good;
            ASSERT_TRUE(store->add(row, nullptr));
        }
        for (int i = kWhole + 1; i < kFolders; ++i) ASSERT_TRUE(store->remove(i));
        ASSERT_TRUE(store->finish());
    }
    damageFolderPage(evidence, nameOf(kFolders));
    const auto answers = ask(true);
    const auto files = answers->files({});
    ASSERT_TRUE(files);
    BriefFile file;
    int given = 0;
    auto more = (*files)->next(file);
    for (; more && *more; more = (*files)->next(file)) EXPECT_EQ(file.folder, nameOf(++given));
    EXPECT_FALSE(more) << "as if these were all";
    EXPECT_EQ(given, kWhole);
    EXPECT_FALSE((*files)->next(file)) << "at the next try, too";
}

TEST_F(JobAnswersTest, DoubtsAreCountedWithTheRowsAndInAnOldEvidenceFileByFile) {
    auto database = Database::open(folder / "1.sqlite", Access::Writing);
    ASSERT_TRUE(database);
    const auto doubtful = [&] { return ask(true)->total().value_or(Figures()).doubtful; };
    EXPECT_EQ(doubtful(), 1);
    ASSERT_TRUE(database->run("DELETE FROM job WHERE key = 'doubts_counted'; DELETE FROM by_reason WHERE reason = -1"));
    EXPECT_EQ(doubtful(), 1) << "as evidence was before";
    ASSERT_TRUE(database->run("INSERT INTO job VALUES ('doubts_counted', 1)"));
    EXPECT_EQ(doubtful(), 0);
    auto store = EvidenceStore::open(folder / "1.sqlite");
    ASSERT_TRUE(store);
    EvidenceRow row;
    ASSERT_TRUE(ask(true)->next(row).value_or(false));
    row.doubt.clear();
    ASSERT_TRUE(store->change(row).and_then([&] { return store->commit(); }));
    EXPECT_EQ(doubtful(), -1) << "a doubt that went is taken off";
}

TEST_F(JobAnswersTest, TheTotalIsTheSameByEvidenceAndByList) {
    for (const bool byEvidence : {true, false}) {
        const auto total = ask(byEvidence)->total();
        ASSERT_TRUE(total);
        EXPECT_EQ(total->files, 6);
        EXPECT_EQ(total->bytes, 15010);
        EXPECT_EQ(total->grades[Grade::Good], 1);
        EXPECT_EQ(total->grades[Grade::Corrupt], 2);
        EXPECT_EQ(total->grades[Grade::CommonHeader], 1);
        EXPECT_EQ(total->grades[Grade::NoExtension], 1);
        EXPECT_EQ(total->grades[Grade::Unknown], 1);
        EXPECT_EQ(total->notTested, 0);
        EXPECT_EQ(total->doubtful, byEvidence ? 1 : 0);
        EXPECT_EQ(total->reasons[static_cast<std::size_t>(Reason::Noise)], byEvidence ? 1 : 0);
    }
}

TEST_F(JobAnswersTest, ExtensionsAreInLowerCase) {
    for (const bool byEvidence : {true, false}) {
        const auto extensions = ask(byEvidence)->byExtension();
        ASSERT_TRUE(extensions);
        ASSERT_EQ(extensions->size(), 4U);
        EXPECT_EQ(extensions->at("jpg").files, 3);
        EXPECT_EQ(extensions->at("jpg").grades[Grade::Corrupt], 2);
        EXPECT_EQ(extensions->at("").files, 1);
    }
}

TEST_F(JobAnswersTest, FoldersCountAllBelowThem) {
    const auto folders = ask(true)->byFolder(1);
    ASSERT_TRUE(folders);
    ASSERT_EQ(folders->size(), 3U) << "the source and two folders";
    EXPECT_EQ(folders->at("").files, 6);
    EXPECT_EQ(folders->at("photos").files, 3);
    EXPECT_EQ(folders->at("photos").bytes, 9000);
    EXPECT_EQ(folders->at("photos").reasons[static_cast<std::size_t>(Reason::Noise)], 1);
    EXPECT_EQ(folders->at("photos2").files, 2);
    EXPECT_EQ(ask(true)->byFolder(2)->at("photos/2019").files, 2);
    EXPECT_EQ(ask(false)->byFolder(2)->at("/source/photos").files, 3) << "a list does not tell its source";
}

TEST_F(JobAnswersTest, ReasonsAreThoseOfTheEvidence) {
    const auto reasons = ask(true)->byReason();
    ASSERT_TRUE(reasons);
    EXPECT_EQ(reasons->size(), 3U);
    EXPECT_EQ(reasons->at("zero-filled").files, 1);
    EXPECT_EQ(reasons->at("zero-filled").bytes, 2000);
    EXPECT_TRUE(ask(false)->byReason()->empty());
}

TEST_F(JobAnswersTest, FilesComeInTheOrderOfTheWalk) {
    for (const bool byEvidence : {true, false}) {
        const auto answers = ask(byEvidence);
        EvidenceRow file;
        for (const auto& expected : kSample) {
            ASSERT_TRUE(answers->next(file).value_or(false));
            EXPECT_EQ(file.name, expected.name);
            EXPECT_EQ(file.grade, expected.grade);
            EXPECT_EQ(file.size, expected.size);
        }
        EXPECT_FALSE(answers->next(file).value_or(true));
    }
    EXPECT_EQ(ask(true)->source().value(), "/source");
}

std::vector<std::string> pathsOf(JobAnswers& answers, const FileWish& wish) {
    std::vector<std::string> paths;
    EXPECT_TRUE(eachBrief(answers, wish, [&](const BriefFile& file) {
        paths.push_back(std::string(file.folder) + "|" + std::string(file.name));
    }));
    return paths;
}

TEST_F(JobAnswersTest, PathsAreThoseOfTheFilesThatFit) {
    FileWish photos;
    photos.below = "photos";
    FileWish corrupt = photos;
    corrupt.grades = {Grade::Corrupt, Grade::Good};
    corrupt.reasons = {Reason::Noise};
    FileWish doubtful;
    doubtful.doubt = true;
    FileWish none;
    none.extensions = {""};
    FileWish unread;
    unread.unread = true;
    const std::vector<std::pair<FileWish, std::vector<std::string>>> cases = {
        {{}, {"|a.jpg", "photos|b.jpg", "photos/2019|c.JPG", "photos/2019|d.png", "photos2|e", "photos2|f.xyz"}},
        {photos, {"photos|b.jpg", "photos/2019|c.JPG", "photos/2019|d.png"}},
        {corrupt, {"photos/2019|c.JPG"}},
        {doubtful, {"|a.jpg"}},
        {none, {"photos2|e"}},
        {unread, {}},
    };
    for (std::size_t i = 0; i < cases.size(); ++i)
        EXPECT_EQ(pathsOf(*ask(true), cases[i].first), cases[i].second) << "wish " << i;
    EXPECT_EQ(pathsOf(*ask(false), none), std::vector<std::string>{"/source/photos2|e"});
}

// More files than are read at once, of names that are no text, in folders that files come back to.
TEST_F(JobAnswersTest, ManyPathsComeAsTheirRowsDo) {
    ASSERT_TRUE(EvidenceStore::create(folder / "many.sqlite"));
    auto store = EvidenceStore::open(folder / "many.sqlite");
    ASSERT_TRUE(store);
    for (int i = 0; i < 20'000; ++i) {
        EvidenceRow row;
        row.folder = i % 500 == 0 ? "back\xFF" : "folder " + std::to_string(i / 3000);
        row.name = (i % 7 == 0 ? "n\xFEme " : "name ") + std::to_string(i);
        row.extension = i % 3 == 0 ? "a" : "b";
        row.grade = i % 5 == 0 ? Grade::Good : Grade::Corrupt;
        ASSERT_TRUE(store->add(row, nullptr));
    }
    ASSERT_TRUE(store->finish());
    const auto open = [&] { return openAnswers({"many", {}, folder / "many.sqlite"}, ReportMessages::fallback()); };
    FileWish wish;
    wish.extensions = {"a"};
    wish.grades = {Grade::Corrupt};
    for (const FileWish& wanted : {FileWish(), wish}) {
        auto answers = open();
        ASSERT_TRUE(answers);
        std::vector<std::string> expected;
        ASSERT_TRUE(eachFile(**answers, [&](const EvidenceRow& file) -> Result<void> {
            if (fits(wanted, file))
                expected.push_back(file.folder + "|" + file.name);
            return {};
        }));
        EXPECT_GT(expected.size(), 5000U);
        EXPECT_EQ(pathsOf(**answers, wanted), expected);
    }
}

}  // namespace

}  // namespace quillon::test
