// SPDX-License-Identifier: MIT
#include "dbcheck/samples.h"

#include <charconv>

#include <fmt/format.h>

#include "dbcheck/table_file.h"
#include "testing/header_term.h"
#include "text/page_text.h"

namespace quillon {

namespace {

Result<std::uint64_t> readSize(const std::string& text, const std::string& path) {
    std::uint64_t size = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), size);
    if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size())
        return failure(ErrorKind::InvalidArgument, fmt::format("{}: the true size \"{}\" is no number", path, text));
    return size;
}

}  // namespace

Result<std::vector<Sample>> readSamples(const NativePath& folder, const std::string& table) {
    const auto index = TableFile::read(folder / table);
    if (!index)
        return failure(index.error());
    if (auto complete = index->require({"path", "ext", "true_size"}); !complete)
        return failure(complete.error());
    SourceFiles files;
    std::vector<Sample> samples;
    for (std::size_t row = 0; row < index->rowCount(); ++row) {
        Sample sample;
        sample.path = index->field(row, "path");
        sample.extension = lowered(PageText{index->field(row, "ext")}).bytes;
        sample.truth = index->field(row, "truth");
        const auto size = readSize(index->field(row, "true_size"), sample.path);
        if (!size)
            return failure(size.error());
        sample.trueSize = *size;
        if (auto read = files.readHead((folder / sample.path).native(), sample.head); !read)
            return failure(read.error());
        sample.folded = sample.head;
        foldHeader(sample.folded);
        samples.push_back(std::move(sample));
    }
    return samples;
}

}  // namespace quillon
