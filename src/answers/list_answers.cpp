// SPDX-License-Identifier: MIT
#include "answers/list_answers.h"

#include "answers/folder_branches.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

FileSign signOf(const EvidenceRow& file) {
    return {file.grade, {}, file.size, false};
}

}  // namespace

ListAnswers::ListAnswers(NativePath list, const ReportMessages& messages)
    : list_(std::move(list)), messages_(messages) {
}

void ListAnswers::read(const ListRow& row, EvidenceRow& file) const {
    file = {};
    file.row = line_;
    const std::string& path = row.nativePath();
    const auto slash = path.rfind('/');
    file.folder = slash == path.npos ? std::string() : path.substr(0, slash);
    file.name = path.substr(slash == path.npos ? 0 : slash + 1);
    file.extension = utf16ToUtf8(lowered(row.extension()));
    file.size = static_cast<std::int64_t>(row.size().value_or(0));
    file.attributes = static_cast<std::int64_t>(row.attributes().value_or(0));
    const auto result = row[ListColumn::Result];
    file.grade = row.has(ListColumn::Result) ? gradeOfResult(result, messages_) : std::nullopt;
    if (!file.grade || *file.grade == Grade::CommonHeader)
        file.result = utf16ToUtf8(result);
}

Result<bool> ListAnswers::next(EvidenceRow& file) {
    if (!reader_) {
        auto opened = ListReader::open(list_);
        if (!opened)
            return failure(opened.error());
        reader_ = std::move(*opened);
        line_ = 0;
    }
    while (reader_->next(row_)) {
        ++line_;
        if (row_.columns() < 2)
            continue;  // no row of a file
        read(row_, file);
        return true;
    }
    if (reader_->error())
        return failure(*reader_->error());
    reader_.reset();
    return false;
}

Result<void> ListAnswers::forEach(const std::function<void(const EvidenceRow&)>& take) {
    reader_.reset();
    EvidenceRow file;
    while (true) {
        const auto more = next(file);
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        take(file);
    }
}

Result<Figures> ListAnswers::total() {
    Figures figures;
    return forEach([&](const EvidenceRow& file) { count(figures, signOf(file)); }).map([&] { return figures; });
}

Result<FiguresBy> ListAnswers::byExtension() {
    FiguresBy figures;
    return forEach([&](const EvidenceRow& file) { count(figures[file.extension], signOf(file)); }).map([&] {
        return figures;
    });
}

Result<FiguresBy> ListAnswers::byFolder(std::size_t depth) {
    FiguresBy own;
    const auto read = forEach([&](const EvidenceRow& file) { count(own[file.folder], signOf(file)); });
    if (!read)
        return failure(read.error());
    FolderBranches branches(depth);
    for (const auto& [folder, figures] : own) branches.add(folder, figures);
    return branches.take();
}

}  // namespace quillon
