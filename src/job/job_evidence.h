// SPDX-License-Identifier: MIT
#pragma once

// The evidence of a running job: walk, driver and passes tell what they find, and this does the rest. A job without
// evidence tells the same, and nothing becomes of it. Nothing that goes wrong here costs more than the evidence: a row
// of the log tells it.

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ahead/copy_settling.h"
#include "evidence/evidence_writer.h"
#include "job/evidence_facts.h"
#include "job/going_on.h"
#include "job/list_digest.h"
#include "job/row_times.h"

namespace quillon {

/// Folders with an error that the evidence names: a hostile tree may have as many as it likes.
inline constexpr std::size_t kMostFolderErrors = 10'000;

class JobEvidence final : public KnownFiles {
public:
    /// All must outlive this.
    JobEvidence(JobState& state, const Surroundings& surroundings, const Installation& installation,
                const ReportMessages& messages)
        : state_(state),
          surroundings_(surroundings),
          installation_(installation),
          messages_(messages),
          goingOn_(state, surroundings, installation, messages) {}

    /// A job begins. What is told from here on is kept, as the options say at this moment.
    void begin();

    /// The rows of the lists have this token.
    void marked(std::u16string_view token) { token_ = token; }
    /// The walk has written the row of a file: `folder` ends in "/".
    void found(std::string_view folder, std::string_view name, const FileTime& modified);
    /// Something is wrong with a folder; `path` ends in "/".
    void folderFailed(std::string_view path, std::string_view words);

    /// The final list will be created next. What an earlier run left beside it is made ready when the job goes on with
    /// that.
    void listComes(const NativePath& list) { goingOn_.listComes(list); }
    /// The final list was created: the evidence begins, in the place of an older one.
    void listCreated(const NativePath& list);
    /// What an earlier run tells of a row that will be graded. The rows come in the order of the raw list.
    [[nodiscard]] KnownFile find(const ListRow& row, bool opens) override;
    /// The final list has, or would have, this row of the raw list with a result behind it. `line`: its line there,
    /// from 1; none when it was not written.
    void graded(const ListRow& row, std::optional<std::int64_t> line, const FileVerdict& verdict);
    /// The final list, which was just created, is a copy of this raw list: nothing was tested.
    void listedOnly(const NativePath& rawList);

    /// A copy of the file in this line of the list (its number) came to its end; `verified`: it was compared.
    void copied(const SettledCopy& copy, bool verified);

    /// The job ends, `how` as job_keys tells it; waits until the evidence is whole. A job that ends without this leaves
    /// what it wrote as that of a running one.
    void end(const char* how);

private:
    struct FolderFailure {
        std::string path;
        std::string words;
    };

    [[nodiscard]] bool isOn();
    [[nodiscard]] bool hand(const std::function<bool()>& give);
    void handCopies();
    void takeTail(const std::string& path, EvidenceRow& out);
    void noteLine(std::int64_t line);
    [[nodiscard]] std::int64_t idOfLine(std::int64_t line) const;
    void lose(const FileError& why);
    void beginWriter();
    void finish(const char* how);
    [[nodiscard]] Result<void> noteTime(const FileTime& modified);

    JobState& state_;
    const Surroundings& surroundings_;
    const Installation& installation_;
    const ReportMessages& messages_;

    GoingOn goingOn_;
    bool wanted_ = false;
    bool on_ = false;  // wanted, and not lost
    bool keepsHeads_ = true;
    NativePath list_;
    bool keepsTimes_ = true;
    std::optional<RowTimes> times_;
    std::vector<FolderFailure> failures_;
    std::optional<RowDescriber> describer_;
    std::unique_ptr<EvidenceWriter> writer_;
    ListDigest digest_;
    std::u16string token_;
    std::int64_t lastId_ = 0;  // of the files handed over, as the evidence counts them
    // Where the ids of files begin to differ otherwise from their lines: line and difference, in order.
    std::vector<std::pair<std::int64_t, std::int64_t>> shifts_;
    std::vector<std::pair<std::int64_t, CopyOutcome>> copies_;  // by id; not handed over yet
    std::deque<std::pair<std::string, FileTail>> tails_;        // of rows ahead, by path: what an earlier run knows
    bool watched_ = false;                                      // of a copy is known what its medium gave
    std::string path_;
};

}  // namespace quillon
