// SPDX-License-Identifier: MIT
#include "answers/report_file.h"

#include <algorithm>
#include <functional>

#include "answers/html_report.h"
#include "answers/job_answers.h"
#include "answers/piece_writer.h"
#include "platform/dates.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

constexpr std::size_t kTableRows = 200;

// The names with most files, those first.
ReportTable largest(const FiguresBy& figures) {
    ReportTable table{{figures.begin(), figures.end()}, 0};
    std::ranges::stable_sort(table.rows, std::ranges::greater(), [](const auto& row) { return row.second.files; });
    if (table.rows.size() > kTableRows) {
        table.others = table.rows.size() - kTableRows;
        table.rows.resize(kTableRows);
    }
    return table;
}

void add(FiguresBy& sums, const FiguresBy& more) {
    for (const auto& [name, figures] : more) sums[name] += figures;
}

// Collects what stands ahead of the list of files.
class Gathering {
public:
    explicit Gathering(std::size_t depth) : depth_(depth) {}

    [[nodiscard]] Result<void> add(const JobFiles& job) {
        auto answers = openAnswers(job, ReportMessages::fallback());
        if (!answers)
            return failure(answers.error());
        return addHead(job, **answers).and_then([&] { return addFigures(**answers); }).and_then([&] {
            return eachFile(**answers, [this](const EvidenceRow& file) -> Result<void> {
                note(report_, file);
                return {};
            });
        });
    }

    [[nodiscard]] HtmlReport take() {
        report_.extensions = largest(extensions_);
        report_.folders = largest(folders_);
        std::ranges::sort(report_.folders.rows, {}, [](const auto& row) { return row.first; });
        return std::move(report_);
    }

private:
    [[nodiscard]] Result<void> addHead(const JobFiles& job, JobAnswers& answers) {
        const auto source = answers.source();
        const auto facts = answers.facts();
        const auto whole = cameToItsEnd(job, answers);
        if (!source || !facts || !whole)
            return failure(!source ? source.error() : !facts ? facts.error() : whole.error());
        report_.jobs.push_back(
            {job.id, *source, facts->started ? dates_.general(toLocalTime(*facts->started)) : std::string(), *whole});
        for (const auto& [path, error] : facts->unreadFolders) report_.unreadFolders.add(path, error);
        report_.knowsAll = report_.knowsAll && answers.knowsAll();
        return {};
    }

    [[nodiscard]] Result<void> addFigures(JobAnswers& answers) {
        const auto total = answers.total();
        const auto extensions = answers.byExtension();
        const auto folders = answers.byFolder(depth_);
        for (const FileError* error : {total ? nullptr : &total.error(), extensions ? nullptr : &extensions.error(),
                                       folders ? nullptr : &folders.error()})
            if (error != nullptr)
                return failure(*error);
        report_.total += *total;
        quillon::add(extensions_, *extensions);
        quillon::add(folders_, *folders);
        return {};
    }

    DateTexts dates_;
    std::size_t depth_;
    HtmlReport report_;
    FiguresBy extensions_;
    FiguresBy folders_;
};

Result<void> putFiles(PieceWriter& page, const JobFiles& job) {
    auto answers = openAnswers(job, ReportMessages::fallback());
    if (!answers)
        return failure(answers.error());
    ReportedFiles files;
    return eachFile(**answers, [&](const EvidenceRow& file) { return page.put(files.add(file)); }).and_then([&] {
        return page.put(files.end());
    });
}

Result<void> putPage(PieceWriter& page, const HtmlReport& report, const std::vector<JobFiles>& jobs) {
    auto put = page.put(reportBegin(report));
    for (const auto& job : jobs) {
        if (put && report.withFiles && jobs.size() > 1)
            put = page.put(filesHeading(job.id));
        if (put && report.withFiles)
            put = putFiles(page, job);
    }
    return put.and_then([&] { return page.put(reportEnd()); }).and_then([&] { return page.finish(); });
}

}  // namespace

Result<void> writeReport(const std::vector<JobFiles>& jobs, const ReportOptions& options, const NativePath& target) {
    Gathering gathering(options.depth);
    for (const auto& job : jobs) {
        if (auto added = gathering.add(job); !added)
            return added;
    }
    HtmlReport report = gathering.take();
    report.laboratory = options.laboratory;
    report.written = DateTexts().general(SystemClock().now());
    report.withFiles = options.withFiles;
    auto replacement = Replacement::begin(target);
    if (!replacement)
        return failure(replacement.error());
    PieceWriter page(replacement->takeFile());
    const auto written = putPage(page, report, jobs).and_then([&] { return replacement->arrive(); });
    return written ? Result<void>() : failure(saveError(target, written.error()));
}

}  // namespace quillon
