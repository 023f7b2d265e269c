// SPDX-License-Identifier: MIT
#include "job/older_copies.h"

#include "job/copy_queue.h"
#include "job/copy_record.h"
#include "platform/medium_reader.h"

namespace quillon {

Result<OlderCopies> OlderCopies::read(const NativePath& target, const std::string& jobId) {
    OlderCopies copies(withOneSlash(target.native()));
    auto reader = CheckSumReader::open(manifestIn(target, jobId));
    if (!reader)
        return reader.error().kind == ErrorKind::NotFound ? Result<OlderCopies>(std::move(copies))
                                                          : failure(reader.error());
    while (true) {
        auto sum = reader->next();
        if (!sum)
            return failure(sum.error());
        if (!*sum)
            return copies;
        copies.sums_[std::move((*sum)->name)] = std::move((*sum)->digest);
    }
}

std::optional<Sha256Digest> OlderCopies::wholeOne(std::string_view copy) const {
    if (sums_.empty() || !copy.starts_with(root_))
        return std::nullopt;
    const auto sum = sums_.find(std::string(copy.substr(root_.size())));
    if (sum == sums_.end())
        return std::nullopt;
    auto reader = MediumReader::open(NativePath(copy));
    if (!reader)
        return std::nullopt;
    const auto hash = hashOfMedium(*std::move(reader), [](std::uint64_t) { return true; });
    return hash && hexText(*hash) == sum->second ? std::optional(*hash) : std::nullopt;
}

}  // namespace quillon
