// SPDX-License-Identifier: MIT
#include "app/file_list.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr std::size_t kReadBytes = std::size_t{64} * 1024;
constexpr std::size_t kLongestLine = 1'000'000;
constexpr std::string_view kMark = "\xFF\xFE";
constexpr std::u16string_view kLineEnd = u"\r\n";

static_assert(std::endian::native == std::endian::little, "rows are handed to the file as they lie in memory");

// The second byte of nearly every 16-bit character of a path, a date or a number is zero. 8-bit text holds no zero
// byte, unless a damaged disk left some; but then it has line ends as two bytes side by side, as 16-bit text hardly
// ever has.
bool looksSixteenBit(std::string_view bytes) {
    std::size_t zeros = 0;
    std::size_t lineEnds = 0;
    for (std::size_t i = 1; i < bytes.size(); ++i) {
        zeros += i % 2 == 1 && bytes[i] == '\0' ? 1 : 0;
        lineEnds += bytes[i - 1] == '\r' && bytes[i] == '\n' ? 1 : 0;
    }
    return zeros > 4 * lineEnds;
}

}  // namespace

Result<ListReader> ListReader::open(const NativePath& path) {
    auto file = File::openForReading(path);
    if (!file)
        return failure(file.error());
    ListReader reader(std::move(*file));
    reader.raw_.resize(kReadBytes);
    reader.detectEncoding();
    if (reader.error_)
        return failure(*reader.error_);
    return reader;
}

void ListReader::detectEncoding() {
    const auto count = file_.read(std::as_writable_bytes(std::span(raw_)));
    if (!count) {
        error_ = count.error();
        return;
    }
    ended_ = *count < raw_.size();
    std::size_t start = 0;
    if (std::string_view(raw_.data(), *count).substr(0, kMark.size()) == kMark) {
        encoding_ = ListEncoding::Utf16WithMark;
        start = kMark.size();
    } else {
        encoding_ = looksSixteenBit({raw_.data(), *count}) ? ListEncoding::Utf16 : ListEncoding::Page;
    }
    std::memmove(raw_.data(), raw_.data() + start, *count - start);
    decode(*count - start);
}

// Appends what the first `bytes` of raw_ hold to the text; half a character waits for its other half.
void ListReader::decode(std::size_t bytes) {
    if (encoding_ == ListEncoding::Page) {
        for (std::size_t i = 0; i < bytes; ++i) text_.push_back(pageToUnicode(static_cast<unsigned char>(raw_[i])));
        return;
    }
    const std::size_t old = text_.size();
    text_.resize(old + bytes / 2);
    std::memcpy(text_.data() + old, raw_.data(), bytes / 2 * 2);
    undecoded_ = bytes % 2;
    if (undecoded_ != 0)
        raw_[0] = raw_[bytes - 1];
}

bool ListReader::fill() {
    if (ended_)
        return false;
    text_.erase(0, at_);
    at_ = 0;
    const auto count = file_.read(std::as_writable_bytes(std::span(raw_)).subspan(undecoded_));
    if (!count) {
        error_ = count.error();
        ended_ = true;
        return false;
    }
    ended_ = *count < raw_.size() - undecoded_;
    decode(undecoded_ + *count);
    return true;
}

bool ListReader::next(ListRow& row) {
    const auto line = nextLine();
    if (line)
        row.assign(*line);
    return line.has_value();
}

// Good until the next call.
std::optional<std::u16string_view> ListReader::nextLine() {
    std::size_t searched = 0;
    while (true) {
        const std::u16string_view rest = std::u16string_view(text_).substr(at_);
        const auto end = findAscii(rest, u'\n', searched);
        if (end != rest.npos) {
            at_ += end + 1;
            const bool pair = end > 0 && rest[end - 1] == u'\r';
            return rest.substr(0, pair ? end - 1 : end);
        }
        searched = rest.size();
        if (searched >= kLongestLine || !fill())
            break;
    }
    std::u16string_view rest = std::u16string_view(text_).substr(at_);
    if (rest.empty())
        return std::nullopt;
    at_ = text_.size();
    if (ended_ && rest.back() == u'\r')  // a line end that was cut in half
        rest.remove_suffix(1);
    return rest;
}

Result<ListWriter> ListWriter::create(const NativePath& path, ListEncoding encoding) {
    auto file = File::create(path);
    if (!file)
        return failure(file.error());
    return into(std::move(*file), encoding);
}

Result<ListWriter> ListWriter::into(File file, ListEncoding encoding) {
    ListWriter writer(std::move(file), encoding);
    if (encoding == ListEncoding::Utf16WithMark) {
        if (auto marked = writer.file_.write(kMark); !marked)
            return failure(marked.error());
        writer.length_ = kMark.size();
    }
    return writer;
}

Result<void> ListWriter::write(const ListRow& row) {
    line_ = row.line();
    line_ += kLineEnd;
    PageText page;
    auto bytes = std::as_bytes(std::span(line_));
    if (encoding_ == ListEncoding::Page) {
        page = toPage(line_);
        bytes = std::as_bytes(std::span(page.bytes.data(), page.bytes.size()));
    }
    if (torn_) {
        if (auto cut = file_.truncate(length_); !cut)
            return cut;
        torn_ = false;
    }
    auto written = file_.write(bytes);
    if (written)
        length_ += bytes.size();
    else
        torn_ = !file_.truncate(length_).has_value();
    return written;
}

}  // namespace quillon
