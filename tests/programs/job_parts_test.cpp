// SPDX-License-Identifier: MIT
// A job in parts, put together by `quillon-list merge`: what comes of it is what one job leaves.
#include <filesystem>
#include <random>

#include <fmt/format.h>

#include "evidence/evidence_reader.h"
#include "evidence/evidence_store.h"
#include "job/folder_walk.h"
#include "job/job_end.h"
#include "programs/command_fixture.h"
#include "programs/list_command.h"

namespace quillon::test {
namespace {

namespace fs = std::filesystem;

// Everything that an evidence holds, but for what names and dates the job itself.
std::vector<std::string> contentOf(const NativePath& path) {
    constexpr const char* kQuestions[] = {
        "SELECT key, value FROM job WHERE key NOT IN ('id', 'started', 'ended', 'list_modified', 'merged') ORDER BY key",
        "SELECT * FROM folder ORDER BY id",
        "SELECT * FROM file ORDER BY id",
        "SELECT * FROM head_block ORDER BY id",
        "SELECT * FROM grade ORDER BY id",
        "SELECT * FROM by_extension ORDER BY extension, grade",
        "SELECT * FROM by_reason ORDER BY reason, extension"};
    std::vector<std::string> rows;
    auto evidence = EvidenceReader::open(path);
    EXPECT_TRUE(evidence) << evidence.error().text;
    for (const char* question : kQuestions) {
        auto found = evidence->prepare(question);
        EXPECT_TRUE(found) << found.error().text;
        rows.emplace_back(question);
        while (found->step().value_or(false)) {
            std::string row;
            for (int column = 0; column < found->columns(); ++column)
                row += found->isNull(column) ? "|NULL" : "|" + std::string(found->blob(column));
            rows.push_back(std::move(row));
        }
    }
    return rows;
}

class JobPartsTest : public CommandFixture {
protected:
    JobPartsTest() { install(); }

    // A part of the job `id`, listed as "<id>-Part <number>".
    int part(const std::string& id, int number, int of, const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"--job",
                                              id,
                                              "--source",
                                              (folder / "source").native(),
                                              "--app",
                                              (folder / "app").native(),
                                              "--quiet",
                                              "--part",
                                              fmt::format("{}/{}", number, of)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return command(arguments);
    }
    void allParts(const std::string& id, int of, const std::vector<std::string>& more = {}) {
        for (int number = 1; number <= of; ++number) ASSERT_EQ(part(id, number, of, more), kExitComplete) << err.str();
    }
    int list(std::vector<std::string> arguments) {
        out.str("");
        err.str("");
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        return runListCommand(arguments, {out, err});
    }
    int merge(const std::string& id, const std::string& of, int parts) {
        std::vector<std::string> arguments = {"merge", id};
        for (int number = parts; number > 0; --number) arguments.push_back(fmt::format("{}-Part {}", of, number));
        return list(std::move(arguments));
    }
    void expectEqualJobs(const std::string& one, const std::string& other) const {
        EXPECT_EQ(folder.read("local/" + one + ".csv"), folder.read("local/" + other + ".csv"));
        EXPECT_EQ(contentOf(folder / ("local/" + one + ".sqlite")), contentOf(folder / ("local/" + other + ".sqlite")));
    }

    // Names of any bytes that a folder takes, in an order that is not that of a page.
    std::string oddName() {
        constexpr const char* kPieces[] = {"a",  "A",    "a.b",  "b c",      ",",   ">",  "\\",
                                           "\n", "\x01", "\xff", "\xc3\xa9", "-",   "..", "\x80\x81",
                                           "~",  "#;",   "%20",  "'",        "\"|", "z",  "0"};
        std::string name;
        for (auto left = 1 + random_() % 4; left > 0; --left) name += kPieces[random_() % std::size(kPieces)];
        return name == ".." ? "x" : name;
    }
    void fillRandomly(const std::string& below, int depth) {
        for (auto left = random_() % 5; left > 0; --left) {
            const auto extension = std::array{".abc", ".xyz", "", ".ABC", ".q,q"}[random_() % 5];
            const auto content = std::array{"MZ" + std::string(600, 'g'), std::string(600, '\0'), std::string(),
                                            std::string(100, 'x'), std::string(700, 'n')}[random_() % 5];
            folder.write(below + "/" + oddName() + extension, content);
        }
        for (auto left = depth > 0 ? 1 + random_() % 4 : 0; left > 0; --left) {
            const std::string name = below + "/" + oddName();
            std::error_code taken;
            if (fs::create_directory((folder / name), taken))
                fillRandomly(name, depth - 1);
        }
    }

    std::mt19937 random_{19};
};

TEST_F(JobPartsTest, PartsOfRandomTreesMergeToWhatOneJobLeaves) {
    for (int tree = 0; tree < 6; ++tree) {
        fs::remove_all(folder / "source");
        fs::create_directory(folder / "source");
        fillRandomly("source", 3);
        const std::string id = fmt::format("whole{}", tree);
        ASSERT_EQ(command({"--job", id, "--source", (folder / "source").native(), "--app", (folder / "app").native(),
                           "--quiet"}),
                  kExitComplete)
            << err.str();
        for (const int of : {1, 2, 5}) {
            const std::string parts = fmt::format("p{}-{}", tree, of);
            allParts(parts, of);
            ASSERT_EQ(merge(parts, parts, of), kExitComplete) << err.str();
            expectEqualJobs(id, parts);
        }
    }
}

TEST_F(JobPartsTest, HeadsThatWereLeftOutStayLeftOut) {
    fillRandomly("source", 2);
    ASSERT_EQ(job({"--quiet", "--no-heads"}), kExitComplete);
    allParts("p", 3, {"--no-heads"});
    ASSERT_EQ(merge("p", "p", 3), 0) << err.str();
    expectEqualJobs("1234", "p");
}

TEST_F(JobPartsTest, UntestedPartsMergeToo) {
    fillRandomly("source", 2);
    ASSERT_EQ(job({"--quiet", "--no-test"}), kExitComplete);
    allParts("p", 3, {"--no-test"});
    ASSERT_EQ(merge("p", "p", 3), 0) << err.str();
    expectEqualJobs("1234", "p");
}

TEST_F(JobPartsTest, FolderErrorsStandAsOneJobHasThem) {
    for (const char* name : {"source/b/x.abc", "source/b-c/y.abc", "source/b/in/z.abc", "source/c/q.abc"})
        folder.write(name, "MZ" + std::string(600, 'g'));
    ASSERT_EQ(job({"--quiet"}), kExitComplete);
    allParts("p", 3);
    const auto note = [&](const std::string& id, const std::string& path, const char* words) {
        auto store = EvidenceStore::open(folder / ("local/" + id + ".sqlite"));
        ASSERT_TRUE(store) << store.error().text;
        ASSERT_TRUE(store->setFolderError(path, words).and_then([&] { return store->finish(); }));
    };
    const auto everywhere = [&](const std::string& path, const char* words) {
        note("1234", path, words);
        for (std::int64_t number = 1; number <= 3; ++number) {
            if (JobPart{number, 3, {}}.has(path))
                note(fmt::format("p-Part {}", number), path, words);
        }
    };
    everywhere("b/closed", kCannotBeEntered);
    everywhere("c/closed", kCannotBeEntered);
    everywhere("", kCannotBeRead);
    everywhere("b", kCannotBeRead);
    everywhere("b/broken", kCannotBeRead);
    everywhere("b-c/broken", kCannotBeRead);
    ASSERT_EQ(merge("p", "p", 3), 0) << err.str();
    expectEqualJobs("1234", "p");
}

TEST_F(JobPartsTest, FoldersAreCountedOnceOverAllParts) {
    fillRandomly("source", 3);
    ASSERT_EQ(job({"--json", "--quiet"}), kExitComplete);
    const auto whole = json()["counters"];
    auto sum = nlohmann::json::object();
    for (int number = 1; number <= 4; ++number) {
        ASSERT_EQ(part("p", number, 4, {"--json"}), kExitComplete);
        EXPECT_EQ(json()["part"], fmt::format("{}/4", number));
        EXPECT_EQ(json()["job"], fmt::format("p-Part {}", number));
        const auto counters = json()["counters"];
        for (const auto& [name, value] : counters.items()) sum[name] = sum.value(name, 0) + value.get<int>();
    }
    EXPECT_EQ(sum, whole);
}

TEST_F(JobPartsTest, MergeRefusesWhatIsNotAllOfOneJob) {
    fillRandomly("source", 2);
    allParts("p", 3);
    ASSERT_EQ(part("q", 3, 3), kExitComplete);
    ASSERT_EQ(part("r", 3, 3, {"--no-common-headers"}), kExitComplete);
    ASSERT_EQ(part("p4", 4, 4), kExitComplete);
    ASSERT_EQ(job({"--quiet"}), kExitComplete);
    const struct {
        std::vector<std::string> jobs;
        const char* told;
    } cases[] = {
        {{"p-Part 1", "p-Part 3"}, "part 2 of 3 is missing"},
        {{"p-Part 1", "p-Part 2", "p-Part 2", "p-Part 3"}, "are both part 2/3"},
        {{"p-Part 1", "p-Part 2", "q-Part 3"}, "is part 3/3 of job \"q\""},
        {{"p-Part 1", "p-Part 2", "p4-Part 4"}, "is part 4/4 of job \"p4\""},
        {{"p-Part 1", "p-Part 2", "p-Part 3", "1234"}, "1234 is a whole job"},
        {{"p-Part 9"}, "there is no list and no evidence"},
    };
    for (const auto& one : cases) {
        std::vector<std::string> arguments = {"merge", "new"};
        arguments.insert(arguments.end(), one.jobs.begin(), one.jobs.end());
        EXPECT_EQ(list(arguments), 2) << one.told;
        EXPECT_TRUE(told(one.told)) << err.str();
        EXPECT_FALSE(fs::exists(folder / "local/new.csv"));
        EXPECT_FALSE(fs::exists(folder / "local/new.sqlite"));
    }
}

TEST_F(JobPartsTest, MergeRefusesPartsByDifferentRulesOrOptions) {
    fillRandomly("source", 2);
    const auto refused = [&](const char* id, const char* words) {
        EXPECT_EQ(merge(std::string(id) + "all", id, 2), 2);
        EXPECT_TRUE(told(words)) << err.str();
    };
    ASSERT_EQ(part("options", 1, 2), kExitComplete);
    ASSERT_EQ(part("options", 2, 2, {"--no-common-headers"}), kExitComplete);
    refused("options", "different options");
    ASSERT_EQ(part("rules", 1, 2), kExitComplete);
    folder.write("local/Database/xyz.dat", "1,AB,T\r\n");
    ASSERT_EQ(part("rules", 2, 2), kExitComplete);
    refused("rules", "different rules");
    ASSERT_EQ(part("skip", 1, 2), kExitComplete);
    folder.write("local/Settings/SkipList.dat", "*.never\r\n");
    ASSERT_EQ(part("skip", 2, 2), kExitComplete);
    refused("skip", "different skip lists");
}

TEST_F(JobPartsTest, MergeRefusesAListThatWasChangedByOthers) {
    folder.write("source/a.abc", "MZ" + std::string(600, 'g'));
    allParts("p", 1);
    std::string bytes = folder.read("local/p-Part 1.csv");
    const auto row = bytes;
    folder.write("local/p-Part 1.csv", bytes + row);
    EXPECT_EQ(merge("new", "p", 1), 2);
    EXPECT_TRUE(told("say different things")) << err.str();
    bytes[bytes.size() - 6] = 'X';  // within the result
    folder.write("local/p-Part 1.csv", bytes);
    EXPECT_EQ(merge("new", "p", 1), 2);
    EXPECT_TRUE(told("say different things")) << err.str();
}

TEST_F(JobPartsTest, AMergedJobReplacesNothingThatIsThere) {
    folder.write("source/a.abc", "MZ" + std::string(600, 'g'));
    ASSERT_EQ(job({"--quiet"}), kExitComplete);
    const auto before = folder.read("local/1234.csv");
    allParts("p", 2);
    EXPECT_EQ(merge("1234", "p", 2), 2);
    EXPECT_TRUE(told("it is there already")) << err.str();
    EXPECT_EQ(folder.read("local/1234.csv"), before);
}

TEST_F(JobPartsTest, WholeJobsOfSeveralSourcesBecomeOne) {
    folder.write("source/one/a.abc", "MZ" + std::string(600, 'g'));
    folder.write("source/one/sub/b.abc", std::string(600, 'b'));
    folder.write("source/two/c.abc", "");
    for (const char* name : {"two", "one"}) {
        ASSERT_EQ(command({"--job", std::string("1234-") + name, "--source", (folder / "source" / name).native(),
                           "--app", (folder / "app").native(), "--quiet"}),
                  kExitComplete);
    }
    ASSERT_EQ(list({"merge", "1234", "--case", "1234"}), 0) << err.str();
    EXPECT_TRUE(out.str().find("1234: 3 rows of 2 jobs") != std::string::npos) << out.str();
    ASSERT_EQ(list({"files", "1234"}), 0);
    EXPECT_EQ(out.str(), "one/a.abc\none/sub/b.abc\ntwo/c.abc\n");
    ASSERT_EQ(list({"summary", "--case", "1234", "--json"}), 0);
    EXPECT_EQ(json()["files"], 3) << "the merged job stands for those that it was made of";
    ASSERT_EQ(list({"merge", "again", "1234-one", "1234"}), 2);
    EXPECT_TRUE(told("both list it")) << err.str();
}

TEST_F(JobPartsTest, APartNeedsItsEvidenceAndANumberThatFits) {
    EXPECT_EQ(job({"--part", "1/2", "--no-evidence"}), kExitUsage);
    EXPECT_TRUE(told("--part takes no --no-evidence")) << err.str();
    for (const char* wrong : {"0/2", "3/2", "1", "1/", "/2", "a/b", "1/2x", "-1/2", "1/100001"}) {
        EXPECT_EQ(job({"--part", wrong}), kExitUsage) << wrong;
        EXPECT_TRUE(told("is not K/N with K from 1 to N")) << err.str();
    }
    folder.write("app/preferences.ini", "evidence.keep=no\n");
    EXPECT_EQ(part("p", 1, 1), kExitComplete);
    EXPECT_TRUE(fs::exists(folder / "local/p-Part 1.sqlite"));
}

}  // namespace
}  // namespace quillon::test
