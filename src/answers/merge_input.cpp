// SPDX-License-Identifier: MIT
#include "answers/merge_input.h"

#include <nlohmann/json.hpp>

#include "answers/ask_evidence.h"
#include "answers/walk_order.h"
#include "app/list_mark.h"
#include "evidence/job_keys.h"
#include "job/evidence_facts.h"
#include "text/list_text.h"

namespace quillon {

namespace {

tl::unexpected<FileError> wrong(const std::string& id, std::string_view what) {
    return failure(ErrorKind::PathAccess, readable(std::string_view(id)) + ": " + std::string(what));
}

}  // namespace

Result<MergeInput> MergeInput::open(const JobFiles& job) {
    if (job.list.empty() || job.evidence.empty())
        return wrong(job.id, job.list.empty() ? "there is no list of it" : "there is no evidence of it");
    if (isUnfinished(job.list))
        return wrong(job.id, "its list is not whole");
    auto evidence = EvidenceReader::open(job.evidence);
    if (!evidence)
        return failure(evidence.error());
    auto list = ListReader::open(job.list);
    if (!list)
        return failure(list.error());
    MergeInput input(job.id, std::move(*evidence), std::move(*list));
    if (auto read = input.readFacts(); !read)
        return failure(read.error());
    return input;
}

Result<void> MergeInput::readFacts() {
    const auto end = evidence_.jobText(job_keys::kEnd);
    if (!end)
        return failure(end.error());
    if (end->value_or("") != job_keys::kComplete)
        return wrong(id_, "it did not come to its end");
    auto part = readPartFacts(evidence_);
    if (!part)
        return failure(part.error());
    part_ = std::move(*part);
    const auto options = evidence_.jobText(job_keys::kOptions);
    if (!options)
        return failure(options.error());
    const auto json = nlohmann::json::parse(options->value_or(""), nullptr, false);
    keepsHeads_ = !json.is_object() || json.value("heads", true);
    source_ = sourceIn(evidence_).native();
    while (source_.ends_with('/')) source_.pop_back();
    return readMessages();
}

Result<void> MergeInput::readMessages() {
    return ask(evidence_, "SELECT id, text FROM grade", [this](const Statement& row) {
        if (const auto grade = numbered<Grade>(row, 0))
            messages_[*grade] = row.text(1);
    });
}

Result<bool> MergeInput::next() {
    const auto more = evidence_.next(file_);
    if (!more)
        return failure(more.error());
    if (!*more)
        return checkEnd().map([] { return false; });
    last_.swap(path_);
    path_.assign(source_).append("/").append(file_.path());
    if (!last_.empty() && filesInWalkOrder(last_, path_) >= 0)
        return wrong(id_, "its files do not stand in the order of the walk");
    if (!file_.row)
        return true;
    return readLine().map([] { return true; });
}

Result<void> MergeInput::readLine() {
    if (!list_.next(line_) || ++lines_ != file_.row || line_.nativePath() != path_)
        return outOfStep();
    digest_.add(line_);
    return {};
}

// Whatever changed a result in the list alone is seen here.
Result<void> MergeInput::checkEnd() {
    if (list_.next(line_))
        return outOfStep();
    if (list_.error())
        return failure(*list_.error());
    const auto digest = evidence_.jobNumber(job_keys::kListDigest);
    if (!digest)
        return failure(digest.error());
    return *digest == digest_.value() ? Result<void>() : outOfStep();
}

tl::unexpected<FileError> MergeInput::outOfStep() const {
    return list_.error() ? failure(*list_.error()) : wrong(id_, "its list and its evidence say different things");
}

}  // namespace quillon
