// SPDX-License-Identifier: MIT
#pragma once

// Brings the files of a finished list to a target folder, keeping each file's folders below the target. Every row is
// copied, whatever its grade, unless only some grades are asked for. A job that goes on with its earlier run, and whose
// copies have check sums, makes the missing ones.

#include <optional>
#include <string>

#include "app/file_list.h"
#include "job/copy_queue.h"
#include "job/copy_record.h"
#include "job/earlier_copies.h"
#include "job/job_lists.h"
#include "job/pass_context.h"
#include "testing/report_messages.h"

namespace quillon {

class CopyPass {
public:
    /// All must outlive this. `messages`: by which the results of the list are told apart. `encoding`: of a list that
    /// this job has written; otherwise it is found from the content. `watch`: sees the bytes of copies that are hashed.
    CopyPass(const PassContext& context, const JobLists& lists, const ReportMessages& messages,
             std::optional<ListEncoding> encoding = std::nullopt, ByteWatchMaker watch = {});

    void run();

private:
    void begin();
    void beginRecord();
    void lookForEarlier();
    [[nodiscard]] bool standsAlready(const CopyTask& task);
    void recordLost(const FileError& why);
    void notReached();
    void copyRows(ListReader& list);
    void lookAhead(ListReader& list);
    [[nodiscard]] bool isWanted(const ListRow& row) const;
    void copyFirst();
    void ended(const SettledCopy& copy);
    void showJobProgress(const std::string& source);
    [[nodiscard]] bool progress(std::uint64_t done, std::uint64_t total);

    PassContext context_;
    const JobLists& lists_;
    const ReportMessages& messages_;
    std::optional<ListEncoding> encoding_;
    std::string targetFolder_;  // ends in "/"
    ListRow row_;
    std::int64_t line_ = 0;             // of the list, from 1
    std::optional<CopyRecord> record_;  // of check sums, where copies are hashed
    std::optional<EarlierCopies> earlier_;
    CopyQueue queue_;
};

}  // namespace quillon
