// SPDX-License-Identifier: MIT
#include "job/check_sum_file.h"

#include "evidence/digest.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::size_t kChunk = 64UL * 1024;
// No name is as long; a file without line ends is no list.
constexpr std::size_t kLongestLine = 64UL * 1024;

std::uint64_t digestOf(std::string_view name) {
    Digest digest;
    digest.add(name);
    return static_cast<std::uint64_t>(digest.value());
}

}  // namespace

Result<CheckSumReader> CheckSumReader::open(const NativePath& path) {
    auto file = File::openForReading(path);
    if (!file)
        return failure(file.error());
    return CheckSumReader(*std::move(file));
}

Result<bool> CheckSumReader::nextLine() {
    while (true) {
        const auto end = text_.find('\n', at_);
        if (end != text_.npos) {
            line_ = text_.substr(at_, end - at_);
            at_ = end + 1;
            return true;
        }
        text_.erase(0, std::exchange(at_, 0));
        if (text_.size() > kLongestLine)
            return failure(ErrorKind::PathAccess, readable(file_.path().native()) + ": this is no list of check sums");
        const std::size_t had = text_.size();
        text_.resize(had + kChunk);
        const auto count = file_.read(std::as_writable_bytes(std::span(text_).subspan(had)));
        text_.resize(had + count.value_or(0));
        if (!count)
            return failure(count.error());
        if (*count > 0)
            continue;
        line_ = std::exchange(text_, {});
        return !line_.empty();
    }
}

Result<std::optional<CheckSum>> CheckSumReader::next() {
    while (true) {
        const auto more = nextLine();
        if (!more)
            return failure(more.error());
        if (!*more)
            return std::nullopt;
        if (auto sum = readCheckSumLine(line_))
            return sum;
        if (!line_.empty() && line_.front() != '#')
            ++unread_;
    }
}

Result<CheckSumFile> CheckSumFile::begin(std::vector<NativePath> paths) {
    std::vector<Place> places;
    for (auto& path : paths) {
        auto replacement = Replacement::begin(path);
        if (!replacement)
            return failure(replacement.error());
        File file = replacement->takeFile();
        places.push_back({std::move(path), *std::move(replacement), std::move(file)});
    }
    return CheckSumFile(std::move(places));
}

Result<void> CheckSumFile::add(std::string_view name, const Sha256Digest& digest) {
    drop(name);
    any_ = true;
    return put(checkSumLine(hexText(digest), name));
}

Result<void> CheckSumFile::remark(std::string_view text) {
    return put("# " + std::string(text) + "\n");
}

void CheckSumFile::drop(std::string_view name) {
    named_.insert(digestOf(name));
}

bool CheckSumFile::isNamed(std::string_view name) const {
    return named_.contains(digestOf(name));
}

Result<void> CheckSumFile::put(std::string_view line) {
    buffer_ += line;
    return buffer_.size() < kChunk ? Result<void>() : flush();
}

Result<void> CheckSumFile::flush() {
    for (Place& place : places_) {
        if (auto written = place.file.write(buffer_); !written)
            return written;
    }
    buffer_.clear();
    return {};
}

Result<void> CheckSumFile::keepOthers() {
    auto older = CheckSumReader::open(places_.front().path);
    if (!older)
        return older.error().kind == ErrorKind::NotFound ? Result<void>() : failure(older.error());
    while (true) {
        const auto sum = older->next();
        if (!sum)
            return failure(sum.error());
        if (!*sum)
            return {};
        if (named_.contains(digestOf((*sum)->name)))
            continue;
        any_ = true;
        if (auto kept = put(checkSumLine((*sum)->digest, (*sum)->name)); !kept)
            return kept;
    }
}

Result<void> CheckSumFile::finish() {
    if (auto kept = keepOthers().and_then([this] { return flush(); }); !kept)
        return kept;
    for (Place& place : places_) {
        if (!any_) {
            if (auto gone = removeFile(place.path); !gone && gone.error().kind != ErrorKind::NotFound)
                return gone;
            continue;
        }
        auto arrived = place.file.sync().and_then([&] { return place.file.close(); }).and_then([&] {
            return place.replacement.arrive();
        });
        if (!arrived)
            return arrived;
    }
    return {};
}

}  // namespace quillon
