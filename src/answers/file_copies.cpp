// SPDX-License-Identifier: MIT
#include "answers/file_copies.h"

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

// The extension of the one format that the evidence names; empty where it names none or several.
std::string provenExtension(const EvidenceRow& file) {
    constexpr std::string_view kBegin = "as of ";
    if (file.reason != Reason::OtherFormat || !file.detail.starts_with(kBegin))
        return {};
    const std::string extension = file.detail.substr(kBegin.size());
    return extension.find_first_of(" ,/") == extension.npos && extension != file.extension ? extension : "";
}

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
    if (auto read = copies.readOlderSums(); !read)
        return failure(read.error());
    return copies;
}

// What an earlier run recorded is asked for only where copies that are there already are to be left alone.
Result<void> FileCopies::readOlderSums() {
    if (!order_->failedOnly)
        return {};
    auto reader = CheckSumReader::open(manifestIn(order_->target, job_->id));
    if (!reader)
        return reader.error().kind == ErrorKind::NotFound ? Result<void>() : failure(reader.error());
    while (true) {
        auto sum = reader->next();
        if (!sum)
            return failure(sum.error());
        if (!*sum)
            return {};
        olderSums_[(*sum)->name] = (*sum)->digest;
    }
}

CopyTask FileCopies::taskOf(const EvidenceRow& file) const {
    const std::string path = source_.empty() ? file.path() : withOneSlash(source_) + file.path();
    std::string root = order_->target.native();
    if (order_->byGrade)
        root += std::string("/") + (file.grade ? kGrades[*file.grade].name.value : "not-tested");
    CopyTask task{file.id != 0 ? file.id : file.row.value_or(0), path, copyTarget(withOneSlash(root), path)};
    if (const auto extension = order_->rightNames ? provenExtension(file) : ""; task.target && !extension.empty())
        *task.target += "." + extension;
    return task;
}

void FileCopies::noteNewName(const SettledCopy& copy) {
    if (recorded_ && nameIn(copy.source) != nameIn(copy.target))
        recorded_ = record_->renamed(nameText(copy.source), nameText(copy.target));
}

Result<bool> FileCopies::nextWanted(JobAnswers& answers, EvidenceRow& file) const {
    while (true) {
        auto more = answers.next(file);
        if (!more || !*more)
            return more;
        if (fits(order_->wish, file) && (!order_->failedOnly || isMissing(file)))
            return true;
    }
}

bool FileCopies::isMissing(const EvidenceRow& file) const {
    if (file.copied != 1)
        return true;
    const auto target = taskOf(file).target;
    const auto size = target ? fileSize(*target) : failure(ErrorKind::NotFound, {});
    return !size || static_cast<std::int64_t>(*size) != file.size;
}

// Whole as it was recorded, and of a source that is what it was.
bool FileCopies::isThereAlready(const Asked& asked) const {
    const auto prefix = withOneSlash(order_->target.native());
    if (!asked.task.target || olderSums_.empty())
        return false;
    const auto sum = olderSums_.find(asked.task.target->substr(prefix.size()));
    const auto source = fileStamp(asked.task.source);
    if (sum == olderSums_.end() || !source || static_cast<std::int64_t>(source->size) != asked.size ||
        source->modified.seconds * 1'000'000'000 + source->modified.nanoseconds != asked.modified)
        return false;
    auto reader = MediumReader::open(NativePath(*asked.task.target));
    if (!reader)
        return false;
    const auto hash = hashOfMedium(*std::move(reader), [](std::uint64_t) { return true; });
    return hash && hexText(*hash) == sum->second;
}

Result<void> FileCopies::eachFile(const Take& take) {
    auto answers = openAnswers(*job_, ReportMessages::fallback());
    if (!answers)
        return failure(answers.error());
    EvidenceRow file;
    while (true) {
        const auto more = nextWanted(**answers, file);
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        take(file, taskOf(file));
    }
}

// True when there is something in the chunk. The evidence is free for a writer afterwards.
Result<bool> FileCopies::gather(JobAnswers& answers, std::vector<Asked>& chunk) const {
    chunk.clear();
    EvidenceRow file;
    while (chunk.size() < kChunk) {
        const auto more = nextWanted(answers, file);
        if (!more)
            return failure(more.error());
        if (!*more)
            break;
        chunk.push_back({taskOf(file), file.modified, file.size});
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
        const auto more = gather(**answers, chunk);
        if (!more)
            done = failure(more.error());
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
        ++sums_.files;
        sums_.bytes += asked.size;
        if (isThereAlready(asked)) {
            ++sums_.alreadyThere;
            outcomes_.emplace_back(asked.task.number, CopyOutcome{true, 1, {}, {}, {}});
        } else {
            queue.ask(std::move(asked.task));
        }
        loop.turn();
    }
    while (!queue.empty() && !sums_.stopped) copyFirst(queue, loop);
    return recorded_;
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
    outcomes_.emplace_back(copy.number, copyOutcome(copy.result, order_->care.verify));
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
    if (store)
        store_.emplace(*std::move(store));
    else
        evidenceLoss_ = store.error().text;
}

void FileCopies::noteInEvidence() {
    const auto outcomes = std::exchange(outcomes_, {});
    if (!store_ || outcomes.empty())
        return;
    Result<void> noted;
    for (const auto& [id, outcome] : outcomes)
        noted = noted.and_then([&, &number = id, &what = outcome] { return store_->setCopy(number, what); });
    noted = noted.and_then([this] { return store_->commit(); });
    if (noted)
        return;
    evidenceLoss_ = noted.error().text;
    store_.reset();
}

}  // namespace quillon
