// SPDX-License-Identifier: MIT
#pragma once

// What the overview of a job asks: figures of folders one level at a time, of extensions and reasons, and the files
// that fit a wish, piece by piece. From the evidence, where totals stand ready, or from the list alone, read once.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "answers/figures_text.h"
#include "answers/file_wish.h"
#include "answers/job_files.h"
#include "testing/report_messages.h"

namespace quillon {

/// A folder with all below it. Of the figures, reasons and doubts stay 0: folders are counted by grade.
struct FolderFacts {
    std::int64_t id = 0;
    std::string name;   ///< bytes; empty for the root
    std::string path;   ///< bytes, in the form of the rows' folders
    std::string error;  ///< what went wrong with it, in words
    bool hasFolders = false;
    Figures figures;
};

/// So many folders of one parent are told, those with most files; what is beyond stays uncounted by the screen, too.
inline constexpr std::size_t kMostFolders = 10'000;

struct FolderList {
    std::vector<FolderFacts> folders;  ///< by name
    std::int64_t others = 0;           ///< folders that are not told
};

/// Finds files piece by piece, so that a window stays alive between two pieces.
class FileSearch {
public:
    virtual ~FileSearch() = default;
    /// Adds the ids of the next files that fit, in the order of the walk or of the folders. False: there are no more.
    [[nodiscard]] virtual Result<bool> more(std::vector<std::int64_t>& ids) = 0;
};

/// A folder of a case: in which of its jobs it lies, and where there.
struct PlaceInCase {
    std::size_t job = 0;  ///< in the order in which the jobs were given
    std::string folder;   ///< bytes, in the form of the job's own rows; empty for all of it

    friend bool operator==(const PlaceInCase&, const PlaceInCase&) = default;
};

class OverviewSource {
public:
    virtual ~OverviewSource() = default;

    /// False: reasons, doubts, what was not read and heads are unknown.
    [[nodiscard]] virtual bool knowsAll() const = 0;
    /// Bytes; empty when it is not known.
    [[nodiscard]] virtual std::string source() const = 0;
    /// True: paths of rows are whole ones.
    [[nodiscard]] virtual bool hasWholePaths() const = 0;
    /// None for the folder that several jobs share.
    [[nodiscard]] virtual std::optional<PlaceInCase> placeOf(std::string_view folder) const {
        return PlaceInCase{0, std::string(folder)};
    }

    [[nodiscard]] virtual Result<Figures> total() = 0;
    /// Those with most files first.
    [[nodiscard]] virtual Result<FigureRows> extensions() = 0;
    /// By name of the reason.
    [[nodiscard]] virtual Result<FigureRows> reasons() = 0;
    [[nodiscard]] virtual Result<FolderFacts> root() = 0;
    [[nodiscard]] virtual Result<FolderList> folders(const FolderFacts& parent) = 0;

    /// The search must not outlive the source.
    [[nodiscard]] virtual Result<std::unique_ptr<FileSearch>> search(const FileWish& wish) = 0;
    /// The file of an id that a search gave.
    [[nodiscard]] virtual Result<EvidenceRow> file(std::int64_t id) = 0;
    /// The bytes of its head, as many as were read; none when no head is kept.
    [[nodiscard]] virtual Result<std::optional<std::string>> head(const EvidenceRow& file) = 0;
};

/// Opens what there is. A list alone is read whole, which takes seconds for a million rows. `messages`: by which the
/// results of a list are told apart.
[[nodiscard]] Result<std::unique_ptr<OverviewSource>> openOverview(const JobFiles& job, const ReportMessages& messages);

/// Opens several jobs as one: each is a folder under its ID.
[[nodiscard]] Result<std::unique_ptr<OverviewSource>> openOverview(const std::vector<JobFiles>& jobs,
                                                                   const ReportMessages& messages);

/// Files that are lost or could not be read: what a person looks for first.
[[nodiscard]] std::int64_t badFiles(const Figures& figures);

}  // namespace quillon
