// SPDX-License-Identifier: MIT
#include "viewer/retest.h"

#include <algorithm>

#include "platform/copy_file.h"
#include "platform/folder_lock.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

std::u16string suffixOf(std::u16string_view extension) {
    return u"." + std::u16string(extension);
}

}  // namespace

std::optional<std::u16string> missingSource(const ViewRows& rows, std::u16string_view extension) {
    const std::u16string suffix = suffixOf(extension);
    std::optional<std::u16string> first;
    std::u16string_view last;
    for (int row = 0; row < rows.shown(); ++row) {
        const std::u16string_view path = rows.path(rows.idAt(row));
        if (rows.isRemoved(rows.idAt(row)) || !endsWithIgnoringCase(path, suffix))
            continue;
        const std::u16string_view folder = parentOf(path);
        if (first && folder == last)
            continue;
        if (isFolder(toNative(folder)))
            return std::nullopt;
        last = folder;
        if (!first)
            first = folder;
    }
    return first;
}

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
    suffix_ = suffixOf(extension);
    RowLookup lookup(rows_, suffix_);
    lookup_ = &lookup;
    evidence_.emplace(list, grader_.messages(), grader_.context().surroundings.loop);
    const auto rewritten = rewrite(list, copy);
    if (rewritten)
        evidence_->listWritten();
    evidence_.reset();
    lookup_ = nullptr;
    grader_.releaseSource();
    return rewritten ? RetestEnd::Done : RetestEnd::Failed;
}

// What the list was when the visit found it goes under Kept, and again when somebody else has changed it meanwhile.
Result<void> Retest::makeCopies(const NativePath& list, const NativePath& copy) {
    FileCopier copier;
    const auto copied = copier.copy(list.native(), copy.native(), [](std::uint64_t, std::uint64_t) { return true; });
    if (!copied)
        return failure(copied.error().error);
    const auto stamp = fileStamp(list);
    if (stamp && visit_.written == *stamp)
        return {};
    visit_.written.reset();
    const auto secured = kept_.copyAway(list);
    if (!secured)
        return failure(secured.error());
    return {};
}

Result<void> Retest::rewrite(const NativePath& list, const NativePath& copy) {
    auto reader = ListReader::open(copy);
    if (!reader)
        return failure(reader.error());
    auto replacement = Replacement::begin(list);
    if (!replacement)
        return failure(replacement.error());
    auto writer = ListWriter::into(replacement->takeFile(), reader->encoding());
    if (!writer)
        return failure(writer.error());
    const auto passed = writeRows(*reader, *writer);
    // The next retest begins with what is left of the list, so all of its rows have to be somewhere else.
    if (!passed && visit_.written) {
        if (const auto secured = kept_.copyAway(copy); !secured)
            return passed;
    }
    const auto placed =
        writer->sync().and_then([&] { return writer->close(); }).and_then([&] { return replacement->arrive(); });
    visit_.written.reset();
    if (!passed || !placed)
        return passed ? placed : passed;
    if (const auto stamp = fileStamp(list))
        visit_.written = *stamp;
    return {};
}

Result<void> Retest::writeRows(ListReader& from, ListWriter& to) {
    while (from.next(row_)) {
        if (auto handled = handleRow(to); !handled)
            return handled;
        afterLine_();
    }
    if (from.error())
        return failure(*from.error());
    return {};
}

Result<void> Retest::handleRow(ListWriter& list) {
    const bool isWritten = row_.isGraded();
    evidence_->lineRead();
    const std::u16string_view path = row_[ListColumn::Path];
    if (endsWithIgnoringCase(path, suffix_)) {
        if (const ViewRows::Id* row = lookup_->find(path)) {
            if (auto tested = testAgain(*row); !tested)
                return tested;
        }
    }
    if (!isWritten)
        return {};
    auto written = list.write(row_);
    if (written)
        evidence_->lineWritten(row_);
    return written;
}

Result<void> Retest::testAgain(ViewRows::Id row) {
    const auto graded = grader_.checkFile(row_, extension_);
    if (!graded)
        return failure(graded.error());
    if (!row_.has(ListColumn::Result))
        return failure(ErrorKind::Subscript, "Subscript out of range");
    row_.replaceResult(graded->text);
    evidence_->graded(row_, *graded);
    if (std::ranges::any_of(kGrades.values, [&](const GradeRow& grade) {
            return grade.afterRetest == AfterRetest::Leaves && graded->text == grader_.messages()[grade.grade];
        }))
        rows_.remove(row);
    return {};
}

}  // namespace quillon
