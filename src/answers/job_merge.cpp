// SPDX-License-Identifier: MIT
#include "answers/job_merge.h"

#include <algorithm>
#include <queue>

#include "answers/merged_job.h"
#include "answers/walk_order.h"
#include "app/kept_files.h"
#include "app/list_mark.h"
#include "job/evidence_facts.h"
#include "job/job_id.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// What a transaction changes stays in memory until its end.
constexpr int kFilesInTransaction = 16'384;

// An evidence in the making, under a name that listings leave out; one that is let go leaves nothing behind.
class TemporaryEvidence {
public:
    explicit TemporaryEvidence(const NativePath& folder) : path_(folder / temporaryName()) {}
    TemporaryEvidence(const TemporaryEvidence&) = delete;
    TemporaryEvidence& operator=(const TemporaryEvidence&) = delete;
    ~TemporaryEvidence() {
        for (const auto& file : {path_, journalOf(path_)}) {
            if (!path_.empty() && pathExists(file))
                passOver(removeFile(file), "it is litter, and taken away as such later");
        }
    }

    [[nodiscard]] Result<EvidenceStore> open(EvidenceStore::Heads heads) const {
        return EvidenceStore::create(path_).and_then([&] { return EvidenceStore::open(path_, heads); });
    }
    [[nodiscard]] Result<void> arrive(const NativePath& target) {
        auto renamed = renameFile(path_, target);
        if (renamed)
            path_.clear();
        return renamed;
    }

private:
    NativePath path_;
};

// All jobs by the file that each is at: the first one in the order of the walk comes first.
class InWalkOrder {
public:
    explicit InWalkOrder(std::vector<MergeInput>& jobs) : queue_(Later{}) {
        for (auto& job : jobs) waiting_.push_back(&job);
    }

    /// Null behind the last file of all.
    [[nodiscard]] Result<MergeInput*> next() {
        if (!queue_.empty()) {
            waiting_.push_back(queue_.top());
            queue_.pop();
        }
        for (MergeInput* job : waiting_) {
            const auto more = job->next();
            if (!more)
                return failure(more.error());
            if (*more)
                queue_.push(job);
        }
        waiting_.clear();
        return queue_.empty() ? nullptr : queue_.top();
    }

private:
    struct Later {
        bool operator()(const MergeInput* a, const MergeInput* b) const {
            return filesInWalkOrder(a->path(), b->path()) > 0;
        }
    };
    std::vector<MergeInput*> waiting_;
    std::priority_queue<MergeInput*, std::vector<MergeInput*>, Later> queue_;
};

EvidenceStore::Heads headsOf(std::vector<MergeInput>& jobs) {
    const bool leftOut = std::ranges::all_of(jobs, [](MergeInput& job) { return !job.keepsHeads(); });
    return leftOut ? EvidenceStore::Heads::LeftOut : EvidenceStore::Heads::Kept;
}

NativePath folderOf(const std::string& source) {
    return source.empty() ? "/" : source;
}

class Merge {
public:
    Merge(std::vector<MergeInput>& jobs, EvidenceStore store, ListWriter list, EvidenceStore::Heads heads)
        : jobs_(jobs),
          describer_(folderOf(commonSource(jobs))),
          store_(std::move(store)),
          list_(std::move(list)),
          heads_(heads) {}

    [[nodiscard]] Result<void> addFiles() {
        InWalkOrder files(jobs_);
        while (true) {
            const auto job = files.next();
            if (!job)
                return failure(job.error());
            if (*job == nullptr)
                break;
            if (auto added = addFile(**job); !added)
                return added;
        }
        return list_.sync().and_then([this] { return list_.close(); });
    }

    [[nodiscard]] Result<void> finish(const std::string& id, const NativePath& list) {
        return writeFolderErrors(store_, commonSource(jobs_), jobs_)
            .and_then([&] { return writeMergedJob(store_, id, jobs_); })
            .and_then([&] { return writeListFacts(store_, list, digest_.value()); })
            .and_then([&] { return store_.finish(); });
    }

    [[nodiscard]] const MergedFigures& figures() const { return figures_; }

private:
    [[nodiscard]] Result<void> addFile(MergeInput& job) {
        if (job.path() == last_)
            return failure(ErrorKind::PathAccess, readable(std::string_view(last_)) + ": " + lastJob_->id() + " and " +
                                                      job.id() + " both list it");
        last_ = job.path();
        lastJob_ = &job;
        if (job.part() && figures_.files == 0)
            token_ = utf8ToUtf16(job.part()->token);
        ++figures_.files;
        return addRow(job).and_then([&] { return job.file().row ? addLine(job.line()) : Result<void>(); });
    }

    [[nodiscard]] Result<void> addRow(MergeInput& job) {
        row_ = job.file();
        const auto head = headFor(job);
        if (!head)
            return failure(head.error());
        const std::string_view path = describer_.below(job.path());
        const auto slash = path.rfind('/');
        row_.folder = path.substr(0, slash == path.npos ? 0 : slash);
        if (row_.row)
            row_.row = figures_.rows + 1;
        // The messages of the first job are those of all.
        if (row_.grade && !row_.result && job.message(*row_.grade) != jobs_.front().message(*row_.grade))
            row_.result = job.message(*row_.grade);
        auto added = store_.add(row_, *head);
        if (!added || ++pending_ < kFilesInTransaction)
            return added;
        pending_ = 0;
        return store_.commit();
    }

    // A head that its digest does not vouch for is not passed on as if it were whole.
    [[nodiscard]] Result<const FileHead*> headFor(MergeInput& job) {
        if (!job.file().head)
            return nullptr;
        const std::int64_t before = job.evidence().damaged();
        auto head = heads_ == EvidenceStore::Heads::LeftOut ? job.evidence().headOrLength(job.file())
                                                            : job.evidence().head(job.file());
        figures_.damaged += job.evidence().damaged() - before;
        return head;
    }

    [[nodiscard]] Result<void> addLine(ListRow& line) {
        if (!token_)
            token_ = line.token();
        line.replaceToken(*token_);
        ++figures_.rows;
        digest_.add(line);
        return list_.write(line);
    }

    std::vector<MergeInput>& jobs_;
    RowDescriber describer_;
    EvidenceStore store_;
    ListWriter list_;
    EvidenceStore::Heads heads_;
    MergedFigures figures_;
    EvidenceRow row_;
    ListDigest digest_;
    std::optional<std::u16string> token_;
    std::string last_;
    const MergeInput* lastJob_ = nullptr;
    int pending_ = 0;
};

Result<std::vector<MergeInput>> openAll(const std::vector<JobFiles>& jobs) {
    std::vector<MergeInput> inputs;
    inputs.reserve(jobs.size());
    for (const auto& job : jobs) {
        auto input = MergeInput::open(job);
        if (!input)
            return failure(input.error());
        inputs.push_back(std::move(*input));
    }
    if (inputs.empty())
        return failure(ErrorKind::NotFound, "there is no job to merge");
    auto checked = checkTogether(inputs).and_then([&] { return checkRules(inputs); });
    if (!checked)
        return failure(checked.error());
    return inputs;
}

Result<NativePath> freePlace(const NativePath& folder, const std::string& id) {
    if (id.empty() || cleanJobId(id) != id || folder.empty())
        return failure(ErrorKind::BadName, "\"" + readable(std::string_view(id)) + "\" cannot be the ID of a job");
    auto list = childPath(folder, id + ".csv");
    if (!list)
        return list;
    for (const auto& file : {*list, evidenceBeside(*list)}) {
        if (pathExists(file))
            return failure(ErrorKind::PathAccess, readable(file.native()) + ": it is there already");
    }
    return list;
}

// The list carries the mark of an unfinished one until both files have their names.
Result<MergedFigures> write(const NativePath& target, const std::string& id, std::vector<MergeInput>& jobs) {
    auto replacement = Replacement::begin(target);
    if (!replacement)
        return failure(replacement.error());
    auto list = ListWriter::into(replacement->takeFile(), ListEncoding::Utf16);
    if (!list)
        return failure(list.error());
    TemporaryEvidence evidence(target.parent_path());
    const auto heads = headsOf(jobs);
    auto store = evidence.open(heads);
    if (!store)
        return failure(store.error());
    MergedFigures figures;
    auto named = [&]() -> Result<void> {
        Merge merge(jobs, std::move(*store), std::move(*list), heads);
        auto merged = merge.addFiles()
                          .and_then([&] { return markUnfinished(target); })
                          .and_then([&] { return replacement->arrive(); })
                          .and_then([&] { return merge.finish(id, target); });
        figures = merge.figures();
        return merged;
    }();
    named = named.and_then([&] { return evidence.arrive(evidenceBeside(target)); }).and_then([&] {
        return markFinished(target);
    });
    if (named)
        return figures;
    for (const auto& file : {target, evidenceBeside(target), unfinishedMark(target)}) {
        if (pathExists(file))
            passOver(removeFile(file), "it is marked as unfinished");
    }
    return failure(named.error());
}

}  // namespace

Result<MergedFigures> mergeJobs(const NativePath& folder, const std::string& id, const std::vector<JobFiles>& jobs) {
    const auto target = freePlace(folder, id);
    if (!target)
        return failure(target.error());
    auto inputs = openAll(jobs);
    if (!inputs)
        return failure(inputs.error());
    return write(*target, id, *inputs);
}

}  // namespace quillon
