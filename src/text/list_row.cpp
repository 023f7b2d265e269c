// SPDX-License-Identifier: MIT
#include "text/list_row.h"

#include <algorithm>
#include <cmath>

#include "text/fields.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr char16_t kSeparator = u',';
constexpr char16_t kTokenSeparator = u';';

double fixedPoint(double value) {
    return std::nearbyint(value * 10000.0) / 10000.0;
}

}  // namespace

void ListRow::clear() {
    line_.clear();
    columns_ = 0;
    hasExtension_ = hasNativePath_ = false;
    size_.reset();
    attributes_.reset();
}

void ListRow::assign(std::u16string_view line) {
    clear();
    line_ = line;
    if (!line_.empty())
        splitFrom(0);
}

void ListRow::beginFile(std::u16string_view folder, std::string_view name) {
    clear();
    line_ = folder;
    appendListText(line_, name);
    splitFrom(0);
}

void ListRow::addFile(const FileColumns& file) {
    const std::size_t start = openColumn();
    line_.append(file.modified);
    line_.push_back(kSeparator);
    appendPlainNumber(line_, file.size);
    line_.push_back(kSeparator);
    appendPlainNumber(line_, file.attributes);
    line_.push_back(kTokenSeparator);
    line_.append(file.token);
    splitFrom(start);
}

void ListRow::add(std::u16string_view column) {
    const std::size_t start = openColumn();
    line_.append(column);
    splitFrom(start);
}

void ListRow::replaceResult(std::u16string_view result) {
    const std::size_t start = starts_[static_cast<std::size_t>(ListColumn::Result)];
    line_.replace(start, (*this)[ListColumn::Result].size(), result);
    columns_ = static_cast<std::size_t>(ListColumn::Result);
    splitFrom(start);
}

void ListRow::replaceToken(std::u16string_view token) {
    const auto column = (*this)[ListColumn::Attributes];
    const auto end = column.find(kTokenSeparator);
    if (end == column.npos || column.substr(end + 1) == token)
        return;
    const std::size_t start = starts_[static_cast<std::size_t>(ListColumn::Attributes)];
    line_.replace(start + end + 1, column.size() - end - 1, token);
    columns_ = static_cast<std::size_t>(ListColumn::Attributes);
    splitFrom(start);
}

std::u16string_view ListRow::token() const {
    const auto column = (*this)[ListColumn::Attributes];
    const auto end = column.find(kTokenSeparator);
    return end == column.npos ? std::u16string_view() : column.substr(end + 1);
}

// The place where a column behind the last begins.
std::size_t ListRow::openColumn() {
    columns_ = std::max<std::size_t>(columns_, 1);
    line_.push_back(kSeparator);
    return line_.size();
}

// Splits the rest of the line, which begins with a column behind those that are known.
void ListRow::splitFrom(std::size_t start) {
    while (start <= line_.size()) {
        if (columns_ < starts_.size())
            starts_[columns_] = start;
        ++columns_;
        const auto end = findAscii(std::u16string_view(line_), kSeparator, start);
        start = (end == line_.npos ? line_.size() : end) + 1;
    }
    if (columns_ < starts_.size())
        starts_[columns_] = start;
}

std::u16string_view ListRow::operator[](ListColumn column) const {
    if (!has(column))
        return {};
    const auto place = static_cast<std::size_t>(column);
    return std::u16string_view(line_).substr(starts_[place], starts_[place + 1] - starts_[place] - 1);
}

const std::u16string& ListRow::extension() const {
    if (!hasExtension_) {
        extension_ = extensionOf((*this)[ListColumn::Path]);
        std::replace(extension_.begin(), extension_.end(), u'>', u',');
        hasExtension_ = true;
    }
    return extension_;
}

const std::string& ListRow::nativePath() const {
    if (!hasNativePath_) {
        toNative((*this)[ListColumn::Path], nativePath_);
        hasNativePath_ = true;
    }
    return nativePath_;
}

std::optional<double> ListRow::size() const {
    if (!size_ && has(ListColumn::Size))
        size_ = fixedPoint(numericPrefix((*this)[ListColumn::Size]));
    return size_;
}

std::optional<double> ListRow::attributes() const {
    if (!attributes_ && has(ListColumn::Attributes)) {
        const auto column = (*this)[ListColumn::Attributes];
        attributes_ = numericPrefix(column.substr(0, column.find(kTokenSeparator)));
    }
    return attributes_;
}

}  // namespace quillon
