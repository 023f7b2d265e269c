// SPDX-License-Identifier: MIT
#pragma once

// The subcommands of `quillon-list` and their options.

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "answers/file_copies.h"
#include "answers/file_wish.h"
#include "platform/file.h"

namespace quillon {

enum class ListQuestion {
    Summary,
    Extensions,
    Folders,
    Reasons,
    Files,
    Export,
    Report,
    Compare,
    Merge,
    Forget,
    Suggest,
    Copy,
    Verify,
    Sectors,
    History
};

/// What `history` is to do.
struct HistoryWish {
    bool local = false;       ///< this computer's history, though the database is shared
    std::size_t last = 1000;  ///< how many notes are read
    bool effect = false;      ///< with what each change did to kept heads
    std::string undo;         ///< the ID of a change to be taken back
    std::string about;        ///< the ID of a change that gets this
    std::string remark;       ///< UTF-8
};

struct ListCommandOptions {
    ListQuestion question = ListQuestion::Summary;
    std::vector<std::string> jobs;  ///< as they were named
    std::string caseId;
    std::string newJob;            ///< merge: the ID of what is made
    std::optional<NativePath> to;  ///< merge: the folder for it; that of the lists unless told
    std::optional<NativePath> appFolder;
    bool json = false;

    FileWish wish;
    bool zeros = false;     ///< names end in a zero byte
    bool absolute = false;  ///< names begin with the source

    std::size_t depth = 1;             ///< folders below the source
    std::optional<std::size_t> worst;  ///< how many of the worst

    std::string format = "csv";
    std::optional<NativePath> output;
    bool bom = false;
    bool spreadsheet = false;

    std::optional<NativePath> paths;  ///< suggest: the files that count as listed, one name a line

    NativePath map;                             ///< sectors: the map of a rescue
    std::optional<std::uint64_t> deviceOffset;  ///< where the file system begins on the map's device
    std::optional<std::uint64_t> sectorBytes;   ///< physical sector of that device
    HistoryWish history;

    bool withFiles = false;  ///< the report names every file
    std::string laboratory;  ///< UTF-8, who made the report

    CopyOrder copy;                     ///< its wish is `wish`
    bool yes = false;                   ///< copy: nobody is asked
    std::optional<NativePath> against;  ///< verify: the folder of the copies

    std::string stripFirst;
    std::string stripSecond;
};

struct ParsedListCommand {
    std::optional<ListCommandOptions> options;
    int exitStatus = 0;
};

/// Exit statuses, as `diff` has them.
inline constexpr int kListSame = 0;
inline constexpr int kListDiffers = 1;
inline constexpr int kListTrouble = 2;

/// Parses and checks. Help goes to `out`; wrong usage is one line on `err`, and status 2.
[[nodiscard]] ParsedListCommand parseListCommand(const std::vector<std::string>& arguments, std::ostream& out,
                                                 std::ostream& err);

}  // namespace quillon
