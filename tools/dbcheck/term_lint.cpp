// SPDX-License-Identifier: MIT
#include "dbcheck/term_lint.h"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>

#include "platform/source_files.h"
#include "testing/header_term.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace quillon {

namespace {

void add(Problems& problems, const Problem& place, std::string text) {
    problems.push_back({place.file, place.line, std::move(text)});
}

// A position as the editors write it: digits without a leading zero, 0 to 512.
std::optional<std::size_t> readPosition(std::string_view field) {
    std::size_t value = 0;
    const auto parsed = std::from_chars(field.data(), field.data() + field.size(), value);
    const bool whole = parsed.ec == std::errc() && parsed.ptr == field.data() + field.size();
    if (!whole || value > kHeaderBytes || (field.size() > 1 && field.front() == '0'))
        return std::nullopt;
    return value;
}

bool isUpperHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}

// What is wrong with a term, if anything is.
const char* wrongTerm(std::string_view term, bool hexadecimal) {
    if (term.empty())
        return "the term is empty and fits every file";
    if (hexadecimal) {
        if (!std::all_of(term.begin(), term.end(), isUpperHexDigit))
            return "a hexadecimal term holds the digits 0-9 and A-F in upper case, and nothing else";
        return term.size() % 2 == 0 ? nullptr : "a hexadecimal term has its digits in pairs";
    }
    if (term.front() == ' ' || term.back() == ' ')
        return "blanks at the end of a text term are lost in an editor: give it in hexadecimal";
    const auto printable = [](unsigned char c) { return c >= 0x20 && c != 0x7F; };
    return std::all_of(term.begin(), term.end(), printable) ? nullptr : "a text term holds a control character";
}

// What wiping leaves behind, and what flash memory holds before it is written.
void lintEmptiness(const PlainRecord& record, const Problem& place, Problems& problems) {
    for (const char empty : {'\0', '\xFF'}) {
        if (record.folded.find_first_not_of(empty) == std::string::npos)
            add(problems, place,
                fmt::format("the term is all {:02X}, as an empty sector is", static_cast<unsigned char>(empty)));
    }
}

void lintLength(const PlainRecord& record, const Problem& place, Problems& problems) {
    const std::size_t least = record.position == 0 ? kLeastFloatingBytes : kLeastFixedBytes;
    if (record.folded.size() < least)
        add(problems, place, fmt::format("the term has {} bytes, at least {} tell", record.folded.size(), least));
    const std::size_t start = record.position == 0 ? 0 : record.position - 1;
    if (record.folded.size() > kHeaderBytes - start)
        add(problems, place, "the term reaches beyond the first 512 bytes and never fits");
}

}  // namespace

bool coversRecord(const PlainRecord& record, const PlainRecord& other) {
    if (record.position == 0)
        return other.folded.find(record.folded) != std::string::npos;
    if (other.position == 0 || record.position < other.position)
        return false;
    const std::size_t shift = record.position - other.position;
    return shift <= other.folded.size() && other.folded.compare(shift, record.folded.size(), record.folded) == 0;
}

std::optional<PlainRecord> lintRecord(std::string_view line, std::size_t fieldCount, const Problem& place,
                                      Problems& problems) {
    const auto fields = splitFields(line);
    if (fields.size() != fieldCount) {
        add(problems, place, fmt::format("{} fields instead of {}", fields.size(), fieldCount));
        return std::nullopt;
    }
    const auto position = readPosition(fields[0]);
    if (!position) {
        add(problems, place, "the offset is not a whole number from 0 to 512");
        return std::nullopt;
    }
    if (fields[2] != "H" && fields[2] != "T") {
        add(problems, place, "the type is neither H nor T");
        return std::nullopt;
    }
    const bool hexadecimal = fields[2] == "H";
    if (const char* wrong = wrongTerm(fields[1], hexadecimal)) {
        add(problems, place, wrong);
        return std::nullopt;
    }
    if (fieldCount > 3 && (fields[3].empty() || trim(fields[3]) != fields[3]))
        add(problems, place, "the name of the file type is empty or has blanks around it");
    PlainRecord record{*position, hexadecimal ? hexToText(fields[1]) : std::string(fields[1])};
    lowerPageInPlace(record.folded);
    lintLength(record, place, problems);
    lintEmptiness(record, place, problems);
    return record;
}

std::vector<std::string_view> lintLines(const std::string& file, std::string_view bytes, Problems& problems) {
    std::vector<std::string_view> lines;
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF" || bytes.substr(0, 2) == "\xFF\xFE")
        add(problems, {file, 1, {}}, "a byte-order mark stands at the start");
    while (!bytes.empty()) {
        const Problem place{file, lines.size() + 1, {}};
        const auto end = bytes.find_first_of("\r\n");
        const auto line = bytes.substr(0, end);
        bytes.remove_prefix(line.size());
        const bool pair = bytes.substr(0, 2) == "\r\n";
        bytes.remove_prefix(std::min<std::size_t>(bytes.size(), pair ? 2 : 1));
        if (!pair)
            add(problems, place, "the line does not end in carriage return and line feed");
        if (line.empty())
            add(problems, place, "the line is empty");
        lines.push_back(line);
    }
    return lines;
}

void lintTerms(const std::string& file, std::string_view bytes, std::size_t fieldCount, Problems& problems) {
    if (bytes.empty())
        add(problems, {file, 0, {}}, "the file has no records");
    struct Seen {
        std::size_t line;
        PlainRecord record;
    };
    std::vector<Seen> seen;
    std::size_t number = 0;
    for (const auto line : lintLines(file, bytes, problems)) {
        const Problem place{file, ++number, {}};
        if (line.empty())
            continue;
        auto record = lintRecord(line, fieldCount, place, problems);
        if (!record)
            continue;
        const auto earlier =
            std::find_if(seen.begin(), seen.end(), [&](const Seen& one) { return coversRecord(one.record, *record); });
        if (earlier != seen.end()) {
            const auto text = earlier->record == *record ? "the same record stands in line {}"
                                                         : "never reached: line {} fits whatever this one fits";
            add(problems, place, fmt::format(fmt::runtime(text), earlier->line));
        }
        seen.push_back({number, std::move(*record)});
    }
}

}  // namespace quillon
