// SPDX-License-Identifier: MIT
#include "viewer/view_evidence.h"

#include "app/kept_files.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

void ViewEvidence::open(const NativePath& list) {
    opened_.reset();
    auto reader = EvidenceReader::open(evidenceBeside(list));
    if (!reader)
        return;
    const NativePath source = sourceIn(*reader);
    opened_.emplace(Opened{std::move(*reader), source, RowDescriber(source)});
}

bool ViewEvidence::isSourceAway() const {
    return opened_ && !isFolder(opened_->source);
}

const EvidenceRow* ViewEvidence::find(std::int64_t line, std::u16string_view path) {
    if (!opened_)
        return nullptr;
    const std::string native = toNative(path);
    const auto found = opened_->reader.findLine(line, opened_->describer.below(native), row_);
    return found.value_or(false) ? &row_ : nullptr;
}

std::optional<FileHead> ViewEvidence::head(std::int64_t line, std::u16string_view path) {
    if (find(line, path) == nullptr)
        return std::nullopt;
    const FileHead* const head = opened_->reader.head(row_).value_or(nullptr);
    return head != nullptr ? std::optional(*head) : std::nullopt;
}

}  // namespace quillon
