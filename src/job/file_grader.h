// SPDX-License-Identifier: MIT
#pragma once

// The header test of a job over the local database. What it finds raises the job's counters, and access errors go to
// its log.

#include <optional>
#include <string>
#include <string_view>

#include "ahead/heads_ahead.h"
#include "app/installation.h"
#include "job/known_file.h"
#include "job/pass_context.h"
#include "testing/finding_rules.h"
#include "testing/header_check.h"

namespace quillon {

/// Counts and tells where the fallback texts stand in the list though there are local report messages: those cannot be
/// read, or are fewer than ten, or the shared ones could not be fetched when `messages` were loaded.
void lookAtReportMessages(const Installation& installation, const ReportMessages& messages, const PassContext& context);

/// Loads the common headers of the local settings, when they are wanted and there. Those that cannot be read are
/// counted and told, and the list stays what it was.
void loadCommonHeaders(const Installation& installation, const PassContext& context, CommonList& list);

class FileGrader : private HeaderCheckHost {
public:
    /// All must outlive this. Messages and common list are read anew at each test.
    FileGrader(const Installation& installation, const ReportMessages& messages, const CommonList& commonList,
               const PassContext& context, TermFiles::Looks looks = TermFiles::Looks::AtEachTest);
    FileGrader(const FileGrader&) = delete;
    FileGrader& operator=(const FileGrader&) = delete;

    /// A row and its extension give the verdict, which counts; its findings are there. The head comes from `heads`, or
    /// is read in line. See HeaderCheck::checkFile.
    [[nodiscard]] Result<FileVerdict> checkFile(const ListRow& row, std::u16string_view extension, HeadReader& heads);
    [[nodiscard]] Result<FileVerdict> checkFile(const ListRow& row, std::u16string_view extension) {
        return checkFile(row, extension, heads());
    }
    /// The same, but the findings are still to be looked for. Where the test would open the file, `known` stands for
    /// what it would find, unless it is null.
    [[nodiscard]] Result<FileVerdict> gradeFile(const ListRow& row, std::u16string_view extension, HeadReader& heads,
                                                const KnownVerdict* known = nullptr);

    /// Whether checkFile would open the file now. See HeaderCheck::mayOpen.
    [[nodiscard]] bool mayOpen(const ListRow& row);

    [[nodiscard]] const ReportMessages& messages() const { return messages_; }

    /// Heads of source files; who knows the rows to come asks it for theirs.
    [[nodiscard]] HeadsAhead& heads();
    [[nodiscard]] const PassContext& context() const { return context_; }

    /// Lets go of the last source folder, so that nothing of a source stays open when no job runs.
    void releaseSource() {
        heads_.reset();
        rules_.reset();
    }

private:
    bool useCommonHeaders() override { return context_.state.options.useCommonHeaders; }
    void logAccessError(const std::string& text) override { context_.logAbout(inWork_, text, kLightRed); }
    [[nodiscard]] HeaderCheck& headerTest();
    [[nodiscard]] FileVerdict counted(FileVerdict verdict);
    [[nodiscard]] OpenFindings openFindings(const ListRow& row, const FileVerdict& verdict);
    [[nodiscard]] SectorMarkers markers();

    const Installation& installation_;
    const ReportMessages& messages_;
    const CommonList& commonList_;
    PassContext context_;
    TermFiles::Looks looks_;
    std::optional<HeadsAhead> heads_;  // of the source in work
    std::string_view inWork_;          // path of the file that is being graded
    std::string databaseFolder_;
    std::optional<TermFiles> termFiles_;
    std::optional<HeaderCheck> test_;
    std::shared_ptr<const FindingRules> rules_;  // made when the first finding is asked for
};

}  // namespace quillon
