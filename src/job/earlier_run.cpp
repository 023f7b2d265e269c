// SPDX-License-Identifier: MIT
#include "job/earlier_run.h"

#include <nlohmann/json.hpp>

#include "app/kept_files.h"
#include "evidence/job_keys.h"
#include "evidence/name_text.h"
#include "job/evidence_facts.h"

namespace quillon {

namespace {

// "/mnt/a/" and "/mnt/a" are one folder.
std::string_view withoutLastSeparator(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    return path;
}

bool isSame(const Volume& one, const Volume& other) {
    return one.uuid.empty() || other.uuid.empty() ? one == other : one.uuid == other.uuid;
}

RunFacts factsIn(EvidenceReader& evidence) {
    namespace keys = job_keys;
    const auto text = [&](const char* key) {
        return evidence.jobText(key).value_or(std::nullopt).value_or(std::string());
    };
    RunFacts facts;
    facts.source = sourceIn(evidence);
    facts.volume = {text(keys::kFileSystem), text(keys::kVolume)};
    facts.end = text(keys::kEnd);
    facts.rules = evidence.jobNumber(keys::kRules).value_or(std::nullopt).value_or(0);
    const auto options = nlohmann::json::parse(text(keys::kOptions), nullptr, false);
    const auto isOn = [&](const char* name, bool otherwise) {
        const bool told = options.is_object() && options.contains(name) && options[name].is_boolean();
        return told ? options[name].get<bool>() : otherwise;
    };
    facts.commonHeaders = isOn("common_headers", false);
    facts.headsLeftOut = !isOn("heads", true);
    return facts;
}

// Of the last run, or of the one before it where the last was killed before it wrote anything.
std::optional<RunFacts> factsBeside(const NativePath& list) {
    for (const auto& evidence : {evidenceBeside(list), earlierEvidenceBeside(list)}) {
        auto run = EarlierRun::open(evidence);
        if (run && !run->facts().end.empty())
            return run->facts();
    }
    return std::nullopt;
}

bool isOf(const RunFacts& run, const NativePath& source) {
    return withoutLastSeparator(run.source.native()) == withoutLastSeparator(source.native());
}

}  // namespace

bool RunFacts::isComplete() const {
    return end == job_keys::kComplete;
}

bool RunFacts::isOfSamePlace(const RunFacts& other) const {
    return isOf(*this, other.source) && isSame(volume, other.volume);
}

bool RunFacts::goesBySameRules(const RunFacts& other) const {
    return rules != 0 && rules == other.rules && commonHeaders == other.commonHeaders;
}

RunFacts placeNow(const NativePath& source) {
    RunFacts facts;
    facts.source = source;
    facts.volume = volumeOf(source);
    facts.volume.uuid = nameText(facts.volume.uuid);
    return facts;
}

Result<EarlierRun> EarlierRun::open(const NativePath& evidence) {
    auto reader = EvidenceReader::open(evidence);
    if (!reader)
        return failure(reader.error());
    RunFacts facts = factsIn(*reader);
    return EarlierRun(std::move(*reader), std::move(facts));
}

std::int64_t EarlierRun::files() {
    auto count = reader_.prepare("SELECT count(*) FROM file");
    return count && count->step().value_or(false) ? count->integer(0) : 0;
}

Result<bool> EarlierRun::find(std::string_view path, EvidenceRow& row) {
    return rows_.find(reader_, path, row);
}

const FileHead* EarlierRun::headToTake(const EvidenceRow& row) {
    // A retest may have met an error and left the head of before.
    if (!row.grade || row.grade == Grade::AccessError || row.unread != 0 ||
        (facts_.isComplete() && row.grade != Grade::Good))
        return nullptr;
    if (facts_.headsLeftOut) {
        leftOut_.length = kHeaderBytes;
        return reader_.isVouchedFor(row).value_or(false) ? &leftOut_ : nullptr;
    }
    const FileHead* const head = reader_.head(row).value_or(nullptr);
    return head != nullptr && head->length == kHeaderBytes ? head : nullptr;
}

FileTail EarlierRun::tailToTake(const EvidenceRow& row) const {
    const bool again = row.tail == tails::kUnread || (facts_.isComplete() && row.tail != tails::kWhole);
    return again ? FileTail() : FileTail{row.tail, row.tailDetail};
}

bool wasLeftUnfinished(const NativePath& list, const NativePath& source) {
    const auto facts = factsBeside(list);
    return facts && !facts->isComplete() && isOf(*facts, source);
}

bool hasEarlierRun(const NativePath& list, const NativePath& source) {
    const auto facts = factsBeside(list);
    return facts && isOf(*facts, source);
}

}  // namespace quillon
