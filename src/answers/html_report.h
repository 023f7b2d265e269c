// SPDX-License-Identifier: MIT
#pragma once

// The page that a laboratory hands to its customer: one HTML file that asks for nothing else, neither a script nor
// another file. It prints to A4, and follows the reader's choice of light or dark. What a disk named can be anything,
// so every name is shown readable and escaped: it stays text.

#include <string>
#include <string_view>
#include <vector>

#include "answers/figures_text.h"
#include "evidence/evidence_row.h"

namespace quillon {

/// Which job the page is about.
struct ReportedJob {
    std::string id;
    std::string source;   ///< bytes; empty when it is not known
    std::string started;  ///< date and time as text; empty when it is not known
    bool whole = true;    ///< false: it was stopped, or ended by itself
};

/// A path with what is to be said of it.
struct PathNote {
    std::string path;  ///< bytes
    std::string note;  ///< words
};

/// So many paths of one kind are named; the others are counted.
inline constexpr std::size_t kNamedPaths = 200;

/// Paths of one kind.
struct PathNotes {
    std::int64_t count = 0;       ///< of all
    std::vector<PathNote> first;  ///< at most `kNamedPaths`

    void add(std::string path, std::string note);
};

/// Rows of a table and how many there is no room for.
struct ReportTable {
    FigureRows rows;
    std::size_t others = 0;
};

struct HtmlReport {
    std::string laboratory;  ///< empty: it is not named
    std::string written;     ///< date and time of the page, as text
    std::vector<ReportedJob> jobs;
    Figures total;
    bool knowsAll = true;  ///< false: reasons, doubts and what was not read are unknown
    ReportTable extensions;
    ReportTable folders;
    PathNotes unread;         ///< files, by what of them could not be read
    PathNotes hurt;           ///< files that hold sectors that could not be read
    PathNotes unreadFolders;  ///< folders that could not be entered
    PathNotes doubtful;       ///< good files whose own head speaks against them
    bool withFiles = false;   ///< a list of the files follows
};

/// Counts a file among those that were not read and the doubtful ones, where it is one.
void note(HtmlReport& report, const EvidenceRow& file);

/// The page down to the list of files. `reportEnd` closes it.
[[nodiscard]] std::string reportBegin(const HtmlReport& report);
/// Ahead of the files of each job where the page is about several: folders of two jobs may have one name.
[[nodiscard]] std::string filesHeading(std::string_view job);
[[nodiscard]] std::string reportEnd();

/// The files of the page, in pieces, so that no page has to be held whole: files of one folder that follow each other
/// stand under its name.
class ReportedFiles {
public:
    /// The piece for one file, with a heading where its folder is another than that of the file before.
    [[nodiscard]] std::string add(const EvidenceRow& file);
    /// The piece behind the last file of a job.
    [[nodiscard]] std::string end();

private:
    std::string folder_;
    bool open_ = false;
};

/// Bytes as text of a page: readable, and with nothing that a browser takes for its own.
[[nodiscard]] std::string htmlText(std::string_view bytes);

}  // namespace quillon
