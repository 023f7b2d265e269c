// SPDX-License-Identifier: MIT
#include "testing/second_opinion/source_end.h"

#include <algorithm>
#include <span>

namespace quillon {

namespace {

// Opens the file when something is asked of it for the first time.
class SourceEndReader final : public EndReader {
public:
    SourceEndReader(SourceFiles& files, const std::string& path) : files_(files), path_(path) {}

    [[nodiscard]] Result<std::string> read(std::uint64_t at, std::uint64_t count) override {
        if (!file_) {
            auto opened = files_.openForPlaces(path_);
            if (!opened)
                return failure(opened.error());
            file_ = std::move(*opened);
        }
        std::string bytes(count, '\0');
        const auto got = files_.readAt(*file_, at, std::as_writable_bytes(std::span(bytes)));
        if (!got)
            return failure(got.error());
        if (*got < bytes.size())
            return failure(ErrorKind::PathAccess, path_ + ": the file has become shorter");
        return bytes;
    }

private:
    SourceFiles& files_;
    const std::string& path_;
    std::optional<File> file_;
};

}  // namespace

Result<Opinion> sourceEndOpinion(SourceFiles& files, const EndQuestion& question) {
    SourceEndReader reader(files, question.path);
    if (question.head)
        return fileEndOpinion(*question.head, question.size, reader);
    const auto head = reader.read(0, std::min<std::uint64_t>(kHeaderBytes, question.size));
    return head ? fileEndOpinion(*head, question.size, reader) : failure(head.error());
}

}  // namespace quillon
