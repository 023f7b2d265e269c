// SPDX-License-Identifier: MIT
// Every figure of the overview against an own count, of a job and of a case of several.
#include <map>
#include <random>

#include "answers/overview/overview_fixture.h"
#include "answers/overview/overview_source.h"

namespace quillon::test {

namespace {

// What is counted here, without what the program counts with.
struct Count {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::map<Grade, std::int64_t> grades;

    void add(const EvidenceRow& row) {
        ++files;
        bytes += row.size;
        ++grades[*row.grade];
    }
};

void expectCount(const Figures& figures, const Count& own, const std::string& what) {
    EXPECT_EQ(figures.files, own.files) << what;
    EXPECT_EQ(figures.bytes, own.bytes) << what;
    for (const auto& row : kGrades.values) {
        const auto found = own.grades.find(row.grade);
        EXPECT_EQ(figures.grades[row.grade], found == own.grades.end() ? 0 : found->second) << what;
    }
    const auto ofGrade = [&own](Grade grade) {
        const auto found = own.grades.find(grade);
        return static_cast<double>(found == own.grades.end() ? 0 : found->second);
    };
    const double kept = ofGrade(Grade::Good) + ofGrade(Grade::CommonHeader);
    const double all = kept + ofGrade(Grade::Corrupt);
    if (all > 0)
        EXPECT_DOUBLE_EQ(quality(figures).value_or(-1), kept / all) << what;
    else
        EXPECT_EQ(quality(figures), std::nullopt) << what;
}

// Rows of a tree with names that sort on either side of "/" and names that are no text.
std::vector<EvidenceRow> randomRows(std::mt19937& random, int files) {
    static const std::vector<std::string> kFolders = {"a", "a b", "a-x", "b\xFF", "caf\xC3\xA9", "z\\"};
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    std::vector<EvidenceRow> rows;
    for (int i = 0; i < files; ++i) {
        EvidenceRow row;
        row.row = i + 1;
        for (std::size_t depth = below(4); depth > 0; --depth)
            row.folder += (row.folder.empty() ? "" : "/") + kFolders[below(kFolders.size())];
        row.extension = std::vector<std::string>{"", "jpg", "png", "z\xC3\xA9"}[below(4)];
        row.name = "f" + std::to_string(i) + (row.extension.empty() ? "" : "." + row.extension);
        row.grade = static_cast<Grade>(below(static_cast<std::size_t>(Grade::Count)));
        row.size = row.grade == Grade::ZeroBytes ? 0 : static_cast<std::int64_t>(below(5'000'000'000));
        if (row.grade == Grade::Corrupt)
            row.reason = below(2) == 0 ? Reason::Noise : Reason::ZeroFilled;
        rows.push_back(std::move(row));
    }
    return rows;
}

void writeRows(const NativePath& path, std::vector<EvidenceRow> rows) {
    ASSERT_TRUE(EvidenceStore::create(path));
    auto store = EvidenceStore::open(path);
    ASSERT_TRUE(store);
    for (auto& row : rows) {
        FileHead head;
        head.length = 512;
        head.bytes.fill(row.name.back());
        ASSERT_TRUE(store->add(row, &head));
    }
    ASSERT_TRUE(store->finish());
}

std::string under(const std::string& above, const std::string& path) {
    return above.empty() || path.empty() ? above + path : above + "/" + path;
}

std::vector<std::int64_t> found(OverviewSource& source, const FileWish& wish) {
    std::vector<std::int64_t> ids;
    auto search = source.search(wish);
    EXPECT_TRUE(search);
    while ((*search)->more(ids).value_or(false)) {
    }
    return ids;
}

// Every folder of the tree, with the rows below it.
void expectFolders(OverviewSource& source, const FolderFacts& folder, std::map<std::string, Count>& own) {
    expectCount(folder.figures, own[folder.path], "folder \"" + folder.path + "\"");
    FileWish wish;
    wish.below = folder.path;
    EXPECT_EQ(static_cast<std::int64_t>(found(source, wish).size()), own[folder.path].files) << folder.path;
    own.erase(folder.path);
    const auto below = source.folders(folder);
    ASSERT_TRUE(below);
    EXPECT_EQ(folder.hasFolders, !below->folders.empty()) << folder.path;
    for (const auto& child : below->folders) expectFolders(source, child, own);
}

// `rows`: of all jobs, their folders as the overview tells them.
void expectAll(OverviewSource& source, const std::vector<EvidenceRow>& rows) {
    Count total;
    std::map<std::string, Count> extensions;
    std::map<std::string, std::int64_t> reasons;
    std::map<std::string, Count> folders;
    for (const auto& row : rows) {
        total.add(row);
        extensions[row.extension].add(row);
        if (row.reason)
            ++reasons[reasonRow(*row.reason).name];
        folders[""].add(row);
        for (std::size_t end = 0; end != row.folder.npos && !row.folder.empty();) {
            end = row.folder.find('/', end + 1);
            folders[row.folder.substr(0, end)].add(row);
        }
    }
    expectCount(source.total().value_or(Figures()), total, "total");
    const auto told = source.extensions();
    ASSERT_TRUE(told);
    EXPECT_EQ(told->size(), extensions.size());
    for (std::size_t i = 0; i < told->size(); ++i) {
        expectCount((*told)[i].second, extensions[(*told)[i].first], "." + (*told)[i].first);
        EXPECT_TRUE(i == 0 || (*told)[i - 1].second.files >= (*told)[i].second.files);
    }
    const auto why = source.reasons();
    ASSERT_TRUE(why);
    EXPECT_EQ(why->size(), reasons.size());
    for (const auto& [name, figures] : *why) EXPECT_EQ(figures.files, reasons[name]) << name;
    const auto root = source.root();
    ASSERT_TRUE(root);
    expectFolders(source, *root, folders);
    EXPECT_TRUE(folders.empty()) << "not told: " << folders.begin()->first;
}

class CaseOverviewTest : public testing::Test {
protected:
    [[nodiscard]] JobFiles job(const std::string& id) const { return {id, {}, folder / (id + ".sqlite")}; }
    [[nodiscard]] std::unique_ptr<OverviewSource> open(const std::vector<JobFiles>& jobs) const {
        auto source = openOverview(jobs, ReportMessages::fallback());
        EXPECT_TRUE(source);
        return std::move(*source);
    }

    TempFolder folder;
};

TEST_F(CaseOverviewTest, FiguresOfRandomTreesAreThoseOfAnOwnCount) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        std::mt19937 random(seed);
        std::vector<EvidenceRow> all;
        std::vector<JobFiles> jobs;
        for (int part = 1; part <= 3; ++part) {
            const std::string id = std::to_string(seed) + "-Part " + std::to_string(part);
            const auto rows = randomRows(random, 40 * part);
            writeRows(job(id).evidence, rows);
            expectAll(*open({job(id)}), rows);
            for (auto row : rows) {
                row.folder = under(id, row.folder);
                all.push_back(std::move(row));
            }
            jobs.push_back(job(id));
        }
        expectAll(*open(jobs), all);
    }
}

TEST_F(CaseOverviewTest, RowsComeJobByJobAndEachKnowsItsHead) {
    std::mt19937 random(7);
    std::vector<EvidenceRow> all;
    for (const char* id : {"7-a", "7-b"}) {
        const auto rows = randomRows(random, 300);
        writeRows(job(id).evidence, rows);
        for (auto row : rows) {
            row.folder = under(id, row.folder);
            all.push_back(std::move(row));
        }
    }
    const auto source = open({job("7-a"), job("7-b")});
    const auto ids = found(*source, {});
    ASSERT_EQ(ids.size(), all.size());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const auto row = source->file(ids[i]);
        ASSERT_TRUE(row);
        EXPECT_EQ(row->id, ids[i]);
        EXPECT_EQ(row->path(), all[i].path());
        EXPECT_EQ(source->head(*row).value_or(std::nullopt), std::string(512, all[i].name.back()));
    }
}

TEST_F(CaseOverviewTest, AListAloneStandsBesideEvidence) {
    writeOverviewEvidence(folder / "7-a.sqlite");
    writeOverviewList(folder / "7-b.csv");
    const auto source = open({job("7-a"), {"7-b", folder / "7-b.csv", {}}});
    EXPECT_FALSE(source->knowsAll());
    EXPECT_EQ(source->total()->files, 12);
    const auto jobs = source->folders(*source->root());
    ASSERT_TRUE(jobs);
    ASSERT_EQ(jobs->folders.size(), 2U);
    EXPECT_EQ(jobs->folders[1].path, "7-b");
    const auto below = source->folders(jobs->folders[1]);
    ASSERT_TRUE(below);
    ASSERT_EQ(below->folders.size(), 2U);
    EXPECT_EQ(below->folders[0].path, "7-b/source/photos") << "the path of a list is a whole one";
    FileWish wish;
    wish.below = below->folders[0].path;
    const auto ids = found(*source, wish);
    ASSERT_EQ(ids.size(), 3U);
    EXPECT_EQ(source->file(ids[0])->path(), "7-b/source/photos/b.jpg");
    EXPECT_EQ(source->placeOf(wish.below)->folder, "/source/photos");
    wish.below = "7-b";
    EXPECT_EQ(found(*source, wish).size(), 6U);
    EXPECT_EQ(source->placeOf(""), std::nullopt);
}

TEST_F(CaseOverviewTest, AJobThatCannotBeReadIsNotPassedOver) {
    writeOverviewEvidence(folder / "7-a.sqlite");
    folder.write("7-b.sqlite", "no evidence");
    EXPECT_FALSE(openOverview({job("7-a"), job("7-b")}, ReportMessages::fallback()));
}

}  // namespace

}  // namespace quillon::test
