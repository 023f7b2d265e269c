// SPDX-License-Identifier: MIT
// What is made of a job: a comparison with another one, an export, the page for the customer.
#include <fmt/format.h>

#include "answers/job_export.h"
#include "answers/overview/overview.h"
#include "answers/report_file.h"
#include "platform/folders.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

// So many changed files have rows; all are counted.
constexpr std::size_t kMostChanges = 1'000'000;

struct Compared {
    ChangeCounts counts{};
    std::vector<ChangedFile> changes;
};

Result<Compared> compared(const JobFiles& first, const JobFiles& second, const ReportMessages& messages) {
    auto a = openAnswers(first, messages);
    auto b = openAnswers(second, messages);
    if (!a || !b)
        return failure(a ? b.error() : a.error());
    Compared all;
    const auto counts = compareJobs({**a, **b, {}, {}}, [&all](const ChangedFile& file) {
        if (file.change != Change::Same && all.changes.size() < kMostChanges)
            all.changes.push_back(file);
    });
    if (!counts)
        return failure(counts.error());
    all.counts = *counts;
    return all;
}

std::string countsText(const ChangeCounts& counts) {
    std::string text;
    for (std::size_t i = 0; i < counts.size(); ++i)
        text += fmt::format("{}{} {}", i == 0 ? "" : ", ", grouped(counts[i]), kChangeNames[i]);
    return text;
}

}  // namespace

// Those whose files are shown.
std::vector<JobFiles> Overview::chosenJobs() const {
    const auto& jobs = shownScope().jobs;
    const auto one = place();
    return one ? std::vector<JobFiles>{jobs[one->job]} : jobs;
}

// As the chosen jobs themselves understand it.
FileWish Overview::ownWish() const {
    FileWish own = wish();
    const auto one = place();
    own.below = one ? one->folder : std::string();
    return own;
}

void Overview::compare() {
    const JobFiles job = chosenJobs().front();
    const NativePath& folder = given_.installation.paths().localPath;
    const auto picked = given_.surroundings.dialogs.pickFiles(
        {"Compare with", "File Lists (*.csv)|*.csv|Evidence (*.sqlite)|*.sqlite|All Files(*.*)|*.*", folder, "csv",
         false});
    if (picked.empty())
        return;
    const auto other = findJob(folder, picked.front().native());
    if (!other) {
        tell(other.error());
        return;
    }
    std::optional<Result<Compared>> all;
    besideLoop([&] { all.emplace(compared(*other, job, given_.messages)); });
    if (!*all) {
        tell(all->error());
        return;
    }
    search_.reset();
    rows.showChanges(std::move((*all)->changes));
    selectRow(-1);
    state.filter =
        fmt::format("From {} to {}", readable(std::string_view(other->id)), readable(std::string_view(job.id)));
    state.matching = countsText((*all)->counts);
}

std::optional<NativePath> Overview::askTarget(const std::string& title, const std::string& prompt,
                                              const std::string& ending) {
    Dialogs& dialogs = given_.surroundings.dialogs;
    const auto folder = dialogs.pickFolder(title, given_.installation.paths().localPath);
    if (!folder)
        return std::nullopt;
    const auto name = dialogs.input(title, prompt, shownScope().fileName + ending);
    if (!name || name->empty())
        return std::nullopt;
    const auto target = childPath(*folder, *name);
    if (!target) {
        dialogs.warn(title, "\"" + readable(std::string_view(*name)) + "\" is no name of a file");
        return std::nullopt;
    }
    MessageBox replaces{title, readable(target->native()) + " is there already. Replace it ?", BoxStyle::Question,
                        BoxButtons::YesNo};
    replaces.loss = BoxLoss::File;
    if (pathExists(*target) && dialogs.show(replaces) != BoxAnswer::Yes)
        return std::nullopt;
    return *target;
}

CopiesHandover Overview::forCopies(bool failedOnly) const {
    const JobFiles job = chosenJobs().front();
    const NativePath& file = job.evidence.empty() ? job.list : job.evidence;
    return {file.native(), ownWish(), filterText(false), failedOnly};
}

void Overview::exportFiles() {
    const auto target = askTarget(
        "Export", "Name of the file. Its ending tells the form: .csv, .jsonl or .xlsx, a workbook of a spreadsheet.",
        ".csv");
    if (!target)
        return;
    ExportForm form;
    form.format = "csv";
    const std::string name = foldedName(target->filename().native());
    for (const char* known : {"jsonl", "xlsx"}) {
        if (name.ends_with(std::string(".") + known))
            form.format = known;
    }
    form.style = {true, true};  // most are opened with a spreadsheet
    Result<void> written;
    besideLoop([&, jobs = chosenJobs(), wanted = ownWish()] { written = writeExport(jobs, wanted, form, *target); });
    state.trouble = !written.has_value();
    state.remark = written ? "Exported to " + readable(target->native()) : written.error().text;
}

void Overview::report() {
    const auto target = askTarget("Report", "Name of the page for the customer.", ".html");
    if (!target)
        return;
    Result<void> written;
    besideLoop([&, jobs = shownScope().jobs] { written = writeReport(jobs, {}, *target); });
    state.trouble = !written.has_value();
    state.remark = written ? "The report is " + readable(target->native()) : written.error().text;
}

}  // namespace quillon
