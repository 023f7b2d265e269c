// SPDX-License-Identifier: MIT
// Any bytes as a file list, in each encoding: the reader ends, and gives the rows that a plain
// split gives.
#include <filesystem>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include "app/file_list.h"
#include "input.h"
#include "text/fields.h"
#include "text/page_text.h"

namespace {

using namespace quillon;

// A file without a disk.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes) : descriptor_(::memfd_create("list", 0)) {
        fuzz::require(::write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()),
                      "memory for a file");
    }
    ~MemoryFile() { ::close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    [[nodiscard]] NativePath path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

void tryRow(const ListRow& row) {
    const auto plain = splitFields(row.line());
    fuzz::require(row.columns() == plain.size(), "a row has a column for each comma and one more");
    for (std::size_t i = 0; i < static_cast<std::size_t>(ListColumn::Count); ++i)
        fuzz::require(row[static_cast<ListColumn>(i)] == (i < plain.size() ? plain[i] : std::u16string_view()),
                      "the columns are those of a plain split");
    const ListRow fresh(row.line());
    fuzz::require(row.extension() == fresh.extension() && row.nativePath() == fresh.nativePath() &&
                      row.size() == fresh.size() && row.attributes() == fresh.attributes(),
                  "nothing of an earlier row stays");
}

std::vector<std::u16string> linesOf(ListReader& reader) {
    std::vector<std::u16string> lines;
    ListRow row;
    while (reader.next(row)) {
        tryRow(row);
        lines.emplace_back(row.line());
    }
    return lines;
}

std::vector<std::u16string> plainLines(const std::u16string& text) {
    std::vector<std::u16string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const auto end = text.find(u'\n', at);
        std::u16string line = text.substr(at, end == text.npos ? end : end - at);
        if (!line.empty() && line.back() == u'\r')  // at the end of the list: of a line end that was cut in half
            line.pop_back();
        lines.push_back(line);
        at = end == text.npos ? text.size() : end + 1;
    }
    return lines;
}

void tryReading(std::string_view bytes) {
    const MemoryFile file(bytes);
    auto reader = ListReader::open(file.path());
    fuzz::require(reader.has_value(), "a list opens");
    const auto lines = linesOf(*reader);
    fuzz::require(!reader->error(), "a list is read to its end");
    std::u16string text;
    if (reader->encoding() == ListEncoding::Page)
        text = pageBytesToUtf16(bytes);
    else
        text = fuzz::unitsOf(reader->encoding() == ListEncoding::Utf16WithMark ? bytes.substr(2) : bytes);
    fuzz::require(lines == plainLines(text), "the lines are those of a plain split");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = fuzz::bytesOf(data, size);
    tryReading(bytes);
    tryReading("\xFF\xFE" + bytes);
    std::string wide;
    for (const char c : bytes) wide += {c, '\0'};
    tryReading(wide);
    return 0;
}
