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

// Null for none.
const std::string* OlderCopies::sumOf(std::string_view copy) const {
    if (sums_.empty() || !copy.starts_with(root_))
        return nullptr;
    const auto sum = sums_.find(std::string(copy.substr(root_.size())));
    return sum == sums_.end() ? nullptr : &sum->second;
}

bool OlderCopies::isKnown(std::string_view copy) const {
    return sumOf(copy) != nullptr;
}

std::optional<Sha256Digest> OlderCopies::wholeOne(std::string_view copy, const std::function<bool()>& goOn) const {
    const auto* const sum = sumOf(copy);
    if (sum == nullptr)
        return std::nullopt;
    auto reader = MediumReader::open(NativePath(copy));
    if (!reader)
        return std::nullopt;
    const auto hash = hashOfMedium(*std::move(reader), [&goOn](std::uint64_t) { return goOn(); });
    return hash && hexText(*hash) == *sum ? std::optional(*hash) : std::nullopt;
}

}  // namespace quillon
