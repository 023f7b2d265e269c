// SPDX-License-Identifier: MIT
#include "job/older_copies.h"

#include "job/copy_queue.h"
#include "job/copy_record.h"
#include "platform/medium_reader.h"

namespace quillon {

Result<OlderCopies> OlderCopies::read(const NativePath& target, const std::string& jobId) {
    OlderCopies copies(withOneSlash(target.native()));
    auto reader = CheckSumReader::open(manifestIn(target, jobId));
    if (!reader && reader.error().kind != ErrorKind::NotFound)
        return failure(reader.error());
    while (reader) {
        auto sum = reader->next();
        if (!sum)
            return failure(sum.error());
        if (!*sum)
            break;
        copies.known_[std::move((*sum)->name)] = {std::move((*sum)->digest), {}};
    }
    return copies.readNotes(target, jobId).map([&copies] { return std::move(copies); });
}

// What they tell is younger than the lists. A copy that lacks parts, which has gaps or no word on its source, is as
// none: it is to be made again.
Result<void> OlderCopies::readNotes(const NativePath& target, const std::string& jobId) {
    return readCopyJournal(copyJournalIn(target, jobId), [this](NotedCopy copy) {
        if (copy.facts.gaps.empty() && copy.facts.sourceModified)
            known_[std::move(copy.name)] = {hexText(*copy.facts.hash), std::move(copy.facts)};
        else
            known_.erase(copy.name);
    });
}

// Null for none.
const OlderCopies::Known* OlderCopies::find(std::string_view copy) const {
    if (known_.empty() || !copy.starts_with(root_))
        return nullptr;
    const auto known = known_.find(std::string(copy.substr(root_.size())));
    return known == known_.end() ? nullptr : &known->second;
}

bool OlderCopies::isKnown(std::string_view copy) const {
    return find(copy) != nullptr;
}

const CopyFacts* OlderCopies::notedOf(std::string_view copy, const FileStamp& source) const {
    const auto* const known = find(copy);
    if (known == nullptr || !known->noted)
        return nullptr;
    const CopyFacts& noted = *known->noted;
    return noted.size == source.size && noted.sourceModified == source.modified ? &noted : nullptr;
}

std::optional<Sha256Digest> OlderCopies::wholeOne(std::string_view copy, const std::function<bool()>& goOn) const {
    const auto* const known = find(copy);
    if (known == nullptr)
        return std::nullopt;
    auto reader = MediumReader::open(NativePath(copy));
    if (!reader)
        return std::nullopt;
    const auto hash = hashOfMedium(*std::move(reader), [&goOn](std::uint64_t) { return goOn(); });
    return hash && hexText(*hash) == known->sum ? std::optional(*hash) : std::nullopt;
}

}  // namespace quillon
