// SPDX-License-Identifier: MIT
#include "job/earlier_copies.h"

#include "app/kept_files.h"
#include "platform/folders.h"

namespace quillon {

std::optional<EarlierCopies> EarlierCopies::find(const NativePath& list, const NativePath& source,
                                                 const NativePath& target, const std::string& jobId) {
    auto copies = OlderCopies::read(target, jobId);
    if (!copies || copies->isEmpty())
        return std::nullopt;
    auto run = EarlierRun::open(earlierEvidenceBeside(list));
    if (!run || !run->facts().isOfSamePlace(placeNow(source)))
        return std::nullopt;
    return EarlierCopies(*std::move(run), source, *std::move(copies));
}

std::optional<CopyFacts> EarlierCopies::standing(const ListRow& row, const std::string& target,
                                                 const std::function<bool()>& goOn) {
    const std::string path(row.nativePath());
    const auto found = run_.find(describer_.below(path), row_);
    if (!found || !*found || row_.copied != 1 || row_.badBytes > 0)
        return std::nullopt;
    const auto source = fileStamp(path);
    if (!source || static_cast<std::int64_t>(source->size) != row_.size ||
        source->modified.seconds * 1'000'000'000 + source->modified.nanoseconds != row_.modified)
        return std::nullopt;
    const auto hash = copies_.wholeOne(target, goOn);
    if (!hash)
        return std::nullopt;
    CopyFacts facts;
    facts.size = source->size;
    facts.hash = hash;
    if (row_.badBytes)  // somebody has looked, and all of it was there
        facts.unread.emplace();
    return facts;
}

}  // namespace quillon
