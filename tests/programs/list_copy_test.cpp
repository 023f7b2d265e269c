// SPDX-License-Identifier: MIT
// Files of a finished job, copied with their check sums, and compared with them.
#include "programs/list_copy.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include <fmt/format.h>

#include "evidence/evidence_reader.h"
#include "programs/command_fixture.h"
#include "support/failing_files.h"
#include "support/posix_files.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

class ListCopyTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        folder.write("source/good.abc", "MZ" + std::string(600, 'x'));
        folder.write("source/sub/bad.abc", std::string(600, '\0'));
        folder.write("source/sub/what.xyz", std::string(600, 'y'));
        ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    }

    int list(std::vector<std::string> arguments) {
        out.str("");
        err.str("");
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        return runListCommand(arguments, {out, err, false, false, canAsk ? &in : nullptr});
    }
    int copy(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"copy", "1234", "--to", target().native()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return list(arguments);
    }
    int verify() { return list({"verify", "1234", "--against", target().native()}); }

    [[nodiscard]] NativePath target() const { return folder / "target"; }
    // Below the target, where a file of the source lands.
    [[nodiscard]] std::string landed(const std::string& name) const {
        return "target" + (folder / "source" / name).native();
    }
    [[nodiscard]] bool isThere(const std::string& name) const { return fs::exists(folder / landed(name)); }
    [[nodiscard]] EvidenceRow rowOf(const std::string& path) const {
        EvidenceRow row;
        auto reader = EvidenceReader::open(folder / "local/1234.sqlite");
        EXPECT_TRUE(reader && reader->findPath(path, row).value_or(false)) << path;
        return row;
    }
    // What `sha256sum -c` says, run in the target's root.
    [[nodiscard]] int sha256sum() const {
        const std::string command = "cd '" + target().native() + "' && sha256sum --strict --status -c 1234.sha256";
        return std::system(command.c_str());
    }

    std::string inTheWay(const std::string& name) const {
        fs::create_directories(folder / landed(name));
        return (folder / landed(name)).native();
    }
};

TEST_F(ListCopyTest, GoodFilesAreCopiedWithTheirCheckSums) {
    ASSERT_EQ(copy({"--grade", "good"}), 0) << err.str();
    EXPECT_EQ(folder.read(landed("good.abc")), "MZ" + std::string(600, 'x'));
    EXPECT_FALSE(isThere("sub/bad.abc"));
    EXPECT_EQ(out.str(), "1 files copied, 602 bytes\n");
    EXPECT_EQ(rowOf("good.abc").copied, 1);
    EXPECT_EQ(rowOf("sub/bad.abc").copied, std::nullopt);
    EXPECT_EQ(sha256sum(), 0);
    EXPECT_EQ(folder.read("target/1234.sha256"), folder.read("local/1234.sha256")) << "beside the list, too";
    EXPECT_FALSE(fs::exists(folder / "target/1234-damaged.sha256")) << "nothing is damaged";
}

TEST_F(ListCopyTest, CopiesTellTheEvidenceOfMarkedSectors) {
    std::string sectors(1024, 'x');
    for (std::size_t at = 512; at < 1024; ++at) sectors[at] = "BAD SECTOR "[(at - 512) % 11];
    folder.write("source/good.abc", "MZ" + sectors.substr(2));
    folder.write("local/Settings/BadSectors.dat", "0,BAD SECTOR ,T,R,BAD SECTOR\r\n");
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    EXPECT_EQ(rowOf("good.abc").badBytes, std::nullopt) << "nobody has looked yet";
    ASSERT_EQ(copy({"--grade", "good"}), 0) << err.str();
    EXPECT_EQ(rowOf("good.abc").badBytes, 512);
    EXPECT_EQ(rowOf("good.abc").badRanges, "512+512");
}

TEST_F(ListCopyTest, FilesAreChosenByExtensionAndFolder) {
    ASSERT_EQ(copy({"--ext", "abc", "--below", "sub"}), 0) << err.str();
    EXPECT_TRUE(isThere("sub/bad.abc"));
    EXPECT_FALSE(isThere("good.abc"));
    EXPECT_FALSE(isThere("sub/what.xyz"));
}

TEST_F(ListCopyTest, EachGradeMayHaveItsFolder) {
    ASSERT_EQ(copy({"--by-grade"}), 0) << err.str();
    for (const auto& [grade, name] :
         {std::pair("good", "good.abc"), std::pair("corrupt", "sub/bad.abc"), std::pair("unknown", "sub/what.xyz")})
        EXPECT_TRUE(fs::exists(NativePath((target() / grade).native() + (folder / "source" / name).native()))) << grade;
    EXPECT_EQ(sha256sum(), 0);
}

TEST_F(ListCopyTest, AListAloneIsEnough) {
    fs::remove(folder / "local/1234.sqlite");
    ASSERT_EQ(copy({"--grade", "good"}), 0) << err.str();
    EXPECT_TRUE(isThere("good.abc"));
    EXPECT_EQ(sha256sum(), 0);
}

TEST_F(ListCopyTest, AnotherRunKeepsTheCheckSumsOfTheFirst) {
    ASSERT_EQ(copy({"--grade", "good"}), 0) << err.str();
    ASSERT_EQ(copy({"--grade", "corrupt"}), 0) << err.str();
    EXPECT_EQ(sha256sum(), 0);
    ASSERT_EQ(verify(), 0) << out.str();
    EXPECT_EQ(out.str(), "2 files are as they were, 0 are not\n");
}

TEST_F(ListCopyTest, AFileThatCannotBeCopiedIsToldAndTheOthersAre) {
    const auto way = inTheWay("sub/bad.abc");
    EXPECT_EQ(copy(), 1);
    EXPECT_TRUE(told("sub/bad.abc: target: " + way + ": Is a directory")) << err.str();
    EXPECT_EQ(rowOf("sub/bad.abc").copied, 0);
    EXPECT_TRUE(isThere("sub/what.xyz"));
    EXPECT_EQ(sha256sum(), 0) << "it has no check sum";
}

TEST_F(ListCopyTest, WhatFailedIsCopiedLaterAndNothingElse) {
    const auto way = inTheWay("sub/bad.abc");
    ASSERT_EQ(copy(), 1);
    fs::remove(way);
    setTimes(folder / landed("good.abc"), 1, 1);
    ASSERT_EQ(copy({"--failed"}), 0) << err.str();
    EXPECT_EQ(out.str(), "1 files copied, 600 bytes\n");
    EXPECT_EQ(statOf(folder / landed("good.abc")).st_mtim.tv_sec, 1) << "this one was not touched";
    EXPECT_EQ(rowOf("sub/bad.abc").copied, 1);
    EXPECT_EQ(rowOf("sub/bad.abc").copyError, "");
    EXPECT_EQ(verify(), 0) << out.str();
    ASSERT_EQ(copy({"--failed"}), 0);
    EXPECT_EQ(out.str(), "0 files copied, 0 bytes\n");
}

TEST_F(ListCopyTest, ACopyThatHasGoneCountsAsFailed) {
    ASSERT_EQ(copy(), 0) << err.str();
    fs::remove(folder / landed("sub/bad.abc"));
    ASSERT_EQ(copy({"--failed"}), 0);
    EXPECT_EQ(out.str(), "1 files copied, 600 bytes\n");
}

TEST_F(ListCopyTest, WhatStandsThereIsLeftAloneOnlyWithItsBytesAndItsSource) {
    ASSERT_EQ(copy(), 0) << err.str();
    flipBit(folder / landed("good.abc"), 300);
    folder.write("source/sub/what.xyz", std::string(600, 'z'));
    ASSERT_EQ(copy({"--failed"}), 0) << err.str();
    EXPECT_EQ(out.str(), "2 files copied, 1,202 bytes\n") << "neither size nor evidence tells of these";
    EXPECT_EQ(folder.read(landed("good.abc")), "MZ" + std::string(600, 'x'));
    EXPECT_EQ(folder.read(landed("sub/what.xyz")), std::string(600, 'z'));
}

TEST_F(ListCopyTest, ACopyThatNobodyKnewOfIsLeftAloneAndCounted) {
    fs::copy_file(folder / "local/1234.sqlite", folder / "before.sqlite");
    ASSERT_EQ(copy(), 0) << err.str();
    fs::copy_file(folder / "before.sqlite", folder / "local/1234.sqlite", fs::copy_options::overwrite_existing);
    ASSERT_EQ(copy({"--failed"}), 0) << err.str();
    EXPECT_EQ(out.str(), "0 files copied, 0 bytes; 3 were there already\n");
    EXPECT_EQ(rowOf("good.abc").copied, 1);
}

TEST_F(ListCopyTest, WithoutCheckSumsEverythingIsCopiedAgain) {
    ASSERT_EQ(copy(), 0) << err.str();
    fs::remove(target() / "1234.sha256");
    ASSERT_EQ(copy({"--failed"}), 0) << err.str();
    EXPECT_EQ(out.str(), "3 files copied, 1,802 bytes\n");
    EXPECT_EQ(sha256sum(), 0);
}

TEST_F(ListCopyTest, AJobThatGoesOnMakesTheMissingCopiesAlone) {
    const std::vector<std::string> wish = {"--yes", "--quiet", "--target", target().native(), "--verify"};
    const auto way = inTheWay("sub/bad.abc");
    EXPECT_EQ(job(wish), 3) << err.str();
    fs::remove(way);
    for (const char* name : {"good.abc", "sub/what.xyz"}) setTimes(folder / landed(name), 1, 1);
    flipBit(folder / landed("sub/what.xyz"), 300);
    auto again = wish;
    again.push_back("--resume");
    ASSERT_EQ(job(again), 0) << err.str();
    EXPECT_TRUE(isThere("sub/bad.abc"));
    EXPECT_EQ(statOf(folder / landed("good.abc")).st_mtim.tv_sec, 1) << "this one was not touched";
    EXPECT_EQ(folder.read(landed("sub/what.xyz")), std::string(600, 'y')) << "its bytes were others";
    for (const char* name : {"good.abc", "sub/bad.abc", "sub/what.xyz"}) EXPECT_EQ(rowOf(name).copied, 1) << name;
    EXPECT_EQ(sha256sum(), 0);
    EXPECT_EQ(verify(), 0) << out.str();
    EXPECT_EQ(out.str(), "3 files are as they were, 0 are not\n");
}

TEST_F(ListCopyTest, AJobThatGoesOnCopiesAFileAgainWhoseSourceHasChanged) {
    const std::vector<std::string> wish = {"--yes", "--quiet", "--target", target().native(), "--verify"};
    ASSERT_EQ(job(wish), 0) << err.str();
    folder.write("source/sub/what.xyz", std::string(600, 'z'));
    auto again = wish;
    again.push_back("--resume");
    ASSERT_EQ(job(again), 0) << err.str();
    EXPECT_EQ(folder.read(landed("sub/what.xyz")), std::string(600, 'z'));
    EXPECT_EQ(sha256sum(), 0);
}

TEST_F(ListCopyTest, ProvenCopiesSaySoInTheEvidence) {
    ASSERT_EQ(copy({"--verify"}), 0) << err.str();
    EXPECT_EQ(rowOf("good.abc").verified, 1);
    EXPECT_EQ(copy({"--verify", "--no-sync"}), 2) << "what is not on the disk cannot be read from it";
}

TEST_F(ListCopyTest, VerifyFindsWhatIsNotAsItWas) {
    ASSERT_EQ(copy(), 0) << err.str();
    flipBit(folder / landed("good.abc"), 300);
    fs::remove(folder / landed("sub/what.xyz"));
    EXPECT_EQ(verify(), 1);
    EXPECT_NE(out.str().find("differs    " + landed("good.abc").substr(7)), std::string::npos) << out.str();
    EXPECT_NE(out.str().find("missing    " + landed("sub/what.xyz").substr(7)), std::string::npos) << out.str();
    EXPECT_NE(out.str().find("1 files are as they were, 2 are not"), std::string::npos) << out.str();
}

TEST_F(ListCopyTest, WithoutCheckSumsThereIsNothingToVerify) {
    EXPECT_EQ(verify(), 2);
    EXPECT_TRUE(told("1234.sha256")) << err.str();
}

TEST_F(ListCopyTest, TheSourceIsNeverWrittenTo) {
    // The copies of this source would lie where it lies itself, behind a link.
    fs::create_directories((folder / landed("sub")).parent_path().parent_path());
    fs::create_directory_symlink(folder / "source", (folder / landed("sub")).parent_path());
    EXPECT_EQ(copy(), 1);
    EXPECT_TRUE(told("the target folder lies in the source")) << err.str();
    fs::remove(folder / "local/1234.sqlite");
    EXPECT_EQ(copy(), 1) << "a list alone does not name its source";
    EXPECT_TRUE(told("the target folder lies in the source")) << err.str();
    EXPECT_EQ(folder.read("source/good.abc"), "MZ" + std::string(600, 'x'));
}

TEST_F(ListCopyTest, ResultsAreJsonForScripts) {
    inTheWay("sub/bad.abc");
    ASSERT_EQ(copy({"--json"}), 1);
    const auto json = nlohmann::json::parse(out.str());
    EXPECT_EQ(json["copied"], 2);
    EXPECT_EQ(json["failed"], 1);
    EXPECT_EQ(json["errors"].size(), 1U);
    ASSERT_EQ(list({"verify", "1234", "--against", target().native(), "--json"}), 0);
    EXPECT_EQ(nlohmann::json::parse(out.str())["equal"], 2);
}

TEST_F(ListCopyTest, WhatWillNotGoWellIsAskedBeforeTheFirstByte) {
    folder.write("source/what?", "odd");
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    EXPECT_EQ(copy(), 2) << "nobody can be asked";
    EXPECT_TRUE(told("1 names are none that Windows can open: " + landed("what?").substr(7))) << err.str();
    EXPECT_TRUE(told("nothing is copied; --yes goes on")) << err.str();
    EXPECT_FALSE(isThere("good.abc"));
    canAsk = true;
    in.str("n\n");
    EXPECT_EQ(copy(), 1);
    EXPECT_FALSE(isThere("good.abc"));
    in.str("y\n");
    EXPECT_EQ(copy(), 0) << err.str();
    EXPECT_TRUE(isThere("what?"));
    canAsk = false;
    EXPECT_EQ(copy({"--yes"}), 0) << err.str();
}

TEST_F(ListCopyTest, FoldersHaveTheTimesOfTheSource) {
    setTimes(folder / "source/sub", 1'000'000'000, 1'100'000'000);
    setTimes(folder / "source", 1'000'000'000, 1'200'000'000);
    ASSERT_EQ(copy(), 0) << err.str();
    EXPECT_EQ(statOf(folder / landed("sub")).st_mtim.tv_sec, 1'100'000'000);
    EXPECT_EQ(statOf((folder / landed("sub")).parent_path()).st_mtim.tv_sec, 1'200'000'000);
}

TEST_F(ListCopyTest, ABadFileOfAnotherFormatGetsItsExtensionBehindItsName) {
    folder.write("local/Database/qrs.dat", "1,QUILLON-QRS-HEADER,T\r\n");
    folder.write("source/wrong.abc", "QUILLON-QRS-HEADER" + std::string(600, 'q'));
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy({"--right-names"}), 0) << err.str();
    EXPECT_TRUE(isThere("wrong.abc.qrs"));
    EXPECT_FALSE(isThere("wrong.abc"));
    EXPECT_TRUE(isThere("good.abc"));
    const auto manifest = folder.read("target/1234.sha256");
    EXPECT_NE(manifest.find("# " + (folder / "source/wrong.abc").native() + " -> "), std::string::npos) << manifest;
    EXPECT_EQ(sha256sum(), 0);
}

TEST_F(ListCopyTest, AFileWithoutAnExtensionGetsTheOneThatItsHeadProves) {
    folder.write("local/Database/qrs.dat", "1,QUILLON-QRS-HEADER,T\r\n");
    folder.write("source/plain", "QUILLON-QRS-HEADER" + std::string(600, 'q'));
    folder.write("source/riddle", std::string(600, 'r'));
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy({"--right-names"}), 0) << err.str();
    EXPECT_TRUE(isThere("plain.qrs"));
    EXPECT_FALSE(isThere("plain"));
    EXPECT_TRUE(isThere("riddle")) << "its head proves nothing";
    EXPECT_TRUE(isThere("good.abc"));
    EXPECT_EQ(sha256sum(), 0);
    ASSERT_EQ(copy({"--right-names", "--failed"}), 0) << err.str();
    EXPECT_EQ(out.str(), "0 files copied, 0 bytes\n");
    const auto manifest = folder.read("target/1234.sha256");
    EXPECT_NE(manifest.find("# " + (folder / "source/plain").native() + " -> "), std::string::npos) << manifest;
}

TEST_F(ListCopyTest, AHeadThatTwoExtensionsHaveProvesNeither) {
    folder.write("local/Database/qrs.dat", "1,QUILLON-QRS-HEADER,T\r\n");
    folder.write("local/Database/qrt.dat", "1,QUILLON-QRS-HEADER,T\r\n");
    folder.write("source/plain", "QUILLON-QRS-HEADER" + std::string(600, 'q'));
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy({"--right-names"}), 0) << err.str();
    EXPECT_TRUE(isThere("plain"));
}

TEST_F(ListCopyTest, ACommonHeaderTellsWhichOfTwoItIs) {
    for (const char* name : {"qrs", "qrt"})
        folder.write("local/Database/" + std::string(name) + ".dat", "1,QUILLON-QRS-HEADER,T\r\n");
    folder.write("local/Settings/CommonHeaders.dat", "1,QUILLON-QRS,T,QRS picture\r\n1,MZ,T,Program (abc)\r\n");
    folder.write("source/plain", "QUILLON-QRS-HEADER" + std::string(600, 'q'));
    folder.write("source/program", "MZ" + std::string(600, 'm'));
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    ASSERT_EQ(copy({"--right-names"}), 0) << err.str();
    EXPECT_TRUE(isThere("plain.qrs"));
    EXPECT_TRUE(isThere("program.abc")) << "its terms are too short to be found without the common header";
    EXPECT_TRUE(isThere("good.abc"));
}

TEST_F(ListCopyTest, AListAloneIsEnoughForRightNames) {
    folder.write("local/Database/qrs.dat", "1,QUILLON-QRS-HEADER,T\r\n");
    folder.write("source/wrong.abc", "QUILLON-QRS-HEADER" + std::string(600, 'q'));
    ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    fs::remove(folder / "local/1234.sqlite");
    ASSERT_EQ(copy({"--right-names"}), 0) << err.str();
    EXPECT_TRUE(isThere("wrong.abc.qrs"));
    EXPECT_TRUE(isThere("sub/bad.abc"));
}

TEST_F(ListCopyTest, SalvagedFilesStandAmongTheDamagedAlone) {
    FailingFiles disk;
    int reads = 0;
    disk.ahead("read", [&] {
        // The command reads its settings first; the folder is there when it comes to the file.
        if (fs::exists((folder / landed("good.abc")).parent_path()) && ++reads <= 2)
            disk.failAt(1, {EIO}, "read");
    });
    EXPECT_EQ(copy({"--salvage", "--grade", "good"}), 1) << err.str();
    EXPECT_EQ(folder.read(landed("good.abc")), std::string(602, '\0'));
    EXPECT_NE(folder.read("target/1234-damaged.sha256").find("good.abc"), std::string::npos);
    EXPECT_FALSE(fs::exists(folder / "target/1234.sha256")) << "it is not whole";
    EXPECT_EQ(folder.read("local/1234.gaps.csv"),
              "path,offset,length\r\n\"" + landed("good.abc").substr(7) + "\",0,602\r\n");
    EXPECT_EQ(rowOf("good.abc").badBytes, 602);
    EXPECT_EQ(rowOf("good.abc").badRanges, "0+602");
    ASSERT_EQ(copy({"--grade", "good"}), 0) << "the next time the disk gives it";
    EXPECT_EQ(sha256sum(), 0);
    EXPECT_FALSE(fs::exists(folder / "target/1234-damaged.sha256"));
    EXPECT_FALSE(fs::exists(folder / "local/1234.gaps.csv"));
}

TEST_F(ListCopyTest, AJobThatVerifiesLeavesCheckSums) {
    ASSERT_EQ(job({"--yes", "--quiet", "--target", target().native(), "--verify", "--copy-grades", "good"}), 0)
        << err.str();
    EXPECT_EQ(sha256sum(), 0);
    EXPECT_EQ(rowOf("good.abc").verified, 1);
    EXPECT_FALSE(isThere("sub/bad.abc"));
    ASSERT_EQ(verify(), 0) << err.str();
    EXPECT_EQ(out.str(), "1 files are as they were, 0 are not\n");
}

TEST_F(ListCopyTest, NamesOfAnyBytesAgreeWithSha256sum) {
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/')
            folder.write(
                "source/odd/" + std::string(1, static_cast<char>(byte)) + "x" + std::string(1, static_cast<char>(byte)),
                std::to_string(byte));
    }
    ASSERT_EQ(job({"--yes", "--quiet", "--no-skip-list"}), 0) << err.str();
    ASSERT_EQ(copy({"--yes"}), 0) << err.str();
    EXPECT_EQ(sha256sum(), 0);
    EXPECT_EQ(verify(), 0) << out.str();
    EXPECT_EQ(out.str(), "257 files are as they were, 0 are not\n");
}

}  // namespace
}  // namespace quillon::test
