// SPDX-License-Identifier: MIT
#include "answers/file_copies.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "evidence/evidence_reader.h"
#include "evidence/job_keys.h"
#include "evidence/name_text.h"
#include "job/evidence_facts.h"
#include "platform/folders.h"
#include "platform/medium_reader.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// So many files are held at once, and so many outcomes go into the evidence together.
constexpr std::size_t kChunk = 4096;
constexpr std::size_t kOutcomes = 1000;
constexpr std::int64_t kCoarsestTime = 2;  // seconds

std::string_view nameIn(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace

Result<FileCopies> FileCopies::begin(const JobFiles& job, const CopyOrder& order) {
    auto answers = openAnswers(job, ReportMessages::fallback());
    if (!answers)
        return failure(answers.error());
    auto source = (*answers)->source();
    if (!source)
        return failure(source.error());
    FileCopies copies(job, order, *std::move(source));
    if (!order.failedOnly)
        return copies;
    auto older = OlderCopies::read(order.target, job.id);
    if (!older)
        return failure(older.error());
    copies.older_.emplace(*std::move(older));
    return copies;
}

CopyTask FileCopies::taskOf(const EvidenceRow& file) {
    const std::string path = source_.empty() ? file.path() : withOneSlash(source_) + file.path();
    std::string root = order_->target.native();
    if (order_->byGrade)
        root += std::string("/") + (file.grade ? kGrades[*file.grade].name.value : "not-tested");
    CopyTask task{file.id != 0 ? file.id : file.row.value_or(0), path, copyTarget(withOneSlash(root), path)};
    if (const auto extension = order_->rightNames ? names_.extensionOf(file, path) : "";
        task.target && !extension.empty() && !pathExists(path + "." + extension))  // a neighbour has that name
        *task.target += "." + extension;
    return task;
}

void FileCopies::noteNewName(const SettledCopy& copy) {
    if (recorded_ && nameIn(copy.source) != nameIn(copy.target))
        recorded_ = record_->renamed(nameText(copy.source), nameText(copy.target));
}

Result<bool> FileCopies::nextWanted(JobAnswers& answers, EvidenceRow& file, const GoOn& goOn) const {
    while (true) {
        if (goOn && !goOn())
            return false;
        auto more = answers.next(file);
        if (!more || !*more)
            return more;
        if (fits(order_->wish, file))
            return true;
    }
}

bool FileCopies::isMissing(const EvidenceRow& file, const CopyTask& task) {
    if (file.copied != 1)
        return true;
    const auto size = task.target ? fileSize(*task.target) : failure(ErrorKind::NotFound, {});
    return !size || static_cast<std::int64_t>(*size) != file.size;
}

// The source is what it was when the copy was made. Where nothing but a check sum tells of it, which may be of an
// older state of the source, its time has to be the one that a copy gets; volumes keep times to two seconds.
bool FileCopies::isOfItsSource(const Asked& asked) const {
    const auto source = fileStamp(asked.task.source);
    if (!source || !asked.task.target)
        return false;
    if (older_->notedOf(*asked.task.target, *source) != nullptr)
        return true;
    if (static_cast<std::int64_t>(source->size) != asked.size || evidenceTime(source->modified) != asked.modified)
        return false;
    if (asked.isRecorded)
        return true;
    const auto copied = modificationTime(*asked.task.target);
    return copied && std::abs(copied->seconds - source->modified.seconds) <= kCoarsestTime;
}

// Whole as it was recorded, and of a source that is what it was.
bool FileCopies::isThereAlready(const Asked& asked, EventLoop& loop) const {
    const auto goOn = [&loop] {
        loop.turn();
        return !loop.stopAsked();
    };
    return hasCheckSum(asked.task) && isOfItsSource(asked) && older_->wholeOne(*asked.task.target, goOn);
}

// Without one a copy is made again, whatever it is.
bool FileCopies::hasCheckSum(const CopyTask& task) const {
    return task.target && older_->isKnown(*task.target);
}

Result<void> FileCopies::eachFile(const Take& take, const GoOn& goOn) {
    auto answers = openAnswers(*job_, ReportMessages::fallback());
    if (!answers)
        return failure(answers.error());
    EvidenceRow file;
    while (true) {
        const auto more = nextWanted(**answers, file, goOn);
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        const CopyTask task = taskOf(file);
        if (!order_->failedOnly || isMissing(file, task) || !hasCheckSum(task))
            take(file, task);
    }
}

// True when there is something in the chunk. The evidence is free for a writer afterwards.
Result<bool> FileCopies::gather(JobAnswers& answers, std::vector<Asked>& chunk, const EventLoop& loop) {
    chunk.clear();
    EvidenceRow file;
    while (chunk.size() < kChunk) {
        const auto more = nextWanted(answers, file, [&loop] { return !loop.stopAsked(); });
        if (!more)
            return failure(more.error());
        if (!*more)
            break;
        Asked& asked = chunk.emplace_back(
            Asked{.task = taskOf(file), .modified = file.modified, .size = file.size, .isRecorded = file.copied == 1});
        asked.isMissing = !order_->failedOnly || isMissing(file, asked.task);
    }
    answers.rest();
    return !chunk.empty();
}

Result<void> FileCopies::run(EventLoop& loop, const Ended& ended) {
    auto answers = openAnswers(*job_, ReportMessages::fallback());
    if (!answers)
        return failure(answers.error());
    auto record =
        CopyRecord::begin(order_->target, job_->list.empty() ? NativePath() : job_->list.parent_path(), job_->id);
    if (!record)
        return failure(record.error());
    record_.emplace(*std::move(record));
    openEvidence();
    CopyQueue queue(loop, source_, order_->care, [&](const SettledCopy& copy) { end(copy, ended); });
    std::vector<Asked> chunk;
    Result<void> done;
    while (done && !sums_.stopped) {
        const auto more = gather(**answers, chunk, loop);
        if (!more)
            done = failure(more.error());
        sums_.stopped = loop.stopAsked();
        if (!more || !*more)
            break;
        done = copyChunk(chunk, queue, loop);
        if (chunk.size() < kChunk)  // a list would begin anew
            break;
    }
    queue.finish();
    noteInEvidence();
    const auto recorded = recorded_.and_then([this] { return record_->finish(); });
    return done.and_then([&] { return recorded; });
}

Result<void> FileCopies::copyChunk(std::vector<Asked>& chunk, CopyQueue& queue, EventLoop& loop) {
    for (Asked& asked : chunk) {
        while (!queue.hasRoom() && !sums_.stopped) copyFirst(queue, loop);
        if (sums_.stopped)
            break;
        const bool stays = leaveAlone(asked, loop);
        sums_.stopped = loop.stopAsked();  // the look was given up, and says nothing
        if (!stays && !sums_.stopped) {
            ++sums_.files;
            sums_.bytes += asked.size;
            queue.ask(std::move(asked.task));
        }
        loop.turn();
        sums_.stopped = loop.stopAsked();
    }
    while (!queue.empty() && !sums_.stopped) copyFirst(queue, loop);
    return recorded_;
}

// A copy that nothing speaks against counts for nothing; one that nobody knew of, as one that was there already.
bool FileCopies::leaveAlone(const Asked& asked, EventLoop& loop) {
    if (!order_->failedOnly || !isThereAlready(asked, loop))
        return false;
    // The check sums keep their line, the remark on its names is written anew.
    noteNewName({asked.task.number, asked.task.source, *asked.task.target, CopyFacts()});
    if (asked.isMissing) {
        ++sums_.files;
        sums_.bytes += asked.size;
        ++sums_.alreadyThere;
        outcomes_.emplace_back(asked.task.number, CopyOutcome{true, 1, {}, {}, {}});
    }
    return true;
}

void FileCopies::copyFirst(CopyQueue& queue, EventLoop& loop) {
    loop.workingOn(queue.first().source);
    queue.finishFirst([&loop](std::uint64_t, std::uint64_t) {
        loop.turn();
        return !loop.stopAsked();
    });
    sums_.stopped = loop.stopAsked();
    if (outcomes_.size() >= kOutcomes)
        noteInEvidence();
    loop.turn();
}

void FileCopies::end(const SettledCopy& copy, const Ended& ended) {
    CopyOutcome outcome = copyOutcome(copy.result, order_->care.verify);
    if (byMap_ && copy.result && copy.result->gaps.empty()) {
        outcome.badBytes.reset();
        outcome.badRanges.clear();
    }
    outcomes_.emplace_back(copy.number, std::move(outcome));
    if (copy.result) {
        ++sums_.copied;
        sums_.copiedBytes += static_cast<std::int64_t>(copy.result->size);
        sums_.damaged += copy.result->gaps.empty() ? 0 : 1;
        sums_.lessAttributes += copy.result->lostAttributes > 0 ? 1 : 0;
        noteNewName(copy);
        if (recorded_)
            recorded_ = record_->note(copy);
    } else {
        ++sums_.failed;
    }
    ended(copy);
}

// A list alone learns nothing.
void FileCopies::openEvidence() {
    if (job_->evidence.empty())
        return;
    auto store = EvidenceStore::open(job_->evidence);
    if (!store) {
        evidenceLoss_ = store.error().text;
        return;
    }
    store_.emplace(*std::move(store));
    if (auto evidence = EvidenceReader::open(job_->evidence)) {
        const auto origin = evidence->jobText(job_keys::kSectors).value_or(std::nullopt);
        knowsSectors_ = origin.has_value();
        byMap_ = origin == job_keys::kByMap;
    }
}

void FileCopies::noteInEvidence() {
    const auto outcomes = std::exchange(outcomes_, {});
    if (!store_ || outcomes.empty())
        return;
    Result<void> noted;
    for (const auto& [id, outcome] : outcomes)
        noted = noted.and_then([&, &number = id, &what = outcome] { return store_->setCopy(number, what); });
    const bool sawSectors =
        std::ranges::any_of(outcomes, [](const auto& one) { return one.second.badBytes.has_value(); });
    if (sawSectors && !std::exchange(knowsSectors_, true))
        noted = noted.and_then([this] { return store_->setJob(job_keys::kSectors, job_keys::kByCopy); });
    noted = noted.and_then([this] { return store_->commit(); });
    if (noted)
        return;
    evidenceLoss_ = noted.error().text;
    store_.reset();
}

}  // namespace quillon
