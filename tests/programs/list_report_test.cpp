// SPDX-License-Identifier: MIT
// The page for the customer as the command writes it.

#include <gmock/gmock.h>

#include "programs/command_fixture.h"
#include "programs/list_command.h"
#include "programs/list_options.h"
#include "testing/grade.h"
#include "testing/reason.h"
#include "text/numbers.h"

namespace quillon::test {

namespace {

using testing::HasSubstr;
using testing::Not;

class ListReportTest : public CommandFixture {
protected:
    void SetUp() override {
        install();
        folder.write("local/Database/wav.dat", "1,RIFF,T\r\n");
        folder.write("source/a.abc", "MZ" + std::string(600, 'x'));
        folder.write("source/sub/b.abc", std::string(600, '\0'));
        folder.write("source/sub/<b>bold.abc", "MZ" + std::string(600, 'x'));
        folder.write("source/sub/c.xyz", std::string(600, 'y'));
        folder.write("source/cut.wav", std::string("RIFF\xFF\xFF\0\0WAVEfmt ", 16) + std::string(600, 'x'));
        ASSERT_EQ(job({"--yes", "--quiet"}), 0) << err.str();
    }

    int list(std::vector<std::string> arguments) {
        out.str("");
        err.str("");
        arguments.insert(arguments.end(), {"--app", (folder / "app").native()});
        return runListCommand(arguments, {out, err, false, false});
    }
    std::string report(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "report");
        arguments.insert(arguments.end(), {"-o", (folder / "report.html").native()});
        EXPECT_EQ(list(arguments), 0) << err.str();
        EXPECT_EQ(out.str(), "");
        return folder.read("report.html");
    }
};

TEST_F(ListReportTest, EveryFigureIsThatOfTheJob) {
    ASSERT_EQ(list({"summary", "1234", "--json"}), 0);
    const auto figures = json();
    const auto page = report({"1234", "--laboratory", "Miller"});
    EXPECT_THAT(page, HasSubstr(percent(figures["quality"].get<double>() / 100) + "</div>"));
    EXPECT_THAT(page, HasSubstr("of the 4 files that could be judged; 1 could not: 1 unknown."));
    for (const auto& row : kGrades.values) {
        const auto files = figures[row.name.value].get<std::int64_t>();
        const auto line = "<td>" + std::string(row.bar.name.value) + "</td><td class=\"r\">" + grouped(files) + "</td>";
        EXPECT_EQ(page.find(line) != page.npos, files > 0) << row.name.value;
    }
    for (const auto& row : kReasons) {
        const auto files = figures[row.name].get<std::int64_t>();
        const auto line = "<td>" + std::string(row.text) + "</td><td class=\"r\">" + grouped(files) + "</td>";
        EXPECT_EQ(page.find(line) != page.npos, files > 0) << row.name;
    }
    EXPECT_EQ(figures["doubtful"], 1);
    EXPECT_THAT(page, HasSubstr("<p>1 file with a good header that speaks against the rest"));
    EXPECT_THAT(page, HasSubstr("<td class=\"n\">cut.wav</td>"));
    EXPECT_THAT(page, HasSubstr("<td class=\"n\">sub</td><td class=\"r\">3</td>"));
    EXPECT_THAT(page, HasSubstr("<td class=\"n\">abc</td><td class=\"r\">3</td>"));
    EXPECT_THAT(page, HasSubstr("Every folder was entered"));
}

TEST_F(ListReportTest, FilesAreNamedWhenAskedFor) {
    EXPECT_THAT(report({"1234"}), Not(HasSubstr("bold.abc")));
    const auto page = report({"1234", "--with-files"});
    for (const char* name : {"a.abc", "b.abc", "&lt;b&gt;bold.abc", "c.xyz", "cut.wav"})
        EXPECT_THAT(page, HasSubstr("<tr><td class=\"n\">" + std::string(name) + "</td>"));
    EXPECT_THAT(page, HasSubstr("<h3 class=\"n\">sub</h3>"));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, Not(HasSubstr("http")));
    EXPECT_TRUE(page.ends_with("</html>\n"));
}

TEST_F(ListReportTest, FilesOfSeveralJobsStandUnderTheirJob) {
    std::filesystem::copy_file(folder / "local/1234.sqlite", folder / "local/1234-b.sqlite");
    const auto page = report({"--case", "1234", "--with-files"});
    EXPECT_THAT(page, Not(HasSubstr("<h2>The files by folder</h2>")));
    const auto first = page.find("<h2 class=\"n\">The files by folder: job 1234</h2>");
    const auto second = page.find("<h2 class=\"n\">The files by folder: job 1234-b</h2>");
    ASSERT_NE(second, page.npos);
    EXPECT_LT(first, second);
    EXPECT_LT(page.find("<h3 class=\"n\">sub</h3>", first), second);
    EXPECT_NE(page.find("<h3 class=\"n\">sub</h3>", second), page.npos);
    EXPECT_THAT(report({"1234", "--with-files"}), HasSubstr("<h2>The files by folder</h2>"));
}

TEST_F(ListReportTest, AListAloneIsReportEnough) {
    std::filesystem::remove(folder / "local/1234.sqlite");
    const auto page = report({"1234"});
    EXPECT_THAT(page, HasSubstr("of the 4 files that could be judged; 1 could not"));
    EXPECT_THAT(page, HasSubstr("Not known: the list of the job alone is kept."));
}

TEST_F(ListReportTest, AReportThatFailsLeavesTheOldOne) {
    folder.write("report.html", "the old one");
    EXPECT_EQ(list({"report", "none", "-o", (folder / "report.html").native()}), kListTrouble);
    EXPECT_EQ(folder.read("report.html"), "the old one");
    EXPECT_EQ(list({"report", "1234", "-o", (folder / "nowhere/report.html").native()}), kListTrouble);
    EXPECT_EQ(list({"report", "1234"}), kListTrouble) << "a file is needed";
}

}  // namespace

}  // namespace quillon::test
