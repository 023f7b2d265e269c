// SPDX-License-Identifier: MIT
#pragma once

// The judgement on one recovered file: its row, its extension and at most its first 512 bytes give its grade.

#include <string>
#include <string_view>
#include <vector>

#include "platform/source_files.h"
#include "testing/common_list.h"
#include "testing/finding_rules.h"
#include "testing/report_messages.h"
#include "testing/term_file.h"
#include "text/list_row.h"

namespace quillon {

/// All that the test of one file gives. Text and head are good until the next test.
struct FileVerdict {
    std::optional<Grade> grade;      ///< none for a row that no test has judged
    std::u16string_view text;        ///< for the list: the message of the grade, or the composite one
    const FileHead* head = nullptr;  ///< of a file that was opened and compared, as it came; null for any other
    /// That it was compared with: its extension's; null for one without a term file, and for a file that was not
    /// opened.
    SharedTerms terms;
    FileFindings findings;
    OpenFindings open;  ///< what takes the place of the findings when they are still to be looked for
};

/// What the header test asks of its front end.
class HeaderCheckHost {
public:
    virtual ~HeaderCheckHost() = default;
    /// `chkCommon`, asked at the moment of each test.
    [[nodiscard]] virtual bool useCommonHeaders() = 0;
    /// A light red row of the job log: "Access Error : " and the path, readable.
    virtual void logAccessError(const std::string& text) = 0;
};

class HeaderCheck {
public:
    /// All must outlive this. The messages and the common list are read anew at each test.
    HeaderCheck(TermFiles& termFiles, const ReportMessages& messages, const CommonList& commonList,
                HeaderCheckHost& host)
        : termFiles_(termFiles), messages_(messages), commonList_(commonList), host_(host) {}

    /// Grades one row. `extension`: as it stands in the name. `heads`: gives the file's head. The text is empty only
    /// for a common record that lacks its description and for a common list that was never loaded. Size and attributes
    /// are those of the row: the file system is not asked for them again, and a file that they decide on, or whose type
    /// nothing is known of, is not opened. A result in the row is ignored. A Subscript failure: the row has too few
    /// columns.
    [[nodiscard]] Result<FileVerdict> checkFile(const ListRow& row, std::u16string_view extension, HeadReader& heads);

    /// Whether checkFile would open the file if it were called now: neither its row nor the lack of a term file
    /// decides. Counts nothing. A term file that came or went since the last test of its extension is not seen.
    [[nodiscard]] bool mayOpen(const ListRow& row);

private:
    [[nodiscard]] static Result<std::optional<Grade>> judgeRow(const ListRow& row);
    [[nodiscard]] FileVerdict verdict(Grade grade) const;
    [[nodiscard]] FileVerdict judgeContent(const std::vector<CompiledTerm>* terms);
    [[nodiscard]] MatchResult matchTerms(const std::vector<CompiledTerm>& terms) const;

    struct CommonMatch {
        MatchResult result = MatchResult::No;
        std::u16string_view text;
    };
    [[nodiscard]] CommonMatch matchCommon(bool termFileExists);
    [[nodiscard]] std::u16string_view composite(const CommonRecord& record, bool termFileExists);

    TermFiles& termFiles_;
    const ReportMessages& messages_;
    const CommonList& commonList_;
    HeaderCheckHost& host_;
    FileHead head_;
    HeaderBytes folded_{};
    std::u16string composite_;
};

}  // namespace quillon
