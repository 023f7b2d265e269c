// SPDX-License-Identifier: MIT
#include "app/gathered_rows.h"

#include <utility>

#include "text/page_text.h"

namespace quillon {

namespace {

constexpr std::size_t kWrittenTogether = std::size_t{256} * 1024;
constexpr std::u16string_view kLineEnd = u"\r\n";
constexpr char16_t kMark = 0xFEFF;

void append(std::string& bytes, std::u16string_view text) {
    bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t));
}

}  // namespace

GatheredRows::GatheredRows(File file, ListEncoding encoding) : file_(std::move(file)), encoding_(encoding) {
    gathered_.reserve(2 * kWrittenTogether);
    if (encoding == ListEncoding::Utf16WithMark)
        append(gathered_, {&kMark, 1});
}

Result<void> GatheredRows::write(const ListRow& row) {
    if (encoding_ == ListEncoding::Page) {
        gathered_ += toPage(row.line()).bytes;
        gathered_ += "\r\n";
    } else {
        append(gathered_, row.line());
        append(gathered_, kLineEnd);
    }
    return gathered_.size() < kWrittenTogether ? Result<void>() : writeGathered();
}

Result<void> GatheredRows::writeGathered() {
    auto written = file_.write(std::string_view(gathered_));
    gathered_.clear();
    return written;
}

Result<void> GatheredRows::sync() {
    return writeGathered().and_then([this] { return file_.sync(); });
}

}  // namespace quillon
