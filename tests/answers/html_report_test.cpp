// SPDX-License-Identifier: MIT
#include "answers/html_report.h"

#include <gmock/gmock.h>

#include "text/numbers.h"

namespace quillon::test {

namespace {

using testing::HasSubstr;
using testing::Not;

HtmlReport sample() {
    HtmlReport report;
    report.laboratory = "Miller & Sons";
    report.written = "22/11/2026 10:00:00";
    report.jobs = {{"1234", "/mnt/disk", "21/11/2026 09:00:00", true}};
    report.total.files = 53'603;
    report.total.bytes = 1;
    report.total.grades[Grade::Good] = 40'379;
    report.total.grades[Grade::Corrupt] = 824;
    report.total.grades[Grade::Unknown] = 9'000;
    report.total.grades[Grade::AccessError] = 3'400;
    report.total.reasons[static_cast<std::size_t>(Reason::ZeroFilled)] = 824;
    report.folders.rows = {{"", report.total}, {"photos", report.total}};
    report.extensions.rows = {{"", report.total}, {"jpg", report.total}};
    return report;
}

std::size_t times(const std::string& text, std::string_view what) {
    std::size_t found = 0;
    for (auto at = text.find(what); at != text.npos; at = text.find(what, at + what.size())) ++found;
    return found;
}

TEST(HtmlReportTest, UnreadSectorsStandBesideTheQualityAndByFile) {
    HtmlReport report = sample();
    EXPECT_THAT(reportBegin(report), Not(HasSubstr("as far as known")));
    countSectors(report.total, Grade::Good, 43'016, 12, 188 * 1024);
    EvidenceRow file;
    file.name = "hurt.jpg";
    file.badBytes = 1024;
    note(report, file);
    const auto page = reportBegin(report);
    EXPECT_THAT(page, HasSubstr("are good and whole as far as known: 12 files of 43,016 hold unread sectors, 188.0 Kb "
                                "in all.</p>"));
    EXPECT_THAT(page, HasSubstr("<p>Files that hold sectors that could not be read: 1.</p>"));
    EXPECT_THAT(page, HasSubstr("hurt.jpg</td><td class=\"n\">1,024 bytes lie in sectors that could not be read"));
}

TEST(HtmlReportTest, TheQualityNeverStandsWithoutItsBase) {
    const auto page = reportBegin(sample());
    EXPECT_THAT(page,
                HasSubstr("<div class=\"value\">98.00%</div>\n<p class=\"base\">of the 41,203 files that could be "
                          "judged; 12,400 could not: 9,000 unknown, 3,400 unreadable.</p>"));
    HtmlReport none;
    none.total.files = 2;
    none.total.grades[Grade::Unknown] = 2;
    EXPECT_THAT(reportBegin(none),
                HasSubstr("&ndash;</div>\n<p class=\"base\">No file could be judged: 2 unknown.</p>"));
    HtmlReport good;
    good.total.files = 1;
    good.total.grades[Grade::Good] = 1;
    EXPECT_THAT(reportBegin(good), HasSubstr("of the 1 file that could be judged; there are no others."));
    EXPECT_THAT(reportBegin(HtmlReport()), HasSubstr("No file could be judged: there is none."));
}

TEST(HtmlReportTest, ThePageNamesLaboratoryJobDateAndSource) {
    const auto page = reportBegin(sample());
    for (const char* text : {"Miller &amp; Sons", ">1234<", ">/mnt/disk<", ">21/11/2026 09:00:00<",
                             ">22/11/2026 10:00:00<", "A good header is no proof of a whole file."})
        EXPECT_THAT(page, HasSubstr(text));
    HtmlReport stopped = sample();
    stopped.jobs.front().whole = false;
    EXPECT_THAT(reportBegin(stopped), HasSubstr("did not come to its end"));
    EXPECT_THAT(page, Not(HasSubstr("did not come to its end")));
}

TEST(HtmlReportTest, ThePageAsksForNothingElse) {
    HtmlReport report = sample();
    report.withFiles = true;
    ReportedFiles files;
    EvidenceRow file;
    file.name = "a.jpg";
    std::string page = reportBegin(report);
    page += files.add(file);
    page += files.end() + reportEnd();
    for (const char* text : {"<script", "http", "src=", "href=", "@import", "url(\"", "url('", "//"})
        EXPECT_THAT(page, Not(HasSubstr(text)));
    EXPECT_EQ(times(page, "url("), times(page, "url(#g-")) << "patterns of the page itself";
    for (const char* tag :
         {"html", "head", "body", "style", "section", "table", "tbody", "tr", "td", "th", "svg", "p", "dl"})
        EXPECT_EQ(times(page, "<" + std::string(tag) + ">") + times(page, "<" + std::string(tag) + " "),
                  times(page, "</" + std::string(tag) + ">"))
            << tag;
}

TEST(HtmlReportTest, EveryGradeHasALetterAPatternAndAMeaning) {
    HtmlReport report;
    for (auto& files : report.total.grades.values) files = 10;
    report.total.notTested = 10;
    report.total.files = 10 * static_cast<std::int64_t>(kGradeCount + 1);
    const auto page = reportBegin(report);
    for (const auto& row : kGrades.values) {
        const auto pattern = "g-" + std::string(row.name.value);
        EXPECT_EQ(times(page, "id=\"" + pattern + "\""), 1U);
        EXPECT_EQ(times(page, "url(#" + pattern + ")"), 2U) << "in the bar and beside its meaning";
        EXPECT_THAT(page, HasSubstr("<td>" + std::string(row.bar.name.value) + "</td><td class=\"r\">10</td>"));
    }
    for (const char letter : std::string_view("GHCUNEAIZST"))
        EXPECT_EQ(times(page, std::string("\">") + letter + "</text>"), 2U) << letter;
}

TEST(HtmlReportTest, ReasonsStandWithTheirConclusions) {
    const auto page = reportBegin(sample());
    const ReasonRow& zeros = reasonRow(Reason::ZeroFilled);
    EXPECT_THAT(page, HasSubstr("<td>" + std::string(zeros.text) + "</td><td class=\"r\">824</td><td>" +
                                std::string(zeros.conclusion) + "</td>"));
    EXPECT_THAT(page, Not(HasSubstr(reasonRow(Reason::Noise).conclusion)));
}

TEST(HtmlReportTest, WhatAListAloneDoesNotHoldIsSaidToBeUnknown) {
    HtmlReport report = sample();
    report.total.reasons = {};
    EXPECT_THAT(reportBegin(report), HasSubstr("There is no such file."));
    report.knowsAll = false;
    EXPECT_EQ(times(reportBegin(report), "Not known: the list of the job alone is kept."), 2U);
    EXPECT_THAT(reportBegin(report), HasSubstr("What else could not be read is not known."));
}

TEST(HtmlReportTest, HostileNamesStayText) {
    const std::string hostile =
        "<script>alert('1')</script>&\"\n\x1b[31m\xE2\x80\xAE"
        "fdp.exe\xFF";
    HtmlReport report = sample();
    report.laboratory = hostile;
    report.jobs = {{hostile, hostile, hostile, true}};
    report.folders.rows = {{hostile, report.total}};
    report.extensions.rows = {{hostile, report.total}};
    report.unreadFolders.add(hostile, hostile);
    EvidenceRow file;
    file.folder = hostile;
    file.name = hostile;
    file.grade = Grade::Good;
    file.doubt = hostile;
    file.doubtDetail = hostile;
    file.unread = 512;
    note(report, file);
    ReportedFiles files;
    std::string page = reportBegin(report) + files.add(file);
    file.grade = Grade::Corrupt;
    file.reason = Reason::Shifted;
    file.detail = hostile;
    page += files.add(file);
    file.reason.reset();
    file.doubt.clear();
    file.result = hostile;
    page += files.add(file);
    page += files.end() + reportEnd();
    for (const char* raw : {"<script", "\x1b", "\xE2\x80\xAE", "\xFF", "&\"", "'1'"})
        EXPECT_THAT(page, Not(HasSubstr(raw)));
    EXPECT_THAT(page, HasSubstr("&lt;script&gt;alert(&#39;1&#39;)&lt;/script&gt;&amp;&quot;"));
    EXPECT_THAT(page, HasSubstr("&lt;U+202E&gt;fdp.exe"));
}

TEST(HtmlReportTest, FilesStandUnderTheirFolder) {
    ReportedFiles files;
    EvidenceRow file;
    file.name = "a.jpg";
    file.grade = Grade::Corrupt;
    file.reason = Reason::Shifted;
    file.detail = "by 16 bytes";
    std::string page = files.add(file);
    EXPECT_THAT(page, HasSubstr(">(in the source itself)</h3>"));
    EXPECT_THAT(page,
                HasSubstr("<span class=\"k\">C</span>Corrupt</td><td class=\"n\">its own header, at another position: "
                          "by 16 bytes</td>"));
    EXPECT_EQ(times(files.add(file), "<h3"), 0U) << "one heading for one folder";
    file.folder = "photos";
    page = files.add(file);
    EXPECT_THAT(page, testing::StartsWith("</tbody></table>\n<h3 class=\"n\">photos</h3>"));
    EXPECT_EQ(files.end(), "</tbody></table>\n");
    EXPECT_EQ(files.end(), "");
}

TEST(HtmlReportTest, ManyUnreadFilesAreCountedAndTheFirstOnesNamed) {
    HtmlReport report = sample();
    EvidenceRow file;
    file.grade = Grade::AccessError;
    const auto many = static_cast<std::int64_t>(kNamedPaths) + 1000;
    for (std::int64_t i = 0; i < many; ++i) {
        file.name = "lost" + std::to_string(i);
        note(report, file);
    }
    const auto page = reportBegin(report);
    EXPECT_THAT(page, HasSubstr("or not all of it: " + grouped(many) + "."));
    EXPECT_EQ(times(page, ">lost"), kNamedPaths);
    EXPECT_THAT(page, HasSubstr("and 1,000 more."));
}

}  // namespace

}  // namespace quillon::test
