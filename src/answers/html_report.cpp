// SPDX-License-Identifier: MIT
#include "answers/html_report.h"

#include <algorithm>

#include <fmt/format.h>

#include "answers/html_report_style.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// One part of a bar, and one line of the table that explains it.
struct Part {
    const char* name;   ///< of its pattern
    const char* title;  ///< for people
    char letter;
    const char* among;
    const char* meaning;
    const char* counts;  ///< as what it counts
    bool isJudged;
    std::int64_t files;
};

const char* countsAs(Quality quality) {
    switch (quality) {
        case Quality::Recovered:
            return "as recovered";
        case Quality::Lost:
            return "as lost";
        case Quality::NotJudged:
            return "not judged";
    }
    return "";
}

// The grades that have files, in the order of the score board.
std::vector<Part> partsOf(const Figures& figures) {
    std::vector<Part> parts;
    for (const auto& sign : kGradeSigns) {
        const GradeRow& row = kGrades[sign.grade];
        if (const auto files = figures.grades[sign.grade]; files > 0)
            parts.push_back({row.name, row.bar.name, sign.letter, sign.among, sign.meaning, countsAs(row.quality),
                             row.quality.value != Quality::NotJudged, files});
    }
    if (figures.notTested > 0)
        parts.push_back({kNotTestedName, "Not tested", kNotTestedLetter, "not tested",
                         "The job did not come to test the file.", countsAs(Quality::NotJudged), false,
                         figures.notTested});
    return parts;
}

std::string sizeOf(std::int64_t bytes) {
    return sizeText(static_cast<std::uint64_t>(std::max<std::int64_t>(0, bytes)));
}

std::string filesText(std::int64_t files) {
    return grouped(files) + (files == 1 ? " file" : " files");
}

enum class Letters { None, WhereThereIsRoom };

// Each part as wide as its share of all files.
std::string bar(const Figures& figures, Letters letters) {
    constexpr double kRoomForALetter = 3;  // per cent
    std::string rects;
    std::string label;
    double from = 0;
    for (const auto& part : partsOf(figures)) {
        const double width = 100.0 * static_cast<double>(part.files) / static_cast<double>(figures.files);
        rects += fmt::format(R"svg(<rect x="{:.3f}%" width="{:.3f}%" height="100%" fill="url(#g-{})"/>)svg", from,
                             width, part.name);
        if (letters == Letters::WhereThereIsRoom && width >= kRoomForALetter)
            rects += fmt::format(R"(<text x="{:.3f}%" y="50%">{}</text>)", from + width / 2, part.letter);
        label += fmt::format("{}{}: {}", label.empty() ? "" : ", ", part.title, grouped(part.files));
        from += width;
    }
    return fmt::format(R"(<svg class="bar" role="img" aria-label="{}">{}</svg>)", label, rects);
}

// "98.00% of the 41,203 files that could be judged; 12,400 could not: 9,000 unknown, 3,400 unreadable"
std::string baseText(const Figures& figures) {
    const auto base = judged(figures);
    const auto others = figures.files - base;
    std::string text =
        base > 0 ? fmt::format("of the {} that could be judged", filesText(base)) : "No file could be judged";
    if (others == 0)
        return text + (base > 0 ? "; there are no others." : ": there is none.");
    text += base > 0 ? fmt::format("; {} could not: ", grouped(others)) : ": ";
    std::string separator;
    for (const auto& part : partsOf(figures)) {
        if (part.isJudged)
            continue;
        text += separator + grouped(part.files) + " " + part.among;
        separator = ", ";
    }
    return text + ".";
}

// The second figure, where whole files were looked at.
std::string wholePart(const Figures& figures) {
    const auto whole = wholeQuality(figures);
    return whole ? fmt::format("<p class=\"base\"><b>{}</b> are good and whole as far as known: {}.</p>\n",
                               percent(*whole), unreadSectorsText(figures))
                 : std::string();
}

std::string qualityPart(const Figures& figures) {
    const auto value = quality(figures);
    return fmt::format(
        "<section class=\"quality\"><h2>Recovery quality</h2>\n<div class=\"value\">{}</div>\n<p class=\"base\">{}</p>\n"
        "{}{}</section>\n",
        value ? percent(*value) : "&ndash;", baseText(figures), wholePart(figures),
        bar(figures, Letters::WhereThereIsRoom));
}

void addTerm(std::string& text, std::string_view term, std::string_view html) {
    text += fmt::format("<dt>{}</dt><dd class=\"n\">{}</dd>\n", term, html);
}

// The same with room above it.
void addTermApart(std::string& text, std::string_view term, std::string_view html) {
    text += fmt::format("<dt class=\"apart\">{}</dt><dd class=\"n apart\">{}</dd>\n", term, html);
}

std::string headPart(const HtmlReport& report) {
    const bool one = report.jobs.size() == 1;
    std::string text = "<header><h1>Recovery report</h1>\n";
    if (!report.laboratory.empty())
        text += fmt::format("<p class=\"n\">{}</p>\n", htmlText(report.laboratory));
    text += "</header>\n<dl>\n";
    for (const auto& job : report.jobs) {
        (&job == report.jobs.data() ? addTerm : addTermApart)(text, "Job", htmlText(job.id));
        addTerm(text, "Source", job.source.empty() ? "not known" : htmlText(job.source));
        addTerm(text, "Tested", job.started.empty() ? "date not known" : htmlText(job.started));
        if (!job.whole)
            addTerm(text, "Note", "This job did not come to its end: files behind that point are not in this report.");
    }
    (one ? addTerm : addTermApart)(text, "Written", htmlText(report.written));
    addTerm(text, one ? "Files" : "Files of all jobs",
            fmt::format("{} ({})", grouped(report.total.files), sizeOf(report.total.bytes)));
    return text + "</dl>\n";
}

std::string gradesPart(const Figures& figures) {
    std::string text =
        "<section><h2>What the grades mean</h2>\n<table class=\"grades\"><thead><tr><th></th><th>Grade</th><th class=\"r\">Files</th>"
        "<th>Counts</th><th>Meaning</th></tr></thead><tbody>\n";
    for (const auto& part : partsOf(figures))
        text += fmt::format(
            "<tr><td><svg class=\"key\" aria-hidden=\"true\"><rect width=\"100%\" height=\"100%\" fill=\"url(#g-{})\"/>"
            "<text x=\"50%\" y=\"50%\">{}</text></svg></td><td>{}</td><td class=\"r\">{}</td><td>{}</td><td>{}</td></tr>\n",
            part.name, part.letter, part.title, grouped(part.files), part.counts, part.meaning);
    return text +
           "</tbody></table>\n<p class=\"soft\">Quality: the files that count as recovered, of those that count as "
           "recovered or as lost.</p></section>\n";
}

constexpr const char* kProof =
    "<section class=\"proof\"><p><b>A good header is no proof of a whole file.</b> The test looks at the first 512 bytes "
    "of each file, its header. A file whose header is good can still be damaged further on, or cut short. Open the "
    "files that matter most before the original medium is given away.</p></section>\n";

std::string tableRow(const std::string& name, const Figures& figures, bool isWhole) {
    const auto value = quality(figures);
    return fmt::format(
        "<tr{}><td class=\"n\">{}</td><td class=\"r\">{}</td><td class=\"r\">{}</td><td class=\"r\">{}</td>"
        "<td class=\"r\">{}</td><td class=\"r\">{}</td><td class=\"r\">{}</td><td>{}</td></tr>\n",
        isWhole ? " class=\"whole\"" : "", name, grouped(figures.files), sizeOf(figures.bytes),
        grouped(countOf(figures, Quality::Recovered)), grouped(countOf(figures, Quality::Lost)),
        grouped(figures.files - judged(figures)), value ? percent(*value) : "&ndash;", bar(figures, Letters::None));
}

struct TableWords {
    const char* title;
    const char* column;
    const char* unnamed;  ///< the row without a name
    const char* others;
    bool unnamedIsWhole;
};
constexpr TableWords kFolderWords{"Folders", "Folder", "(all of the source)", "smaller folders are not shown.", true};
constexpr TableWords kExtensionWords{"Kinds of files", "Extension", "(none)", "rarer extensions are not shown.", false};

std::string tablePart(const TableWords& words, const ReportTable& table) {
    std::string text = fmt::format(
        "<section><h2>{}</h2>\n<table class=\"figures\"><thead><tr><th>{}</th><th class=\"r\">Files</th><th class=\"r\">Size</th>"
        "<th class=\"r\">Recovered</th><th class=\"r\">Lost</th><th class=\"r\">Not judged</th>"
        "<th class=\"r\">Quality</th><th>Grades</th></tr></thead><tbody>\n",
        words.title, words.column);
    for (const auto& [name, figures] : table.rows)
        text += tableRow(name.empty() ? words.unnamed : htmlText(name), figures, name.empty() && words.unnamedIsWhole);
    text += "</tbody></table>\n";
    if (table.others > 0)
        text += fmt::format("<p class=\"soft\">{} {}</p>\n", grouped(static_cast<std::int64_t>(table.others)),
                            words.others);
    return text + "</section>\n";
}

std::string reasonsPart(const HtmlReport& report) {
    std::string rows;
    for (const auto& row : kReasons) {
        if (const auto files = report.total.reasons[static_cast<std::size_t>(row.reason)]; files > 0)
            rows += fmt::format("<tr><td>{}</td><td class=\"r\">{}</td><td>{}</td></tr>\n", row.text, grouped(files),
                                row.conclusion);
    }
    std::string text = "<section><h2>Why files are not good</h2>\n";
    if (rows.empty())
        return text + (report.knowsAll ? "<p>There is no such file.</p></section>\n"
                                       : "<p>Not known: the list of the job alone is kept.</p></section>\n");
    return text +
           "<table><thead><tr><th>The beginning of the file</th><th class=\"r\">Files</th><th>What it points to</th>"
           "</tr></thead><tbody>\n" +
           rows + "</tbody></table></section>\n";
}

std::string notesTable(std::string_view title, const PathNotes& notes) {
    std::string text = fmt::format("<table><thead><tr><th>{}</th><th>What was found</th></tr></thead><tbody>\n", title);
    for (const auto& [path, words] : notes.first)
        text +=
            fmt::format("<tr><td class=\"n\">{}</td><td class=\"n\">{}</td></tr>\n", htmlText(path), htmlText(words));
    text += "</tbody></table>\n";
    const auto others = notes.count - static_cast<std::int64_t>(notes.first.size());
    return others > 0 ? text + fmt::format("<p class=\"soft\">and {} more.</p>\n", grouped(others)) : text;
}

std::string unreadPart(const HtmlReport& report) {
    std::string text = "<section><h2>What was not read</h2>\n";
    if (report.unread.count + report.unreadFolders.count + report.hurt.count == 0)
        return text + (report.knowsAll ? "<p>Every folder was entered, and the beginning of every file that was tested "
                                         "could be read.</p></section>\n"
                                       : "<p>No file is listed as unreadable. What else could not be read is not "
                                         "known.</p></section>\n");
    if (report.unreadFolders.count > 0)
        text += fmt::format("<p>Folders that could not be read, so that their files are missing here: {}.</p>\n",
                            grouped(report.unreadFolders.count)) +
                notesTable("Folder", report.unreadFolders);
    if (report.unread.count > 0)
        text += fmt::format("<p>Files of which the beginning could not be read, or not all of it: {}.</p>\n",
                            grouped(report.unread.count)) +
                notesTable("File", report.unread);
    if (report.hurt.count > 0)
        text +=
            fmt::format("<p>Files that hold sectors that could not be read: {}.</p>\n", grouped(report.hurt.count)) +
            notesTable("File", report.hurt);
    return text + "</section>\n";
}

std::string doubtsPart(const HtmlReport& report) {
    std::string text = "<section><h2>Doubtful files</h2>\n";
    if (report.doubtful.count == 0)
        return text + (report.knowsAll ? "<p>No good file contradicts its own header.</p></section>\n"
                                       : "<p>Not known: the list of the job alone is kept.</p></section>\n");
    return text +
           fmt::format(
               "<p>{} with a good header that speaks against the rest: cut short, too long or contradicting "
               "itself. They count as good.</p>\n",
               filesText(report.doubtful.count)) +
           notesTable("File", report.doubtful) + "</section>\n";
}

// What is said of one file beside its grade.
std::string foundText(const EvidenceRow& file) {
    if (file.reason)
        return std::string(reasonRow(*file.reason).text) + (file.detail.empty() ? "" : ": " + file.detail);
    if (!file.doubt.empty())
        return file.doubtDetail.empty() ? file.doubt : file.doubtDetail;
    return file.result.value_or("");
}

}  // namespace

std::string htmlText(std::string_view bytes) {
    std::string text;
    for (const char c : readable(bytes)) {
        switch (c) {
            case '&':
                text += "&amp;";
                break;
            case '<':
                text += "&lt;";
                break;
            case '>':
                text += "&gt;";
                break;
            case '"':
                text += "&quot;";
                break;
            case '\'':
                text += "&#39;";
                break;
            default:
                text += c;
        }
    }
    return text;
}

void PathNotes::add(std::string path, std::string words) {
    ++count;
    if (first.size() < kNamedPaths)
        first.push_back({std::move(path), std::move(words)});
}

void note(HtmlReport& report, const EvidenceRow& file) {
    if (file.unread > 0)
        report.unread.add(file.path(), grouped(file.unread) + " bytes of its beginning could not be read");
    else if (file.grade == Grade::AccessError)
        report.unread.add(file.path(), "could not be opened or read");
    if (file.badBytes.value_or(0) > 0)
        report.hurt.add(file.path(), grouped(*file.badBytes) + " bytes lie in sectors that could not be read");
    if (file.grade == Grade::Good && !file.doubt.empty())
        report.doubtful.add(file.path(), file.doubtDetail.empty() ? file.doubt : file.doubtDetail);
}

std::string reportBegin(const HtmlReport& report) {
    std::string title = "Recovery report";
    for (const auto& job : report.jobs) title += (&job == report.jobs.data() ? " " : ", ") + htmlText(job.id);
    std::string text =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"generator\" content=\"Quillon\">\n<title>" +
        title + "</title>\n<style>" + reportStyle() + "</style>\n</head>\n<body>\n";
    text += reportPatterns() + headPart(report) + qualityPart(report.total) + kProof + gradesPart(report.total);
    text += tablePart(kFolderWords, report.folders) + tablePart(kExtensionWords, report.extensions);
    text += reasonsPart(report) + unreadPart(report) + doubtsPart(report);
    if (report.withFiles && report.jobs.size() <= 1)
        text += "<h2>The files by folder</h2>\n";
    return text;
}

std::string filesHeading(std::string_view job) {
    return fmt::format("<h2 class=\"n\">The files by folder: job {}</h2>\n", htmlText(job));
}

std::string reportEnd() {
    return "<footer>Made by Quillon. All figures are those of the job; this page needs nothing beside it.</footer>\n"
           "</body>\n</html>\n";
}

std::string ReportedFiles::add(const EvidenceRow& file) {
    std::string text;
    if (!open_ || file.folder != folder_) {
        text = end();
        folder_ = file.folder;
        open_ = true;
        text += fmt::format(
            "<h3 class=\"n\">{}</h3>\n<table class=\"files\"><thead><tr><th>Name</th><th class=\"r size\">Size</th>"
            "<th class=\"grade\">Grade</th><th class=\"found\">What was found</th></tr></thead><tbody>\n",
            folder_.empty() ? "(in the source itself)" : htmlText(folder_));
    }
    const char letter = file.grade ? signOf(*file.grade).letter : kNotTestedLetter;
    return text + fmt::format(
                      "<tr><td class=\"n\">{}</td><td class=\"r\">{}</td><td><span class=\"k\">{}</span>{}</td>"
                      "<td class=\"n\">{}</td></tr>\n",
                      htmlText(file.name), sizeOf(file.size), letter,
                      file.grade ? kGrades[*file.grade].bar.name.value : "Not tested", htmlText(foundText(file)));
}

std::string ReportedFiles::end() {
    const bool wasOpen = open_;
    open_ = false;
    return wasOpen ? "</tbody></table>\n" : "";
}

}  // namespace quillon
