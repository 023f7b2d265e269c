// SPDX-License-Identifier: MIT
#include "job/earlier_runs.h"

#include "app/run_beside.h"
#include "evidence/evidence_store.h"
#include "job/earlier_run.h"
#include "platform/folders.h"
#include "platform/second_name.h"

namespace quillon {

namespace {

// Rows of one transaction: all that it changes is held in memory.
constexpr int kRowsInPart = 4096;

// Whether the evidence of `last` can hold heads, or verdicts, of `before`.
bool canTakeOver(const RunFacts& last, const RunFacts& before) {
    return last.headsLeftOut ? last.goesBySameRules(before) : !before.headsLeftOut;
}

// What became of a file's copy, where the run that was not whole has not come to it.
Result<void> keepCopy(const EvidenceRow& before, const EvidenceRow& last, EvidenceStore& store) {
    if (!before.copied || last.copied || before.size != last.size || before.modified != last.modified)
        return {};
    CopyOutcome outcome{*before.copied == 1, before.verified, before.copyError, {}, {}};
    if (!last.badBytes) {
        outcome.badBytes = before.badBytes;
        outcome.badRanges = before.badRanges;
    }
    return store.setCopy(last.id, outcome);
}

// Adds the files of `before` that `last` does not have, and what `last` does not know of the others. A file that has to
// be read comes without a head, so that it counts as known and is read all the same.
Result<void> addMissing(EarlierRun& before, EarlierRun& last, EvidenceStore& store) {
    const bool withHeads = canTakeOver(last.facts(), before.facts());
    EvidenceRow row;
    EvidenceRow there;
    const auto commit = [&] {
        last.letGo();
        return store.commit();
    };
    for (int added = 0;;) {
        const auto more = before.reader().next(row);
        if (!more || !*more)
            return more ? commit() : failure(more.error());
        const auto found = last.find(row.path(), there);
        if (!found)
            return failure(found.error());
        const FileHead* const head = withHeads && !*found ? before.headToTake(row) : nullptr;
        row.row.reset();
        if (auto written = *found ? keepCopy(row, there, store) : store.add(row, head); !written)
            return written;
        if (++added % kRowsInPart != 0)
            continue;
        if (auto committed = commit(); !committed)
            return committed;
    }
}

Result<void> merge(const NativePath& evidence, const NativePath& earlier) {
    auto before = EarlierRun::open(earlier);
    auto last = EarlierRun::open(evidence);
    if (!last)
        return failure(last.error());
    if (!before || !last->facts().isOfSamePlace(before->facts()))
        return {};  // nothing that could be relied on
    const auto heads = last->facts().headsLeftOut ? EvidenceStore::Heads::LeftOut : EvidenceStore::Heads::Kept;
    auto store = EvidenceStore::open(evidence, heads);
    if (!store)
        return failure(store.error());
    return store->indexNames(true).and_then([&] { return addMissing(*before, *last, *store); });
}

}  // namespace

Result<void> bringTogether(const NativePath& list, KeptFiles& kept, EventLoop& loop) {
    const NativePath evidence = evidenceBeside(list);
    const NativePath earlier = earlierEvidenceBeside(list);
    if (!pathExists(earlier))
        return pathExists(evidence) ? Result<void>() : failure(ErrorKind::NotFound, "there is no evidence");
    const auto last = [&]() -> Result<RunFacts> {
        return EarlierRun::open(evidence).map([](const EarlierRun& run) { return run.facts(); });
    }();
    if (last && last->isComplete())
        return removeFile(earlier);
    if (last && !last->end.empty())
        return answerBeside(loop, [evidence, earlier] { return merge(evidence, earlier); }).and_then([&] {
            return removeFile(earlier);
        });
    // The last run was killed before it wrote anything, or what it wrote is of no use.
    return kept.moveEvidenceAway(list).and_then([&](const auto&) { return renameFile(earlier, evidence); });
}

Result<void> setAside(const NativePath& list, EventLoop& loop) {
    const NativePath evidence = evidenceBeside(list);
    return answerBeside(loop,
                        [evidence]() -> Result<void> {
                            auto store = EvidenceStore::open(evidence);
                            return store ? store->indexNames(true) : failure(store.error());
                        })
        .and_then([&] { return giveSecondName(evidence, earlierEvidenceBeside(list)); });
}

}  // namespace quillon
