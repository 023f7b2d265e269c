// SPDX-License-Identifier: MIT
#include "viewer/retest.h"

#include <algorithm>

#include "platform/copy_file.h"
#include "platform/folder_lock.h"
#include "platform/folders.h"
#include "text/fields.h"

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
    job_.releaseSource();
    return rewritten ? RetestEnd::Done : RetestEnd::Failed;
}

Result<void> Retest::makeCopies(const NativePath& list, const NativePath& copy) {
    FileCopier copier;
    const auto copied = copier.copy(list.native(), copy.native(), [](std::uint64_t, std::uint64_t) { return true; });
    if (!copied)
        return failure(copied.error().error);
    const auto kept = job_.kept().copyAway(list);
    if (!kept)
        return failure(kept.error());
    return {};
}

Result<void> Retest::rewrite(const NativePath& list, const NativePath& copy) {
    auto reader = ListReader::open(copy);
    if (!reader)
        return failure(reader.error());
    auto writer = ListWriter::create(list, reader->encoding());
    if (!writer)
        return failure(writer.error());
    while (const auto line = reader->next()) {
        if (auto handled = handleLine(*line, *writer); !handled)
            return handled;
        afterLine_();
    }
    if (reader->error())
        return failure(*reader->error());
    return writer->close();
}

Result<void> Retest::handleLine(std::u16string_view line, ListWriter& list) {
    splitInto(fields_, line, u',');
    if (!fields_.empty() && endsWithIgnoringCase(fields_[kPathColumn], suffix_)) {
        if (const ViewRows::Id* row = lookup_->find(fields_[kPathColumn])) {
            if (auto tested = testAgain(*row); !tested)
                return tested;
        }
    }
    if (fields_.size() != kTestedColumns)
        return {};
    row_.clear();
    for (const auto field : fields_) row_.append(field).push_back(u',');
    row_.back() = u'\r';
    row_.push_back(u'\n');
    return list.write(row_);
}

Result<void> Retest::testAgain(ViewRows::Id row) {
    const auto graded = job_.checkFile(fields_, extension_);
    if (!graded)
        return failure(graded.error());
    if (fields_.size() < kTestedColumns)
        return failure(ErrorKind::Subscript, "Subscript out of range");
    result_ = *graded;
    fields_[kResultColumn] = result_;
    if (std::ranges::any_of(kGrades.values, [this](const GradeRow& grade) {
            return grade.afterRetest == AfterRetest::Leaves && result_ == job_.messages[grade.grade];
        }))
        rows_.remove(row);
    return {};
}

}  // namespace quillon
