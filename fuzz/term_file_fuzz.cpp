// SPDX-License-Identifier: MIT
// The lines of a term file or of a common list, a zero byte, a header: every record does with the header what the plain
// rules say, and the editors' reading survives a save.
#include <algorithm>
#include <cmath>
#include <vector>

#include "input.h"
#include "testing/common_list.h"
#include "testing/header_term.h"
#include "testing/term_file.h"
#include "text/fields.h"
#include "text/numbers.h"
#include "text/page_text.h"

namespace {

using namespace quillon;

std::string foldedText(std::string text) {
    lowerPageInPlace(text);
    return text;
}

// The rules in their own words: position 0 is anywhere, another one is rounded and counts from 1.
MatchResult matchByRule(std::string_view line, const std::string& head) {
    const auto fields = splitFields(line);
    if (fields.size() < 2)
        return MatchResult::Defective;
    const bool hexadecimal = fields.size() == 2 || fields[2] == "H";
    const std::string term = foldedText(hexadecimal ? hexToText(fields[1]) : std::string(fields[1]));
    const double position = numericPrefix(fields[0]);
    if (position == 0)
        return head.find(term) != std::string::npos ? MatchResult::Yes : MatchResult::No;
    const double rounded = std::nearbyint(position);
    if (rounded < 1)
        return MatchResult::GivenUp;
    if (rounded > 513)
        return MatchResult::No;
    return head.substr(static_cast<std::size_t>(rounded) - 1, term.size()) == term ? MatchResult::Yes : MatchResult::No;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = fuzz::bytesOf(data, size);
    std::string_view rest = bytes;
    const std::string_view file = fuzz::takePiece(rest);
    HeaderBytes head;
    head.fill(' ');
    std::copy_n(rest.begin(), std::min(rest.size(), head.size()), head.begin());
    foldHeader(head);
    const std::string folded(head.data(), head.size());

    const auto lines = splitLines(file);
    for (const auto line : lines) {
        // An empty term directly behind the buffer is there, as anywhere in it.
        fuzz::require(CompiledTerm::fromTermFileLine(line).match(head) == matchByRule(line, folded),
                      "a record follows the rules");
    }
    CommonList list;
    list.assign(lines);
    fuzz::require(list.records().size() == lines.size(), "every line is a record");
    for (const auto& record : list.records()) static_cast<void>(record.term.match(head));

    std::string saved;
    for (const auto& row : parseTermFile(file))
        saved += row.offset.bytes + "," + row.term.bytes + "," + row.type.bytes + "\r\n";
    fuzz::require(parseTermFile(saved) == parseTermFile(file), "the editors' rows survive a save");
    return 0;
}
