// SPDX-License-Identifier: MIT
#include "answers/overview/found_rows.h"

#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

std::string gradeText(const std::optional<Grade>& grade) {
    return grade ? kGrades[*grade].bar.name.value : "-";
}

std::string fileCell(const EvidenceRow& file, int column) {
    switch (column) {
        case 0:
            return readable(std::string_view(file.path()));
        case 1:
            return grouped(file.size);
        case 2:
            return gradeText(file.grade);
        default:
            return readable(std::string_view(whyText(file)));
    }
}

std::string changeCell(const ChangedFile& file, int column) {
    switch (column) {
        case 0:
            return readable(std::string_view(file.path)) +
                   (file.before.empty() ? "" : " (was " + readable(std::string_view(file.before)) + ")");
        case 1:
            return kChangeNames[static_cast<std::size_t>(file.change)];
        default:
            return gradeText(column == 2 ? file.gradeBefore : file.gradeNow);
    }
}

}  // namespace

std::string whyText(const EvidenceRow& file) {
    std::string text = file.doubtDetail.empty() ? file.doubt : file.doubtDetail;
    if (file.reason)
        text = std::string(reasonRow(*file.reason).text) + (file.detail.empty() ? "" : ": " + file.detail);
    if (file.badBytes.value_or(0) > 0)
        text += (text.empty() ? "" : "; ") + grouped(*file.badBytes) + " bytes in unread sectors";
    return text;
}

void FoundRows::showFiles(OverviewSource* source) {
    source_ = source;
    ids_.clear();
    changes_.clear();
    areChanges_ = false;
    kept_ = {};
    ++contents_;
}

void FoundRows::showChanges(std::vector<ChangedFile> changes) {
    ids_.clear();
    changes_ = std::move(changes);
    areChanges_ = true;
    ++contents_;
}

int FoundRows::count() const {
    return static_cast<int>(areChanges_ ? changes_.size() : ids_.size());
}

std::array<const char*, FoundRows::kColumns> FoundRows::titles() const {
    if (areChanges_)
        return {"Path", "Change", "Before", "Now"};
    return {"Path", "Size", "Grade", "Why"};
}

const EvidenceRow* FoundRows::look(int row) const {
    if (areChanges_ || source_ == nullptr || row < 0 || row >= count())
        return nullptr;
    const std::int64_t id = ids_[static_cast<std::size_t>(row)];
    Kept& kept = kept_[static_cast<std::size_t>(id) % kept_.size()];
    if (kept.id != id) {
        auto file = source_->file(id);
        if (!file)
            return nullptr;
        kept = {id, std::move(*file)};
    }
    return &kept.file;
}

std::string FoundRows::cell(int row, int column) const {
    if (row < 0 || row >= count())
        return {};
    if (areChanges_)
        return changeCell(changes_[static_cast<std::size_t>(row)], column);
    const EvidenceRow* const file = look(row);
    return file != nullptr ? fileCell(*file, column) : "?";
}

std::optional<EvidenceRow> FoundRows::file(int row) const {
    const EvidenceRow* const found = look(row);
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

}  // namespace quillon
