// SPDX-License-Identifier: MIT
#include "programs/list_sectors.h"

#include <map>

#include "programs/command_fixture.h"

namespace quillon::test {

namespace {

constexpr std::uint64_t kDisk = 0x100000;

// A disk of its own: each file lies where a test puts it.
class ScriptedPlaces final : public PlaceReader {
public:
    Result<FileSystemPlace> systemOf(const NativePath&) override { return system; }
    Result<FilePlaces> placesOf(std::string_view nativePath) override {
        const auto name = nativePath.substr(nativePath.rfind('/') + 1);
        const auto found = files.find(name);
        if (found == files.end())
            return failure(ErrorKind::NotFound, std::string(nativePath) + ": No such file or directory");
        return found->second;
    }

    std::optional<std::uint64_t> firstPlaceOf(std::string_view) override { return std::nullopt; }

    FileSystemPlace system{42, "ext4", "rw", 4096, {{"/dev/sdx1", 0x80000, 0}, {"/dev/sdx", kDisk, 0x10000}}};
    std::map<std::string, FilePlaces, std::less<>> files;
};

class ListSectorsTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        for (const char* name : {"a.abc", "sub/b.abc", "c.xyz"})
            folder.write("source/" + std::string(name), "MZ" + std::string(8190, 'x'));
        ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
        places.files["a.abc"] = {8192, 42, {{0, 0x1000, 0x2000}}};
        places.files["b.abc"] = {8192, 42, {{0, 0x8000, 0x1000}, {0x1000, 0x4000, 0x1000}}};
        places.files["c.xyz"] = {8192, 42, {{0, 0x6000, 0x2000}}};
        // Half a sector of a.abc, the second half of b.abc, and what is no file's.
        map = "0 +\n0 0x11100 +\n0x11100 0x100 -\n0x11200 0x2E00 +\n0x14000 0x1000 /\n0x15000 0xEB000 +\n";
        list = {"1234", folder / "local/1234.csv", folder / "local/1234.sqlite"};
    }
    int tell() {
        out.str("");
        err.str("");
        options.map = folder.write("map", map);
        const auto status = tellSectors({list}, options, {out, err, false, false}, places);
        if (!status)
            err << status.error().text;
        return status.value_or(2);
    }
    int ask(std::vector<std::string> arguments) {
        out.str("");
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        return runListCommand(arguments, {out, err, false, false});
    }

    ScriptedPlaces places;
    std::string map;
    ListCommandOptions options;
    JobFiles list;
};

TEST_F(ListSectorsTest, TellsWhichBytesOfWhichFilesWereNotRead) {
    options.json = true;
    ASSERT_EQ(tell(), 0) << err.str();
    const auto answer = json();
    ASSERT_EQ(answer["files"].size(), 2U) << out.str();
    EXPECT_EQ(answer["files"][0],
              nlohmann::json::parse(R"({"path": "a.abc", "bytes": 256, "ranges": [{"offset": 256, "bytes": 256}]})"));
    EXPECT_EQ(
        answer["files"][1],
        nlohmann::json::parse(R"({"path": "sub/b.abc", "bytes": 4096, "ranges": [{"offset": 4096, "bytes": 4096}]})"));
    EXPECT_EQ(answer["looked_at"], 3);
    EXPECT_EQ(answer["unread_bytes"], 4352);
    EXPECT_EQ(answer["other_unread_bytes"], 0);
}

TEST_F(ListSectorsTest, TellsPeopleTheSums) {
    ASSERT_EQ(tell(), 0) << err.str();
    EXPECT_NE(out.str().find("            256  a.abc  (256+256)\n"), std::string::npos) << out.str();
    EXPECT_NE(out.str().find("2 files of 3 hold unread sectors, 4.3 Kb in all\n"), std::string::npos) << out.str();
}

TEST_F(ListSectorsTest, TheEvidenceKnowsItAndFilesAreFoundByIt) {
    ASSERT_EQ(tell(), 0) << err.str();
    ASSERT_EQ(ask({"files", "1234", "--unread"}), 0) << err.str();
    EXPECT_EQ(out.str(), "a.abc\nsub/b.abc\n");
    ASSERT_EQ(ask({"export", "1234", "--format", "jsonl"}), 0);
    EXPECT_NE(out.str().find("\"bad_bytes\":256"), std::string::npos) << out.str();
}

TEST_F(ListSectorsTest, TheFiguresTellOfUnreadSectors) {
    ASSERT_EQ(tell(), 0) << err.str();
    ASSERT_EQ(ask({"summary", "1234"}), 0) << err.str();
    EXPECT_NE(out.str().find("Whole    0.00% good and whole as far as known: 2 files of 3 hold unread sectors, 4.3 Kb"),
              std::string::npos)
        << out.str();
    ASSERT_EQ(ask({"folders", "1234", "--json"}), 0) << err.str();
    EXPECT_EQ(json()[0]["unread-sector-bytes"], 4352);
    EXPECT_EQ(json()[1]["folder"], "sub");
    EXPECT_EQ(json()[1]["unread-sector-bytes"], 4096);
}

TEST_F(ListSectorsTest, ALaterMapTakesThePlaceOfAnEarlierOne) {
    ASSERT_EQ(tell(), 0) << err.str();
    map = "0 +\n0 0x16000 +\n0x16000 0x1 -\n0x16001 0xE9FFF +\n";
    ASSERT_EQ(tell(), 0) << err.str();
    ASSERT_EQ(ask({"files", "1234", "--unread"}), 0) << err.str();
    EXPECT_EQ(out.str(), "c.xyz\n");
}

TEST_F(ListSectorsTest, WhatNoFileHasIsToldInOneLine) {
    map = "0 +\n0 0x19000 +\n0x19000 0x800 -\n0x19800 0xE6800 +\n";
    ASSERT_EQ(tell(), 0) << err.str();
    EXPECT_NE(out.str().find("0 files of 3 hold unread sectors"), std::string::npos) << out.str();
    EXPECT_NE(out.str().find("2.0 Kb of the unread sectors lie in no file of the list"), std::string::npos);
}

TEST_F(ListSectorsTest, FilesThatNoMapCanTellOfAreCountedAndStayUnknown) {
    places.files["a.abc"].extents[0].kind = ExtentKind::Encoded;
    places.files["b.abc"].device = 43;
    places.files.erase("c.xyz");
    options.json = true;
    ASSERT_EQ(tell(), 0) << err.str();
    EXPECT_EQ(json()["files"].size(), 0U);
    EXPECT_EQ(json()["encoded"], 1);
    EXPECT_EQ(json()["elsewhere"], 1);
    EXPECT_EQ(json()["failed"], 1);
    EXPECT_NE(err.str().find("No such file"), std::string::npos);
    ASSERT_EQ(ask({"export", "1234", "--format", "jsonl"}), 0);
    EXPECT_EQ(out.str().find("\"bad_bytes\":0"), std::string::npos) << out.str();
}

TEST_F(ListSectorsTest, TheDomainIsWhatChosenFilesStillMiss) {
    options.output = folder / "domain";
    options.wish.below = "sub";
    ASSERT_EQ(tell(), 0) << err.str();
    EXPECT_EQ(out.str().find("a.abc"), std::string::npos);
    const std::string domain = folder.read("domain");
    EXPECT_NE(domain.find("0x00000000  0x00014000  ?\n0x00014000  0x00001000  +\n0x00015000  0x000EB000  ?\n"),
              std::string::npos)
        << domain;
    options.wish.below.clear();
    ASSERT_EQ(tell(), 0) << err.str();
    EXPECT_NE(folder.read("domain").find("0x00011000  0x00001000  +\n"), std::string::npos) << "a physical sector";
    options.sectorBytes = 512;
    ASSERT_EQ(tell(), 0) << err.str();
    EXPECT_NE(folder.read("domain").find("0x00011000  0x00000200  +\n"), std::string::npos) << "as it was given";
}

TEST_F(ListSectorsTest, AMapOfAnotherDeviceIsRefusedAndNothingIsKept) {
    map += "0x100000 0x200 +\n";
    EXPECT_EQ(tell(), 2);
    EXPECT_NE(err.str().find("another device"), std::string::npos) << err.str();
    places.system.devices.clear();
    EXPECT_EQ(tell(), 2);
    EXPECT_NE(err.str().find("lies on no device"), std::string::npos) << err.str();
    ASSERT_EQ(ask({"export", "1234", "--format", "jsonl"}), 0);
    EXPECT_NE(out.str().find("\"bad_bytes\":null"), std::string::npos) << out.str();
}

TEST_F(ListSectorsTest, AJobWithoutEvidenceAndAMapThatIsNoneAreTrouble) {
    map = "no map\n";
    EXPECT_EQ(tell(), 2);
    EXPECT_NE(err.str().find("line 1"), std::string::npos) << err.str();
    list.evidence.clear();
    map = "0 +\n0 0x100000 +\n";
    EXPECT_EQ(tell(), 2);
    EXPECT_NE(err.str().find("has no evidence"), std::string::npos) << err.str();
    EXPECT_EQ(ask({"sectors", "1234"}), 2);
}

}  // namespace

}  // namespace quillon::test
