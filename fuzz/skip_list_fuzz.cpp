// SPDX-License-Identifier: MIT
// The lines of a skip list, a zero byte, a path: the list agrees with its patterns tried one by one.
#include <algorithm>
#include <vector>

#include "input.h"
#include "testing/skip_list.h"
#include "text/fields.h"
#include "text/page_text.h"
#include "text/unicode.h"
#include "text/wildcard.h"

namespace {

using namespace quillon;

std::u16string folded(std::u16string text) {
    std::replace(text.begin(), text.end(), u'\\', u'/');
    return lowered(std::move(text));
}

// A pattern that is none ends the comparison: the file is kept unless one ahead of it fits.
bool fitsOneByOne(const std::vector<std::u16string>& lines, const std::u16string& path) {
    for (auto line : lines) {
        if (line.empty() || line.front() != u'*')
            line = u"*" + line;
        if (line.back() != u'*')
            line += u"*";
        const auto pattern = WildcardPattern::compile(folded(line));
        if (!pattern)
            return false;
        if (pattern->matches(folded(path)))
            return true;
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = fuzz::bytesOf(data, size);
    std::string_view rest = bytes;
    std::vector<std::u16string> lines;
    for (const auto line : splitLines(fuzz::takePiece(rest))) lines.push_back(pageBytesToUtf16(line));
    const std::u16string path = pageBytesToUtf16(rest);
    SkipList list;
    list.assign(lines);
    fuzz::require(list.patterns().size() == lines.size(), "every line is a pattern");
    fuzz::require(list.matches(path) == fitsOneByOne(lines, path), "the list agrees with its patterns");
    return 0;
}
