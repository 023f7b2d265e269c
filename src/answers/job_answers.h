// SPDX-License-Identifier: MIT
#pragma once

// What can be asked of a job: figures and files, from its evidence or, for an old job, from its list alone. What a list
// does not hold (source, reasons, doubts, times to the nanosecond) stays unknown.

#include <functional>
#include <memory>

#include "answers/figures.h"
#include "answers/file_wish.h"
#include "answers/job_files.h"
#include "evidence/evidence_row.h"
#include "testing/report_messages.h"

namespace quillon {

/// What became of a job as a whole. What is not known is empty.
struct JobFacts {
    struct UnreadFolder {
        std::string path;   ///< bytes, below the source
        std::string error;  ///< words
    };
    std::optional<std::int64_t> started;  ///< seconds since 1970 UTC
    std::string end;                      ///< one of `job_keys.h`
    std::vector<UnreadFolder> unreadFolders;
};

/// What most questions need of a file.
struct BriefFile {
    BriefFile() = default;
    // A row says all of this, so it can stand for one.
    BriefFile(const EvidenceRow& file)
        : id(file.id),
          size(file.size),
          folder(file.folder),
          name(file.name),
          extension(file.extension),
          grade(file.grade) {}

    std::int64_t id = 0;
    std::int64_t size = 0;
    std::string_view folder;  ///< bytes, as in the row
    std::string_view name;    ///< bytes
    std::string_view extension;
    std::optional<Grade> grade;
};

/// Files in the order of the walk.
class BriefFiles {
public:
    virtual ~BriefFiles() = default;
    /// Makes `file` the next one, whose texts are good until the one behind it is asked for. False behind the last one.
    [[nodiscard]] virtual Result<bool> next(BriefFile& file) = 0;
};

class JobAnswers {
public:
    virtual ~JobAnswers() = default;

    /// False: the list is all there is.
    [[nodiscard]] virtual bool knowsAll() const = 0;
    /// Bytes; empty when it is not known. Paths of files are then absolute.
    [[nodiscard]] virtual Result<std::string> source() = 0;

    [[nodiscard]] virtual Result<JobFacts> facts() { return JobFacts{}; }

    [[nodiscard]] virtual Result<Figures> total() = 0;
    /// By extension in lower case; "" for none.
    [[nodiscard]] virtual Result<FiguresBy> byExtension() = 0;
    /// By name of the reason.
    [[nodiscard]] virtual Result<FiguresBy> byReason() = 0;
    /// By path (bytes): whole branches, down to `depth` folders below the source; "" is the source.
    [[nodiscard]] virtual Result<FiguresBy> byFolder(std::size_t depth) = 0;

    /// Makes `file` the next one, in the order of the walk. False behind the last one.
    [[nodiscard]] virtual Result<bool> next(EvidenceRow& file) = 0;

    /// The first file is the next one again.
    virtual void restart() = 0;

    /// All files that fit, from the first one on. Whoever asks for them asks for no `next` meanwhile. They must not
    /// outlive this.
    [[nodiscard]] virtual Result<std::unique_ptr<BriefFiles>> files(const FileWish& wish);

    /// Nothing of the job is held open until the next file is asked for, so that its evidence can be written to.
    virtual void rest() {}

    /// A number that equal heads have in common; none when the head of the file with this id is not known.
    [[nodiscard]] virtual Result<std::optional<std::uint64_t>> headSign(std::int64_t id) = 0;
};

/// `messages`: by which the results of a list are told apart.
[[nodiscard]] Result<std::unique_ptr<JobAnswers>> openAnswers(const JobFiles& job, const ReportMessages& messages);

/// False: the run that made the job did not come to its end, and files that it did not come to are in no figure.
[[nodiscard]] Result<bool> cameToItsEnd(const JobFiles& job, JobAnswers& answers);

/// Hands each of `JobAnswers::files` to `take`.
template <typename Take>
[[nodiscard]] Result<void> eachBrief(JobAnswers& answers, const FileWish& wish, Take take) {
    const auto files = answers.files(wish);
    if (!files)
        return failure(files.error());
    BriefFile file;
    while (true) {
        const auto more = (*files)->next(file);
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        take(file);
    }
}

/// Hands the files that are still to come to `take`, in the order of the walk, until one of them fails.
[[nodiscard]] Result<void> eachFile(JobAnswers& answers, const std::function<Result<void>(const EvidenceRow&)>& take);

}  // namespace quillon
