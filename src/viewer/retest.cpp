// SPDX-License-Identifier: MIT
#include "viewer/retest.h"

#include <algorithm>

#include "platform/copy_file.h"
#include "platform/folder_lock.h"
#include "platform/folders.h"

namespace quillon {

RetestEnd Retest::run(const NativePath& list, const NativePath& copy, std::u16string_view extension) {
    // The copy bears the name of a running job's raw list: a job of another process must not lose it.
    const auto lock = FolderLock::take(copy.parent_path());
    if (!lock && lock.error().kind == ErrorKind::PermissionDenied)
        return RetestEnd::NotStarted;
    if (pathExists(copy)) {
        passOver(removeFile(copy), "whether it is gone is asked next");
        if (pathExists(copy))
            return RetestEnd::CopyInUse;
    }
    if (!pathExists(list))
        return RetestEnd::Done;
    if (!makeCopies(list, copy))
        return RetestEnd::NotStarted;

    extension_ = extension;
    suffix_ = u"." + extension_;
    RowLookup lookup(rows_, suffix_);
    lookup_ = &lookup;
    const auto rewritten = rewrite(list, copy);
    lookup_ = nullptr;
    grader_.releaseSource();
    return rewritten ? RetestEnd::Done : RetestEnd::Failed;
}

Result<void> Retest::makeCopies(const NativePath& list, const NativePath& copy) {
    FileCopier copier;
    const auto copied = copier.copy(list.native(), copy.native(), [](std::uint64_t, std::uint64_t) { return true; });
    if (!copied)
        return failure(copied.error().error);
    const auto secured = kept_.copyAway(list);
    if (!secured)
        return failure(secured.error());
    return {};
}

Result<void> Retest::rewrite(const NativePath& list, const NativePath& copy) {
    auto reader = ListReader::open(copy);
    if (!reader)
        return failure(reader.error());
    auto writer = ListWriter::create(list, reader->encoding());
    if (!writer)
        return failure(writer.error());
    while (reader->next(row_)) {
        if (auto handled = handleRow(*writer); !handled)
            return handled;
        afterLine_();
    }
    if (reader->error())
        return failure(*reader->error());
    return writer->close();
}

Result<void> Retest::handleRow(ListWriter& list) {
    const bool isWritten = row_.isGraded();
    const std::u16string_view path = row_[ListColumn::Path];
    if (endsWithIgnoringCase(path, suffix_)) {
        if (const ViewRows::Id* row = lookup_->find(path)) {
            if (auto tested = testAgain(*row); !tested)
                return tested;
        }
    }
    return isWritten ? list.write(row_) : Result<void>();
}

Result<void> Retest::testAgain(ViewRows::Id row) {
    const auto graded = grader_.checkFile(row_, extension_);
    if (!graded)
        return failure(graded.error());
    if (!row_.has(ListColumn::Result))
        return failure(ErrorKind::Subscript, "Subscript out of range");
    row_.replaceResult(graded->text);
    if (std::ranges::any_of(kGrades.values, [&](const GradeRow& grade) {
            return grade.afterRetest == AfterRetest::Leaves && graded->text == grader_.messages()[grade.grade];
        }))
        rows_.remove(row);
    return {};
}

}  // namespace quillon
