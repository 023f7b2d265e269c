// SPDX-License-Identifier: MIT
#include "programs/job_command.h"

#include <algorithm>
#include <fstream>
#include <regex>

#include "job/job_end.h"
#include "platform/folder_lock.h"
#include "programs/command_fixture.h"
#include "programs/job_options.h"
#include "support/list_bytes.h"
#include "support/posix_files.h"
#include "text/list_text.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

using JobCommandTest = CommandFixture;

// --- usage ---

TEST_F(JobCommandTest, WrongUsageIsStatus2AndALineThatSaysHow) {
    const std::string source = (folder / "source").native();
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"--job", "1"},
        {"--source", source},
        {"--job", "1", "--source", source, "--nonsense"},
        {"--job", "", "--source", source},
        {"--job", "a/b", "--source", source},
        {"--job", " 1", "--source", source},
        {"--job", std::string(252, 'x'), "--source", source},
        {"--job", "1", "--source", (folder / "missing").native()},
        {"--job", "1", "--source", ""},
        {"--job", "1", "--source", source, "--app", (folder / "missing").native()},
        {"--job", "1", "--source", source, "--hang-limit", "0"},
        {"--job", "1", "--source", source, "--hang-limit", "5s"},
        {"--job", "1", "--source", source, "--threads", "-1"},
        {"--job", "1", "--source", source, "stray"}};
    for (const auto& arguments : wrong) {
        EXPECT_EQ(command(arguments), 2);
        EXPECT_TRUE(told("usage: quillon-job --job ID --source DIR")) << err.str();
        EXPECT_EQ(err.str().find('\n'), err.str().size() - 1) << err.str();
        EXPECT_EQ(out.str(), "");
    }
}

TEST_F(JobCommandTest, AnEmptyValueIsRefused) {
    for (const auto& option : jobCommandOptions()) {
        if (*option.value == '\0')
            continue;
        std::vector<std::string> arguments = {"--job", "1", "--source", (folder / "source").native()};
        for (std::size_t i = 0; i < arguments.size(); i += 2) {
            if (arguments[i] == option.name)
                arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(i),
                                arguments.begin() + static_cast<std::ptrdiff_t>(i) + 2);
        }
        arguments.insert(arguments.end(), {option.name, ""});
        EXPECT_EQ(command(arguments), 2) << option.name;
        EXPECT_TRUE(told(std::string("quillon-job: ") + option.name + ": needs a value that is not empty"))
            << err.str();
        arguments.pop_back();
        arguments.back() += "=";
        EXPECT_EQ(command(arguments), 2) << option.name;
    }
}

// It would be a folder "--yes", and nobody asked before it is used.
TEST_F(JobCommandTest, AnOptionIsNoValueOfTheOneBeforeIt) {
    const std::vector<std::string> job = {"--job", "1", "--source", (folder / "source").native()};
    const std::vector<std::string> lacking[] = {
        {"--target=", "--yes"}, {"--target", "--yes", "--quiet"}, {"--target", "--app=elsewhere"}, {"--target", "-h"}};
    for (const auto& words : lacking) {
        std::vector<std::string> arguments = job;
        arguments.insert(arguments.end(), words.begin(), words.end());
        EXPECT_EQ(command(arguments), 2) << words.back();
        EXPECT_TRUE(told("quillon-job: --target: needs a value")) << err.str();
    }
    EXPECT_FALSE(fs::exists("--yes"));
}

// Manual and completion have each option that the parser knows, and the manual each status.
TEST_F(JobCommandTest, ManualAndCompletionHaveEveryOptionAndStatus) {
    const auto whole = [](const char* name) {
        std::ifstream file(fs::path(QUILLON_PROJECT) / name);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const std::string manual = whole("docs/man/quillon-job.1");
    const std::string bash = whole("data/completion/quillon-job");
    const std::string zsh = whole("data/completion/_quillon-job");
    const std::string fish = whole("data/completion/quillon-job.fish");
    for (const auto& option : jobCommandOptions()) {
        const std::string name = option.name;
        const std::string word = "Fl " + name.substr(1) + (*option.value == '\0' ? "\n" : " Ar ");
        EXPECT_NE(manual.find(".It " + word), std::string::npos) << name;
        EXPECT_NE(manual.substr(0, manual.find(".It ")).find(word), std::string::npos) << name << " in the synopsis";
        EXPECT_TRUE(std::regex_search(bash, std::regex(name + "[ \"]"))) << name;
        EXPECT_NE(zsh.find("'" + name + "["), std::string::npos) << name;
        EXPECT_NE(fish.find(" -l " + name.substr(2) + " "), std::string::npos) << name;
    }
    for (const auto& row : kExitStatuses)
        EXPECT_NE(manual.find("\n.It " + std::to_string(row.status) + "\n"), std::string::npos) << row.status;
}

TEST_F(JobCommandTest, WrongFoldersAreToldApart) {
    const std::string file = folder.write("file", "x").native();
    const std::string missing = (folder / "missing").native();
    const std::string source = (folder / "source").native();
    EXPECT_EQ(command({"--job", "1", "--source", file}), 2);
    EXPECT_TRUE(told("--source \"" + file + "\" is not a folder")) << err.str();
    EXPECT_EQ(command({"--job", "1", "--source", missing}), 2);
    EXPECT_TRUE(told("--source \"" + missing + "\" does not exist")) << err.str();
    EXPECT_EQ(command({"--job", "1", "--source", source, "--target", file}), 2);
    EXPECT_TRUE(told("--target \"" + file + "\" is not a folder")) << err.str();
    EXPECT_EQ(command({"--job", "1", "--source", source, "--app", missing}), 2);
    EXPECT_TRUE(told("--app \"" + missing + "\" does not exist")) << err.str();
}

TEST_F(JobCommandTest, HelpAndVersionGoToStandardOutput) {
    EXPECT_EQ(command({"--help"}), 0);
    EXPECT_NE(out.str().find("Usage: quillon-job --job ID --source DIR [OPTIONS]\n"), std::string::npos) << out.str();
    EXPECT_NE(out.str().find("130  stopped\n"), std::string::npos) << "the statuses are told";
    for (const auto& option : jobCommandOptions()) {
        EXPECT_NE(out.str().find(option.name), std::string::npos) << option.name;
        EXPECT_NE(out.str().find(option.value), std::string::npos) << option.name;
    }
    EXPECT_EQ(command({"--version"}), 0);
    EXPECT_EQ(out.str().substr(0, 12), "quillon-job ");
}

// --- the installation ---

TEST_F(JobCommandTest, AFirstRunWithoutADatabaseEndsWithoutAList) {
    EXPECT_EQ(job(), 1);
    EXPECT_TRUE(told("quillon-job: cannot set up " + (folder / "app").native()));
    EXPECT_FALSE(fs::exists(folder / "app/settings.dat")) << "the next start is a first run again";
}

TEST_F(JobCommandTest, AnEmptySettingsFileIsTold) {
    folder.write("app/settings.dat", "");
    EXPECT_EQ(job(), 1);
    EXPECT_TRUE(told("is empty: set the installation up first"));
}

TEST_F(JobCommandTest, FoldersThatCannotBeMadeAreNamed) {
    install();
    Installation installation(folder / "app");
    ASSERT_TRUE(installation.loadSettingsRecord());
    installation.settings.useSharedDb = 1;
    installation.settings.sharedPath.assign(PageText{"/proc/share"});
    installation.settings.zipPath.assign(PageText{});
    ASSERT_TRUE(installation.saveSettingsRecord());
    EXPECT_EQ(job(), 1);
    EXPECT_EQ(err.str(),
              "quillon-job: the folders of the installation are not whole and cannot be created: "
              "(a path that is not set) /proc/share /proc/share/Database\n");
}

// --- results ---

TEST_F(JobCommandTest, ACompleteJobPrintsReportAndPathAndIsStatus0) {
    install();
    folder.write("source/good.abc", "MZ" + std::string(600, '.'));
    folder.write("source/bad.abc", std::string(600, '.'));
    EXPECT_EQ(job(), 0) << err.str();
    const std::string report = out.str();
    EXPECT_EQ(report.substr(0, 38), "File list complete for job ID : 1234 o");
    EXPECT_NE(
        report.find("Total Files : 2 (Quality : 50.00%)\nGood Files : 1\n\nPlease note the following messages\n"
                    "----------------------------------\nCorrupt Files : 1\n----------------------------------\n" +
                    (folder / "local/1234.csv").native() + "\n"),
        std::string::npos)
        << report;
    for (const char* row : {"Starting Folder tests ", "Folder tests completed in (HH:MM:SS) : ", "Start file count ",
                            "File count completed in (HH:MM:SS) : ", "Start file quality testing ",
                            "File testing completed in (HH:MM:SS) : "})
        EXPECT_TRUE(told(row)) << row;
}

TEST_F(JobCommandTest, QuietPrintsNoLogRows) {
    install();
    EXPECT_EQ(job({"--quiet"}), 0);
    EXPECT_EQ(err.str(), "");
    EXPECT_NE(out.str(), "");
}

TEST_F(JobCommandTest, TheRowsAreTheRegularFilesOfTheTreeUnderTheirTrueNames) {
    install();
    std::vector<std::string> expected;
    for (const char* name : {"a,b", "gr>eater", "new\nline", "cr\r", "back\\slash", "\xFF\xC3", " lead", "-dash",
                             "d/e/f", "\xC3\xA4.abc", "tab\t.abc"})
        expected.push_back(folder.write(std::string("source/") + name, "x").native());
    fs::create_symlink("a,b", folder / "source/link");
    makeFifo(folder / "source/fifo.abc");
    EXPECT_EQ(job({"--no-test"}), 0);
    const std::u16string text = utf16Text(folder.read("local/1234.csv"));
    std::vector<std::string> listed;
    for (std::size_t start = 0, end = 0; (end = text.find(u"\r\n", start)) != text.npos; start = end + 2)
        listed.push_back(toNative(std::u16string_view(text).substr(start, text.find(u',', start) - start)));
    std::sort(expected.begin(), expected.end());
    std::sort(listed.begin(), listed.end());
    EXPECT_EQ(listed, expected);
}

TEST_F(JobCommandTest, OptionsSwitchTestingSkipListAndCommonHeadersOff) {
    install();
    folder.write("local/Settings/SkipList.dat", "skipme\r\n");
    folder.write("local/Settings/CommonHeaders.dat", "0,PK,T,Zip\r\n");
    folder.write("source/skipme.txt", "x");
    folder.write("source/a.zzz", "PK" + std::string(600, '.'));
    const auto counter = [this](const std::vector<std::string>& more, const char* name) {
        std::vector<std::string> arguments = {"--json", "--yes"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_EQ(job(arguments), 0);
        return nlohmann::json::parse(out.str())["counters"].at(name).get<int>();
    };
    EXPECT_EQ(counter({}, "skipped"), 1);
    EXPECT_EQ(counter({"--no-skip-list"}, "files"), 2);
    EXPECT_EQ(counter({}, "common"), 1);
    EXPECT_EQ(counter({"--no-common-headers"}, "unknown"), 1);
    EXPECT_EQ(counter({"--no-test"}, "rows_read"), 0);
}

TEST_F(JobCommandTest, TheSkipListOfTheShareServesTheFirstJob) {
    install();
    shareDatabase();
    folder.write("share/Database/abc.dat", "1,MZ,T\r\n");
    folder.write("share/Settings/SkipList.dat", "skipme\r\n");
    folder.write("source/skipme.txt", "x");
    EXPECT_EQ(job({"--json"}), 0) << err.str();
    EXPECT_EQ(nlohmann::json::parse(out.str())["counters"].at("skipped"), 1);
}

TEST_F(JobCommandTest, OwnFoldersInTheSourceAreTold) {
    install();
    const std::vector<std::string> around = {
        "--job", "1", "--source", folder.path().native(), "--app", (folder / "app").native()};
    EXPECT_EQ(command(around), 0);
    EXPECT_TRUE(told("quillon-job: " + (folder / "app").native() + " lies in the source, and the job writes to it\n"));
    EXPECT_EQ(job(), 0);
    EXPECT_FALSE(told("lies in the source"));
}

TEST_F(JobCommandTest, FilesAreCopiedAndAFailedCopyIsStatus3) {
    install();
    const auto a = folder.write("source/a.abc", "MZ" + std::string(600, '.'));
    EXPECT_EQ(job({"--target", (folder / "target").native()}), 0) << err.str();
    EXPECT_EQ(folder.read("target" + a.native()), "MZ" + std::string(600, '.'));
    EXPECT_EQ(job({"--yes", "--target", "/"}), 3) << "a target that leads files onto themselves";
    EXPECT_TRUE(told("Error copying : " + a.native()));
    EXPECT_TRUE(told("target: "));
    EXPECT_TRUE(told("quillon-job: 1 files could not be copied"));
    EXPECT_NE(out.str().find("1 : 1 files were unable to be copied.\n"), std::string::npos);
}

TEST_F(JobCommandTest, AResultThatCannotBePrintedIsStatus3) {
    install();
    std::ofstream full("/dev/full");
    ASSERT_TRUE(full);
    const int status =
        runJobCommand({"--job", "1234", "--source", (folder / "source").native(), "--app", (folder / "app").native()},
                      {in, full, err});
    EXPECT_EQ(status, 3);
    EXPECT_TRUE(told("quillon-job: the result could not be written to standard output"));
}

// --- questions ---

TEST_F(JobCommandTest, WithoutATerminalTheCautiousAnswerEndsTheJobWithAReason) {
    install();
    folder.write("local/1234.csv", "old");
    EXPECT_EQ(job(), 1);
    EXPECT_EQ(folder.read("local/1234.csv"), "old");
    EXPECT_TRUE(told("Overwrite file: You are about to overwrite the existing file (" +
                     (folder / "local/1234.csv").native() + "), are you sure you want to do this\n"));
    EXPECT_TRUE(told("quillon-job: the job ended without a list; give --yes to answer Yes to: You are about to"));
    EXPECT_EQ(out.str(), "");
}

TEST_F(JobCommandTest, YesAnswersYes) {
    install();
    folder.write("local/1234.csv", "old");
    EXPECT_EQ(job({"--yes"}), 0);
    EXPECT_NE(folder.read("local/1234.csv"), "old");
}

TEST_F(JobCommandTest, OnATerminalAPersonIsAskedUntilTheAnswerIsOne) {
    install();
    canAsk = true;
    folder.write("local/1234.csv", "old");
    in.str("what\n\nn\n");
    EXPECT_EQ(job(), 1);
    EXPECT_TRUE(told("please type one of the letters"));
    EXPECT_EQ(folder.read("local/1234.csv"), "old");
    in.str("Yes\n");
    EXPECT_EQ(job(), 0);
    folder.write("local/1234.csv", "old");
    in.str("");
    EXPECT_EQ(job(), 1) << "the end of the input is the cautious answer";
}

// --- Ctrl-C ---

TEST_F(JobCommandTest, CtrlCDuringTheWalkIsStatus130AndLeavesNoList) {
    install();
    for (const char* name : {"a", "b", "c"}) folder.write(std::string("source/") + name, "x");
    interrupts = [] { return 1; };
    EXPECT_EQ(job({"--json"}), 130);
    EXPECT_TRUE(told("Process stopped by user"));
    EXPECT_TRUE(told("quillon-job: stopped"));
    EXPECT_FALSE(fs::exists(folder / "local/1234.csv"));
    const auto result = nlohmann::json::parse(out.str());
    EXPECT_EQ(result["end"], "stopped");
    EXPECT_TRUE(result["list"].is_null());
}

TEST_F(JobCommandTest, CtrlCDuringTestingIsStatus130AndTheListIsKeptWithoutAnAnswer) {
    install();
    for (const char* name : {"a", "b", "c"}) folder.write(std::string("source/") + name, "x");
    interrupts = [this] { return fs::exists(folder / "local/1234.csv") ? 1 : 0; };
    EXPECT_EQ(job(), 130);
    EXPECT_TRUE(told("Delete partial file list?: Process stopped, do you want to delete the current file list ?"));
    EXPECT_TRUE(fs::exists(folder / "local/1234.csv"));
}

TEST_F(JobCommandTest, CtrlCDuringTestingStopsAtTheNextRowAndYesDoesNotDeleteTheList) {
    install();
    for (const char* name : {"a", "b", "c"}) folder.write(std::string("source/") + name, "x");
    const NativePath list = folder / "local/1234.csv";
    interrupts = [&list] { return fs::exists(list) && fs::file_size(list) > 0 ? 1 : 0; };
    EXPECT_EQ(job({"--yes", "--json", "--target", (folder / "target").native()}), 130);
    EXPECT_TRUE(told("answered No; --discard-partial answers Yes")) << err.str();
    const std::u16string text = utf16Text(folder.read("local/1234.csv"));
    EXPECT_EQ(std::ranges::count(text, u'\n'), 1);
    EXPECT_EQ(json()["list"], list.native());
    EXPECT_EQ(json()["counters"]["rows_read"], 1);
    EXPECT_EQ(json()["counters"]["copy_errors"], 0) << "nothing is copied behind a stop";
    interrupts = [this, asked = 0]() mutable { return told("Start file quality testing") && ++asked > 1 ? 1 : 0; };
    EXPECT_EQ(job({"--yes", "--json", "--discard-partial"}), 130);
    EXPECT_TRUE(json()["list"].is_null());
    EXPECT_FALSE(fs::exists(list));
}

TEST_F(JobCommandTest, CtrlCAtAQuestionIsTheCautiousAnswerAndStopsTheJob) {
    install();
    canAsk = true;
    folder.write("local/1234.csv", "old");
    bool pressed = false;
    inputWaits = [&pressed](std::chrono::milliseconds) {
        pressed = true;
        return false;
    };
    interrupts = [&pressed] { return pressed ? 1 : 0; };
    EXPECT_EQ(job(), 130) << err.str();
    EXPECT_EQ(folder.read("local/1234.csv"), "old");
}

// --- faults ---

TEST_F(JobCommandTest, ASecondJobInTheSameFolderIsRefusedAsBusy) {
    install();
    auto first = FolderLock::take(folder / "app");
    ASSERT_TRUE(first);
    EXPECT_EQ(job(), 75);
    EXPECT_TRUE(told("Permission Denied: Unable to create the file " + (folder / "app/tFile.csv").native() +
                     " it may be open in another application\n"));
}

TEST_F(JobCommandTest, AFolderThatCannotBeReadIsStatus3) {
    install();
    folder.write("source/closed/file.abc", "x");
    fs::permissions(folder / "source/closed", fs::perms::none);
    for (const char* name : {"app", "local", "local/Settings", "local/Database", "zips", "source"})
        fs::permissions(folder / name, fs::perms::all);
    EXPECT_TRUE(asOrdinaryUser(folder.path(), [this] {
        return job() == 3 && told("Folder access error : " + (folder / "source/closed").native()) &&
               told("quillon-job: 1 folders could not be read to their end") &&
               out.str().find("Folder Errors: 1\n") != std::string::npos;
    }));
}

TEST_F(JobCommandTest, AnUnreadableFileIsAnAccessErrorAndNoLoss) {
    install();
    const auto file = folder.write("source/file.abc", std::string(600, 'x'));
    fs::permissions(file, fs::perms::none);
    for (const char* name : {"app", "local", "local/Settings", "local/Database", "zips", "source"})
        fs::permissions(folder / name, fs::perms::all);
    EXPECT_TRUE(asOrdinaryUser(folder.path(), [this, &file] {
        return job() == 0 && told("Access Error : " + file.native()) &&
               out.str().find("Access Errors : 1\n") != std::string::npos;
    }));
}

}  // namespace

}  // namespace quillon::test
