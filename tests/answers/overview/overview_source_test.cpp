// SPDX-License-Identifier: MIT
// The same job asked by its evidence, by that of a job that died, and by its list.
#include "answers/overview/overview_source.h"

#include <functional>
#include <map>
#include <random>
#include <set>

#include "answers/job_answers.h"
#include "answers/overview/folder_map.h"
#include "answers/overview/overview_fixture.h"

namespace quillon::test {

namespace {

enum class Given { Evidence, DeadJob, List };

class OverviewSourceTest : public testing::TestWithParam<Given> {
protected:
    void SetUp() override {
        JobFiles job{"1", {}, {}};
        if (GetParam() == Given::List) {
            writeOverviewList(job.list = folder / "1.csv");
            prefix = "/source/";
        } else {
            writeOverviewEvidence(job.evidence = folder / "1.sqlite", GetParam() == Given::Evidence);
        }
        auto opened = openOverview(job, ReportMessages::fallback());
        ASSERT_TRUE(opened) << opened.error().text;
        source = std::move(*opened);
        auto begun = FolderNodes::begin(*source);
        ASSERT_TRUE(begun);
        nodes.emplace(std::move(*begun));
    }

    FolderNode& loaded(FolderNode& node) const {
        EXPECT_TRUE(nodes->load(node));
        return node;
    }

    [[nodiscard]] std::set<std::string> found(const FileWish& wish) const {
        auto search = source->search(wish);
        EXPECT_TRUE(search);
        std::vector<std::int64_t> ids;
        while (true) {
            const auto more = (*search)->more(ids);
            EXPECT_TRUE(more);
            if (!more || !*more)
                break;
        }
        std::set<std::string> names;
        for (const auto id : ids) names.insert(source->file(id)->name);
        EXPECT_EQ(names.size(), ids.size());
        return names;
    }

    TempFolder folder;
    std::string prefix;
    std::unique_ptr<OverviewSource> source;
    mutable std::optional<FolderNodes> nodes;
};

INSTANTIATE_TEST_SUITE_P(Each, OverviewSourceTest, testing::Values(Given::Evidence, Given::DeadJob, Given::List));

using Names = std::set<std::string>;

TEST_P(OverviewSourceTest, TheRootHoldsEverything) {
    const FolderFacts& root = nodes->root().facts;
    EXPECT_EQ(root.figures.files, 6);
    EXPECT_EQ(root.figures.bytes, 15010);
    EXPECT_EQ(badFiles(root.figures), 2);
    EXPECT_TRUE(root.hasFolders);
    EXPECT_EQ(root.path, GetParam() == Given::List ? "/source" : "");
    EXPECT_EQ(source->total()->files, 6);
}

TEST_P(OverviewSourceTest, FoldersAreWholeBranches) {
    const FolderNode& root = loaded(nodes->root());
    ASSERT_EQ(root.below.size(), 2U);
    const FolderFacts& photos = root.below[0]->facts;
    EXPECT_EQ(photos.name, "photos");
    EXPECT_EQ(photos.path, prefix + "photos");
    EXPECT_EQ(photos.figures.files, 3);
    EXPECT_EQ(photos.figures.grades[Grade::Corrupt], 2);
    EXPECT_DOUBLE_EQ(quality(photos.figures).value(), 1.0 / 3);
    EXPECT_TRUE(photos.hasFolders);
    EXPECT_FALSE(root.below[1]->facts.hasFolders) << "photos2 only begins like photos";
    const FolderNode& inner = loaded(*root.below[0]);
    ASSERT_EQ(inner.below.size(), 1U);
    EXPECT_EQ(inner.below[0]->facts.path, prefix + "photos/2019");
    EXPECT_EQ(inner.below[0]->facts.figures.files, 2);
}

TEST_P(OverviewSourceTest, FoldersAreSortedByTheWorst) {
    FolderNode& root = loaded(nodes->root());
    nodes->sort(FolderOrder::Bad, true);
    EXPECT_EQ(root.below[0]->facts.name, "photos");
    nodes->sort(FolderOrder::Quality, false);
    EXPECT_EQ(root.below[0]->facts.name, "photos") << "what could not be judged stands behind";
    nodes->sort(FolderOrder::Name, true);
    EXPECT_EQ(root.below[0]->facts.name, "photos2");
    EXPECT_EQ(root.below[0]->place, 0U);
}

TEST_P(OverviewSourceTest, ExtensionsStandByTheirFiles) {
    const auto extensions = source->extensions();
    ASSERT_TRUE(extensions);
    ASSERT_EQ(extensions->size(), 4U);
    EXPECT_EQ(extensions->front().first, "jpg");
    EXPECT_EQ(extensions->front().second.files, 3);
    EXPECT_EQ(extensions->front().second.grades[Grade::Corrupt], 2);
}

TEST_P(OverviewSourceTest, ReasonsAreKnownFromTheEvidenceAlone) {
    const auto reasons = source->reasons();
    ASSERT_TRUE(reasons);
    EXPECT_EQ(reasons->size(), GetParam() == Given::List ? 0U : 3U);
    EXPECT_EQ(source->knowsAll(), GetParam() != Given::List);
}

TEST_P(OverviewSourceTest, SearchesFindWhatFits) {
    EXPECT_EQ(found({}), (Names{"a.jpg", "b.jpg", "c.JPG", "d.png", "e", "f.xyz"}));
    FileWish wish;
    wish.extensions = {"jpg"};
    EXPECT_EQ(found(wish), (Names{"a.jpg", "b.jpg", "c.JPG"}));
    wish.below = prefix + "photos";
    EXPECT_EQ(found(wish), (Names{"b.jpg", "c.JPG"}));
    wish.grades = {Grade::Good};
    EXPECT_EQ(found(wish), Names{});
    wish = {};
    wish.extensions = {""};
    EXPECT_EQ(found(wish), Names{"e"});
    wish.extensions = {"x' OR 1=1 --"};
    EXPECT_EQ(found(wish), Names{});
    wish = {};
    wish.reasons = {Reason::Noise};
    EXPECT_EQ(found(wish), GetParam() == Given::List ? Names{} : Names{"c.JPG"});
    wish = {};
    wish.doubt = true;
    EXPECT_EQ(found(wish), GetParam() == Given::List ? Names{} : Names{"a.jpg"});
}

TEST_P(OverviewSourceTest, AHeadIsThatOfItsFile) {
    FileWish wish;
    wish.extensions = {"png"};
    auto search = source->search(wish);
    std::vector<std::int64_t> ids;
    ASSERT_TRUE((*search)->more(ids));
    ASSERT_EQ(ids.size(), 1U);
    const auto file = source->file(ids[0]);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->path(), prefix + "photos/2019/d.png");
    EXPECT_EQ(file->size, 4000);
    const auto head = source->head(*file);
    ASSERT_TRUE(head);
    if (GetParam() == Given::List)
        EXPECT_EQ(*head, std::nullopt);
    else
        EXPECT_EQ(*head, std::string(512, '4'));
}

TEST_P(OverviewSourceTest, TilesAreFoldersAndTheFilesBesideThem) {
    const auto byFiles = tilesOf(loaded(nodes->root()), MapArea::Files);
    ASSERT_EQ(byFiles.size(), 3U);
    EXPECT_EQ(byFiles[0].name, "photos");
    EXPECT_EQ(byFiles[0].weight, 3);
    EXPECT_EQ(byFiles[2].folder, nullptr);
    EXPECT_EQ(byFiles[2].figures.files, 1) << "a.jpg";
    EXPECT_EQ(byFiles[2].figures.grades[Grade::Good], 1);
    const auto byBytes = tilesOf(nodes->root(), MapArea::Bytes);
    EXPECT_EQ(byBytes[0].weight, 9000);
    EXPECT_EQ(qualityStep(byBytes[0].figures).letter, 'E');
    EXPECT_EQ(tileText(byBytes[0]), "photos: 3 files, 8.8 Kb, quality 33.33% (E), 2 bad");
}

// Every figure of the tree against a count over all rows.
TEST(OverviewFigures, TheyAreThoseOfAnIndependentCount) {
    TempFolder folder;
    const NativePath path = folder / "2.sqlite";
    std::mt19937 random(5);
    std::map<std::string, Figures> expected;
    {
        ASSERT_TRUE(EvidenceStore::create(path));
        auto store = EvidenceStore::open(path);
        for (int i = 1; i <= 3000; ++i) {
            EvidenceRow row;
            row.row = i;
            for (auto depth = random() % 5; depth > 0; --depth)
                row.folder += (row.folder.empty() ? "" : "/") + std::string(1, "ab\\\xFF"[random() % 4]);
            row.name = std::to_string(i);
            row.size = static_cast<std::int64_t>(random() % 9999);
            row.grade = static_cast<Grade>(random() % kGradeCount);
            ASSERT_TRUE(store->add(row, nullptr));
            for (std::string at = row.folder;; at = at.substr(0, at.rfind('/') == at.npos ? 0 : at.rfind('/'))) {
                count(expected[at], {row.grade, {}, row.size, false});
                if (at.empty())
                    break;
            }
        }
        ASSERT_TRUE(store->finish());
    }
    auto source = openOverview({"2", {}, path}, ReportMessages::fallback());
    ASSERT_TRUE(source);
    auto nodes = FolderNodes::begin(**source);
    ASSERT_TRUE(nodes);
    std::size_t seen = 0;
    const std::function<void(FolderNode&)> check = [&](FolderNode& node) {
        ++seen;
        EXPECT_EQ(node.facts.figures, expected.at(node.facts.path)) << node.facts.path;
        ASSERT_TRUE(nodes->load(node));
        EXPECT_EQ(node.facts.hasFolders, !node.below.empty()) << node.facts.path;
        for (const auto& child : node.below) check(*child);
    };
    check(nodes->root());
    EXPECT_EQ(seen, expected.size());
    for (const auto& [below, figures] : expected) {
        FileWish wish;
        wish.below = below;
        auto search = (*source)->search(wish);
        std::vector<std::int64_t> ids;
        while (*(*search)->more(ids)) continue;
        EXPECT_EQ(static_cast<std::int64_t>(ids.size()), figures.files) << below;
    }
}

}  // namespace

}  // namespace quillon::test
