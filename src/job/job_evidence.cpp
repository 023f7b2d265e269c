// SPDX-License-Identifier: MIT
#include "job/job_evidence.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/kept_files.h"
#include "app/turn_until.h"
#include "evidence/job_keys.h"
#include "evidence/rules_digest.h"
#include "job/counters_json.h"
#include "job/part_facts.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// So many copies are handed over together.
constexpr std::size_t kCopiesAtOnce = 256;

// A medium may take some seconds for one transaction; a job does not wait longer for its evidence.
constexpr std::chrono::seconds kLongestWait{5};

}  // namespace

void JobEvidence::begin() {
    writer_.reset();
    times_.reset();
    keepsTimes_ = true;
    failures_.clear();
    digest_ = {};
    token_.clear();
    lastId_ = 0;
    shifts_.clear();
    copies_.clear();
    tails_.clear();
    watched_ = false;
    state_.evidenceLoss.clear();
    goingOn_.reset();
    wanted_ = on_ = state_.options.keepEvidence;
    if (!on_)
        return;
    describer_.emplace(state_.options.source.value_or(NativePath()));
}

void JobEvidence::found(std::string_view folder, std::string_view name, const FileTime& modified) {
    if (!keepsTimes_ || (!on_ && !state_.options.resume))
        return;
    path_.assign(folder).append(name);
    const auto noted = noteTime(modified);
    if (noted)
        return;
    keepsTimes_ = false;
    times_.reset();
    if (on_)
        lose(noted.error());
}

Result<void> JobEvidence::noteTime(const FileTime& modified) {
    if (!times_) {
        auto made = RowTimes::create(installation_.appFolder());
        if (!made)
            return failure(made.error());
        times_ = std::move(*made);
    }
    return times_->add(path_, modified.seconds * 1'000'000'000 + modified.nanoseconds);
}

void JobEvidence::folderFailed(std::string_view path, std::string_view words) {
    if (!on_ || failures_.size() >= kMostFolderErrors)
        return;
    path.remove_suffix(path.ends_with('/') ? 1 : 0);
    failures_.push_back({std::string(path), std::string(words)});
}

void JobEvidence::listCreated(const NativePath& list) {
    goingOn_.listCreated(list);
    if (!on_)
        return;
    list_ = list;
    keepsHeads_ = state_.options.keepHeads && !goingOn_.leavesHeadsOut();
    const auto heads = keepsHeads_ ? EvidenceStore::Heads::Kept : EvidenceStore::Heads::LeftOut;
    const auto path = evidenceBeside(list);
    const auto open = [path, heads]() -> Result<EvidenceStore> {
        if (pathExists(path))
            return failure(ErrorKind::PathAccess, readable(path.native()) + ": the old one could not be kept");
        return EvidenceStore::create(path).and_then([&] { return EvidenceStore::open(path, heads); });
    };
    writer_ = std::make_unique<EvidenceWriter>(open, RowDescriber::takeFindings);
    if (auto started = writer_->start(); !started)
        return lose(started.error());
    beginWriter();
}

// On the writer's thread nothing of the job may be looked at: it gets copies.
void JobEvidence::beginWriter() {
    JobState facts;
    facts.options = state_.options;
    facts.options.keepHeads = keepsHeads_;
    std::optional<PartFacts> part;
    if (state_.options.part)
        part = partFacts(state_.options, installation_.paths(), surroundings_.dates, token_);
    const auto begin = [facts = std::make_shared<JobState>(std::move(facts)), part, host = surroundings_.hostName,
                        messages = messages_, paths = installation_.paths()](EvidenceStore& store) {
        return writeJobBegin(store, *facts, host)
            .and_then([&] { return part ? writePartFacts(store, *part) : Result<void>(); })
            .and_then([&] { return writeMessages(store, messages); })
            .and_then([&] { return store.setJob(job_keys::kRules, rulesDigest(paths, messages)); });
    };
    passOver(hand([&] { return writer_->change(begin); }), "the loss was told");
}

bool JobEvidence::isOn() {
    if (!on_ || !writer_)
        return false;
    if (const auto why = writer_->lost())
        lose(*why);
    return on_;
}

// Gives something to the writer, waiting a little where its queue is full. Behind each row, so that what happens in a
// turn meets no row half done.
bool JobEvidence::hand(const std::function<bool()>& give) {
    if (!isOn())
        return false;
    if (give())
        return true;
    const Moment latest = momentNow() + kLongestWait;
    bool room = false;
    turnUntil(surroundings_.loop, [&](std::chrono::milliseconds pause) {
        room = writer_->roomWithin(pause);
        return room || momentNow() >= latest;
    });
    if (room && give())
        return true;
    lose({ErrorKind::PathAccess, "the disk is too slow for it"});
    return false;
}

KnownFile JobEvidence::find(const ListRow& row, bool opens) {
    if (!goingOn_.isOn())
        return {};
    KnownFile known = goingOn_.find(row, times_ ? times_->aheadOf(row.nativePath()) : std::nullopt, opens);
    if (on_ && !known.tail.tail.empty())
        tails_.emplace_back(row.nativePath(), known.tail);
    return known;
}

// The rows come in the order in which they were asked for.
void JobEvidence::takeTail(const std::string& path, EvidenceRow& out) {
    if (tails_.empty() || tails_.front().first != path)
        return;
    out.tail = std::move(tails_.front().second.tail);
    out.tailDetail = std::move(tails_.front().second.tailDetail);
    tails_.pop_front();
}

void JobEvidence::graded(const ListRow& row, std::optional<std::int64_t> line, const FileVerdict& verdict) {
    if (!isOn())
        return;
    if (line)
        digest_.add(row);
    // A line without columns is no file.
    if (row.columns() < 2)
        return;
    const auto describe = [&](EvidenceRow& out) {
        out.row = line;
        describer_->describe(row, out);
        takeTail(row.nativePath(), out);
        RowDescriber::judge(verdict, messages_, out);
        out.modified = times_ ? times_->of(row.nativePath()) : std::nullopt;
    };
    if (hand([&] { return writer_->add(verdict.head, verdict.open, describe); })) {
        ++lastId_;
        if (line)
            noteLine(*line);
    }
}

void JobEvidence::noteLine(std::int64_t line) {
    const std::int64_t shift = lastId_ - line;
    if (shift != (shifts_.empty() ? 0 : shifts_.back().second))
        shifts_.emplace_back(line, shift);
}

std::int64_t JobEvidence::idOfLine(std::int64_t line) const {
    const auto behind = std::ranges::upper_bound(shifts_, line, {}, &std::pair<std::int64_t, std::int64_t>::first);
    return line + (behind == shifts_.begin() ? 0 : std::prev(behind)->second);
}

void JobEvidence::copied(const SettledCopy& copy, bool verified) {
    if (!isOn())
        return;
    copies_.emplace_back(idOfLine(copy.number), copyOutcome(copy.result, verified));
    watched_ = watched_ || copies_.back().second.badBytes.has_value();
    if (copies_.size() >= kCopiesAtOnce)
        handCopies();
}

void JobEvidence::handCopies() {
    if (copies_.empty())
        return;
    const auto note = [copies = std::exchange(copies_, {})](EvidenceStore& store) -> Result<void> {
        for (const auto& [id, outcome] : copies) {
            if (auto set = store.setCopy(id, outcome); !set)
                return set;
        }
        return {};
    };
    passOver(hand([&] { return writer_->change(note); }), "the loss was told");
}

void JobEvidence::listedOnly(const NativePath& rawList) {
    if (!isOn())
        return;
    auto reader = ListReader::open(rawList, ListEncoding::Utf16);  // the names may look like 8-bit text
    if (!reader)
        return lose(reader.error());
    ListRow row;
    for (std::int64_t line = 1; isOn() && reader->next(row); ++line) {
        graded(row, line, {});
        surroundings_.loop.turn();
    }
}

void JobEvidence::end(const char* how) {
    times_.reset();
    finish(how);
    goingOn_.end(on_ == wanted_);
}

void JobEvidence::finish(const char* how) {
    if (!isOn())
        return;
    handCopies();
    std::vector<FolderFailure> failures;
    for (const auto& failed : failures_)
        failures.push_back({std::string(describer_->below(failed.path)), failed.words});
    const auto finish = [failures, how, list = list_, digest = digest_.value(),
                         counters = countersAsJson(state_.counters).dump(), quality = state_.texts.quality,
                         watched = watched_](EvidenceStore& store) -> Result<void> {
        for (const auto& failed : failures) {
            if (auto set = store.setFolderError(failed.path, failed.words); !set)
                return set;
        }
        if (watched) {
            if (auto set = store.setJob(job_keys::kSectors, job_keys::kByCopy); !set)
                return set;
        }
        return writeJobEnd(store, how, counters, quality)
            .and_then([&] { return pathExists(list) ? writeListFacts(store, list, digest) : Result<void>(); })
            .and_then([&] { return store.finish(); });
    };
    if (!hand([&] { return writer_->change(finish); }))
        return;
    writer_->close();
    const auto ends = [this](std::chrono::milliseconds pause) { return writer_->endsWithin(pause); };
    if (!ends(kTurnInterval))
        turnUntil(surroundings_.loop, ends);
    if (isOn())
        writer_.reset();
}

void JobEvidence::lose(const FileError& why) {
    on_ = false;
    writer_.reset();
    state_.evidenceLoss = why.text;
    state_.counters.lostEvidence = 1;
    state_.log.add({surroundings_.clock.now(), "Evidence lost : " + why.text, kLightRed});
}

}  // namespace quillon
