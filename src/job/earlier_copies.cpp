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
    // One that was killed before its evidence said anything may have noted copies, which tell of their sources
    // themselves.
    if (!run || (!run->facts().end.empty() && !run->facts().isOfSamePlace(placeNow(source))))
        return std::nullopt;
    return EarlierCopies(*std::move(run), source, *std::move(copies));
}

std::optional<CopyFacts> EarlierCopies::standing(const ListRow& row, const std::string& target,
                                                 const std::function<bool()>& goOn) {
    const std::string path(row.nativePath());
    const auto source = fileStamp(path);
    auto facts = source ? toldOf(path, target, *source) : std::nullopt;
    if (facts)
        facts->hash = copies_.wholeOne(target, goOn);
    return facts && facts->hash ? std::move(facts) : std::nullopt;
}

// What the run before says of a copy of this very source, all of which it could read.
std::optional<CopyFacts> EarlierCopies::toldOf(std::string_view path, const std::string& target,
                                               const FileStamp& source) {
    if (const auto* const noted = copies_.notedOf(target, source))
        return *noted;
    const auto found = run_.find(describer_.below(path), row_);
    if (!found || !*found || row_.copied != 1 || row_.badBytes > 0 ||
        static_cast<std::int64_t>(source.size) != row_.size || evidenceTime(source.modified) != row_.modified)
        return std::nullopt;
    CopyFacts facts;
    facts.size = source.size;
    facts.sourceModified = source.modified;
    if (row_.badBytes)  // somebody has looked, and all of it was there
        facts.unread.emplace();
    return facts;
}

}  // namespace quillon
