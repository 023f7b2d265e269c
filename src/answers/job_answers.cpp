// SPDX-License-Identifier: MIT
#include "answers/job_answers.h"

#include "answers/evidence_answers.h"
#include "answers/list_answers.h"
#include "app/list_mark.h"
#include "evidence/job_keys.h"

namespace quillon {

namespace {

// Out of whole rows, where nothing else can be asked.
class BriefRows final : public BriefFiles {
public:
    BriefRows(JobAnswers& answers, FileWish wish) : answers_(answers), wish_(std::move(wish)) { answers_.restart(); }

    [[nodiscard]] Result<bool> next(BriefFile& file) override {
        while (true) {
            auto more = answers_.next(row_);
            if (!more || !*more)
                return more;
            if (!fits(wish_, row_))
                continue;
            file = row_;
            return true;
        }
    }

private:
    JobAnswers& answers_;
    FileWish wish_;
    EvidenceRow row_;
};

}  // namespace

Result<std::unique_ptr<BriefFiles>> JobAnswers::files(const FileWish& wish) {
    return std::make_unique<BriefRows>(*this, wish);
}

Result<std::unique_ptr<JobAnswers>> openAnswers(const JobFiles& job, const ReportMessages& messages) {
    if (job.evidence.empty())
        return std::make_unique<ListAnswers>(job.list, messages);
    auto reader = EvidenceReader::open(job.evidence);
    if (!reader)
        return failure(reader.error());
    return std::make_unique<EvidenceAnswers>(std::move(*reader));
}

Result<bool> cameToItsEnd(const JobFiles& job, JobAnswers& answers) {
    return answers.facts().map([&](const JobFacts& facts) {
        const bool marked = !job.list.empty() && isUnfinished(job.list);
        return !marked && facts.end != job_keys::kRunning && facts.end != job_keys::kStopped;
    });
}

Result<void> eachFile(JobAnswers& answers, const std::function<Result<void>(const EvidenceRow&)>& take) {
    EvidenceRow file;
    while (true) {
        const auto more = answers.next(file);
        if (!more)
            return failure(more.error());
        if (!*more)
            return {};
        if (auto taken = take(file); !taken)
            return taken;
    }
}

}  // namespace quillon
