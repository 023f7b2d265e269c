// SPDX-License-Identifier: MIT
#include "job/copy_journal.h"

#include <charconv>
#include <utility>

#include <fmt/format.h>

#include "platform/folders.h"
#include "text/fields.h"

namespace quillon {

namespace {

constexpr std::string_view kSource = "# source ";  // size, seconds, nanoseconds, and whether its sectors were looked at
constexpr std::string_view kLooked = "looked";
constexpr std::string_view kGap = "# gap ";  // beginning and length
// A name that was cut in its middle is a name, too: only with this line behind it a check sum counts.
constexpr std::string_view kEnd = "# end";

template <typename Number>
bool readNumber(std::string_view text, Number& number) {
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
    return problem == std::errc() && end == text.data() + text.size();
}

// A copy of which the marker says that parts are missing has no such line: it is to be made again.
std::string sourceLine(const CopyFacts& facts) {
    if (!facts.sourceModified || !facts.gaps.empty() || (facts.unread && !facts.unread->empty()))
        return {};
    return fmt::format("{}{} {} {}{}\n", kSource, facts.size, facts.sourceModified->seconds,
                       facts.sourceModified->nanoseconds, facts.unread ? " " + std::string(kLooked) : "");
}

void readSource(std::string_view text, CopyFacts& facts) {
    const auto fields = splitFields(text, ' ');
    FileTime modified;
    if (fields.size() < 3 || !readNumber(fields[0], facts.size) || !readNumber(fields[1], modified.seconds) ||
        !readNumber(fields[2], modified.nanoseconds))
        return;
    facts.sourceModified = modified;
    if (fields.size() > 3 && fields[3] == kLooked)
        facts.unread.emplace();
}

void readGap(std::string_view text, CopyFacts& facts) {
    const auto fields = splitFields(text, ' ');
    ByteRange gap;
    std::uint64_t length = 0;
    if (fields.size() == 2 && readNumber(fields[0], gap.begin) && readNumber(fields[1], length)) {
        gap.end = gap.begin + length;
        facts.gaps.push_back(gap);
    }
}

std::optional<Sha256Digest> digestOf(std::string_view hex) {
    Sha256Digest digest{};
    for (std::size_t i = 0; i < digest.size(); ++i) {
        unsigned value = 0;
        const std::string_view pair = hex.substr(2 * i, 2);
        if (std::from_chars(pair.data(), pair.data() + pair.size(), value, 16).ec != std::errc())
            return std::nullopt;
        digest[i] = static_cast<Sha256Digest::value_type>(value);
    }
    return digest;
}

}  // namespace

NativePath copyJournalIn(const NativePath& target, const std::string& jobId) {
    return target / (jobId + ".sha256-running");
}

void CopyJournal::add(std::string_view name, const CopyFacts& facts) {
    if (given_ || !facts.hash)
        return;
    std::string lines;
    if (!file_.isOpen()) {
        auto file = File::openForAppending(path_);
        given_ = !file;
        if (given_)
            return;
        file_ = *std::move(file);
        lines = "\n\n";  // the last line of a killed run may have no end
    }
    lines += sourceLine(facts);
    for (const ByteRange& gap : facts.gaps) lines += fmt::format("{}{} {}\n", kGap, gap.begin, gap.bytes());
    lines += checkSumLine(hexText(*facts.hash), name);
    lines += kEnd;
    lines += '\n';
    write(lines);
}

void CopyJournal::write(std::string_view lines) {
    const auto before = file_.size();
    given_ = !before || !file_.write(lines);
    if (given_ && before)
        passOver(file_.truncate(*before), "a part of a note counts as none");
}

void CopyJournal::remove() {
    passOver(file_.close(), "it goes");
    passOver(removeFile(path_), "there may be none; one that stays says what the lists say");
}

Result<void> readCopyJournal(const NativePath& journal, const std::function<void(NotedCopy)>& take) {
    auto sums = CheckSumReader::open(journal);
    if (!sums && (sums.error().kind == ErrorKind::NotFound || isFolder(journal)))
        return {};
    if (!sums)
        return failure(sums.error());
    NotedCopy copy;
    auto more = sums->nextLine();
    for (; more && *more; more = sums->nextLine()) {
        const std::string_view line = sums->line();
        if (line == kEnd && copy.facts.hash)
            take(std::exchange(copy, {}));
        else if (line.empty() || line == kEnd)
            copy = {};
        else if (line.starts_with(kSource))
            readSource(line.substr(kSource.size()), copy.facts);
        else if (line.starts_with(kGap))
            readGap(line.substr(kGap.size()), copy.facts);
        else if (auto sum = readCheckSumLine(line)) {
            copy.name = std::move(sum->name);
            copy.facts.hash = digestOf(sum->digest);
        }
    }
    return more.map([](bool) {});
}

}  // namespace quillon
