// SPDX-License-Identifier: MIT
#include "programs/list_command.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <ostream>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "answers/each_job.h"
#include "answers/figures_text.h"
#include "answers/file_export.h"
#include "answers/forget_evidence.h"
#include "answers/job_answers.h"
#include "answers/job_comparison.h"
#include "answers/job_export.h"
#include "answers/report_file.h"
#include "app/application_folder.h"
#include "app/installation.h"
#include "evidence/name_text.h"
#include "programs/list_copy.h"
#include "programs/list_history.h"
#include "programs/list_merge.h"
#include "programs/list_options.h"
#include "programs/list_paths.h"
#include "programs/list_sectors.h"
#include "programs/list_suggest.h"
#include "programs/list_verify.h"
#include "text/json_text.h"
#include "text/list_text.h"

namespace quillon {

namespace {

using Answers = std::unique_ptr<JobAnswers>;

class ListCommand {
public:
    ListCommand(const ListCommandOptions& options, const ListStreams& streams)
        : options_(options),
          streams_(streams),
          installation_(options.appFolder ? *options.appFolder : applicationFolder()) {}

    [[nodiscard]] Result<int> run() {
        // A job may also be named by its files, so an installation without settings is none to fail for.
        const auto loaded = installation_.loadSettingsRecord();
        if (!loaded && options_.appFolder)
            return failure(loaded.error());
        switch (options_.question) {
            case ListQuestion::Summary:
                return summary();
            case ListQuestion::Extensions:
                return table("extension", &JobAnswers::byExtension);
            case ListQuestion::Reasons:
                return table("reason", &JobAnswers::byReason);
            case ListQuestion::Folders:
                return folders();
            case ListQuestion::Files:
                return files();
            case ListQuestion::Export:
                return exportFiles();
            case ListQuestion::Report:
                return report();
            case ListQuestion::Compare:
                return compare();
            case ListQuestion::Merge:
                return merge();
            case ListQuestion::Forget:
                return forget();
            case ListQuestion::Copy:
            case ListQuestion::Verify:
                return handOver();
            case ListQuestion::Suggest:
                return suggest();
            case ListQuestion::Sectors:
                return sectors();
            case ListQuestion::History:
                return loaded ? showHistory(installation_, options_, streams_) : failure(loaded.error());
        }
        return kListTrouble;
    }

private:
    [[nodiscard]] const NativePath& listFolder() const { return installation_.paths().localPath; }
    [[nodiscard]] TerminalColours colours() const {
        return streams_.colours ? TerminalColours::Some : TerminalColours::None;
    }

    [[nodiscard]] Result<std::vector<JobFiles>> jobs() {
        auto all = namedJobs();
        if (all && !std::exchange(areTold_, true))
            tellUnfinished(*all);
        return all;
    }

    [[nodiscard]] Result<std::vector<JobFiles>> namedJobs() const {
        std::vector<JobFiles> all;
        for (const auto& name : options_.jobs) {
            auto job = findJob(listFolder(), name);
            if (!job)
                return failure(job.error());
            all.push_back(std::move(*job));
        }
        if (options_.caseId.empty())
            return all;
        auto ofCase = findCase(listFolder(), installation_.paths().fileListSeparator, options_.caseId);
        if (!ofCase)
            return failure(ofCase.error());
        all.insert(all.end(), ofCase->begin(), ofCase->end());
        return all;
    }

    // In no answer stands what such a job did not come to. Evidence that cannot be read is told of when it is asked.
    void tellUnfinished(const std::vector<JobFiles>& all) {
        for (const auto& job : all) {
            auto answers = open(job);
            if (!answers || cameToItsEnd(job, **answers).value_or(true))
                continue;
            unfinished_ = true;
            streams_.err << "quillon-list: " << readable(std::string_view(job.id))
                         << " did not come to its end: files are missing from its list and from every figure\n";
        }
    }

    [[nodiscard]] Result<Answers> open(const JobFiles& job) const {
        return openAnswers(job, ReportMessages::fallback());
    }

    // Asks every job in turn.
    [[nodiscard]] Result<void> eachJob(const std::function<Result<void>(JobAnswers&)>& ask) {
        return jobs().and_then([&](const std::vector<JobFiles>& all) { return quillon::eachJob(all, ask); });
    }

    [[nodiscard]] Result<int> summary() {
        Figures sum;
        bool knowsAll = true;
        const auto asked = eachJob([&](JobAnswers& answers) -> Result<void> {
            const auto figures = answers.total();
            if (!figures)
                return failure(figures.error());
            sum += *figures;
            knowsAll = knowsAll && answers.knowsAll();
            return {};
        });
        if (!asked)
            return failure(asked.error());
        streams_.out << (options_.json ? summaryJson(sum, knowsAll, unfinished_)
                                       : summaryText(sum, knowsAll, colours()));
        return kListSame;
    }

    [[nodiscard]] Result<FiguresBy> figuresBy(const std::function<Result<FiguresBy>(JobAnswers&)>& ask) {
        return jobs().and_then([&](const std::vector<JobFiles>& all) { return quillon::figuresBy(all, ask); });
    }

    void showTable(const char* what, const FigureRows& rows) const {
        streams_.out << (options_.json ? tableJson(what, rows) : tableText(what, rows, colours()));
    }

    [[nodiscard]] Result<int> table(const char* what, Result<FiguresBy> (JobAnswers::*question)()) {
        const auto sums = figuresBy([question](JobAnswers& answers) { return (answers.*question)(); });
        if (!sums)
            return failure(sums.error());
        FigureRows rows(sums->begin(), sums->end());
        std::ranges::stable_sort(rows, std::ranges::greater(), [](const auto& row) { return row.second.files; });
        showTable(what, rows);
        return kListSame;
    }

    [[nodiscard]] Result<int> folders() {
        const auto sums = figuresBy([this](JobAnswers& answers) { return answers.byFolder(options_.depth); });
        if (!sums)
            return failure(sums.error());
        FigureRows rows(sums->begin(), sums->end());
        if (options_.worst) {
            std::ranges::stable_sort(rows, std::ranges::greater(), [](const auto& row) {
                return row.second.grades[Grade::Corrupt] + row.second.grades[Grade::AccessError];
            });
            rows.resize(std::min(rows.size(), *options_.worst));
        }
        showTable("folder", rows);
        return kListSame;
    }

    // Hands each file that is asked for to `take`, with the source of its job.
    template <typename Take>
    [[nodiscard]] Result<void> eachFile(Take take) {
        return eachJob([&](JobAnswers& answers) -> Result<void> {
            const auto source = answers.source();
            if (!source)
                return failure(source.error());
            return quillon::eachFile(answers, [&](const EvidenceRow& file) -> Result<void> {
                if (fits(options_.wish, file))
                    take(file, *source);
                return {};
            });
        });
    }

    [[nodiscard]] Result<int> files() {
        const auto listed = eachJob([&](JobAnswers& answers) -> Result<void> {
            const auto source = answers.source();
            if (!source)
                return failure(source.error());
            PathLines lines(streams_.out, options_.zeros, streams_.outIsTerminal);
            const std::string above = options_.absolute && !source->empty() ? *source + "/" : std::string();
            return eachBrief(answers, options_.wish,
                             [&](const BriefFile& file) { lines.add(above, file.folder, file.name); });
        });
        if (!listed)
            return failure(listed.error());
        return kListSame;
    }

    [[nodiscard]] Result<int> exportFiles() {
        const ExportForm form{options_.format, {options_.bom, options_.spreadsheet}, options_.depth};
        if (options_.output) {
            const auto all = jobs();
            if (!all)
                return failure(all.error());
            return writeExport(*all, options_.wish, form, *options_.output).map([] { return kListSame; });
        }
        const bool csv = options_.format == "csv";
        if (csv)
            streams_.out << csvHead(form.style);
        const auto listed = eachFile([&](const EvidenceRow& file, const std::string&) {
            streams_.out << (csv ? csvRecord(file, form.style) : jsonLine(file));
        });
        if (!listed)
            return failure(listed.error());
        return kListSame;
    }

    [[nodiscard]] Result<int> report() {
        const auto all = jobs();
        if (!all)
            return failure(all.error());
        return writeReport(*all, {options_.laboratory, options_.depth, options_.withFiles}, *options_.output).map([] {
            return kListSame;
        });
    }

    [[nodiscard]] Result<int> compare() {
        auto all = jobs();
        if (!all)
            return failure(all.error());
        auto first = open(all->front());
        auto second = open(all->back());
        if (!first || !second)
            return failure(first ? second.error() : first.error());
        nlohmann::ordered_json rows = nlohmann::ordered_json::array();
        const auto counts = compareJobs({**first, **second, options_.stripFirst, options_.stripSecond},
                                        [&](const ChangedFile& file) { tell(file, rows); });
        if (!counts)
            return failure(counts.error());
        return tellCounts(*counts, rows);
    }

    static const char* gradeText(const std::optional<Grade>& grade) { return grade ? kGrades[*grade].name.value : "-"; }

    void tell(const ChangedFile& file, nlohmann::ordered_json& rows) const {
        if (file.change == Change::Same)
            return;
        const char* name = kChangeNames[static_cast<std::size_t>(file.change)];
        if (options_.json) {
            rows.push_back({{"change", name},
                            {"path", nameText(file.path)},
                            {"before", file.before.empty() ? nlohmann::ordered_json(nullptr)
                                                           : nlohmann::ordered_json(nameText(file.before))},
                            {"grade_before", gradeText(file.gradeBefore)},
                            {"grade", gradeText(file.gradeNow)}});
            return;
        }
        streams_.out << fmt::format(
            "{:<7} {:>14} -> {:<14} {}{}\n", name, gradeText(file.gradeBefore), gradeText(file.gradeNow),
            readable(std::string_view(file.path)),
            file.before.empty() ? "" : "  (was " + readable(std::string_view(file.before)) + ")");
    }

    [[nodiscard]] int tellCounts(const ChangeCounts& counts, const nlohmann::ordered_json& rows) const {
        std::int64_t differing = 0;
        nlohmann::ordered_json json;
        json["version"] = 1;
        for (std::size_t i = 0; i < counts.size(); ++i) {
            json[kChangeNames[i]] = counts[i];
            if (static_cast<Change>(i) != Change::Same)
                differing += counts[i];
            if (!options_.json)
                streams_.out << fmt::format("{:<7} {}\n", kChangeNames[i], counts[i]);
        }
        json["rows"] = rows;
        if (options_.json)
            streams_.out << jsonText(json) << '\n';
        return differing == 0 ? kListSame : kListDiffers;
    }

    [[nodiscard]] Result<int> forget() {
        for (const auto& name : options_.jobs) {
            const auto job = findJob(listFolder(), name);
            const auto removed = forgetEvidence(listFolder(), job ? *job : JobFiles{name, {}, {}});
            if (!removed)
                return failure(removed.error());
            if (!job && *removed == 0)
                return failure(job.error());
            streams_.out << readable(std::string_view(name)) << ": " << *removed << " evidence files deleted\n";
        }
        return kListSame;
    }

    [[nodiscard]] Result<int> merge() {
        const auto all = jobs();
        if (!all)
            return failure(all.error());
        return mergeListed(*all, options_.to.value_or(listFolder()), options_.newJob, streams_);
    }

    [[nodiscard]] Result<int> handOver() {
        const auto all = jobs();
        if (!all)
            return failure(all.error());
        return options_.question == ListQuestion::Copy
                   ? copyFiles(*all, options_, installation_.paths(), streams_)
                   : verifyCopies(all->front(), *options_.against, options_, streams_);
    }

    [[nodiscard]] Result<int> suggest() {
        const auto all = jobs();
        if (!all)
            return failure(all.error());
        return suggestFromJobs(*all, options_, streams_);
    }

    [[nodiscard]] Result<int> sectors() {
        const auto all = jobs();
        if (!all)
            return failure(all.error());
        SystemPlaces places;
        return tellSectors(*all, options_, streams_, places);
    }

    const ListCommandOptions& options_;
    const ListStreams& streams_;
    Installation installation_;
    bool areTold_ = false;
    bool unfinished_ = false;
};

}  // namespace

int runListCommand(const std::vector<std::string>& arguments, const ListStreams& streams) {
    const auto parsed = parseListCommand(arguments, streams.out, streams.err);
    if (!parsed.options)
        return parsed.exitStatus;
    const auto status = ListCommand(*parsed.options, streams).run();
    streams.out.flush();
    if (!status) {
        streams.err << "quillon-list: " << status.error().text << '\n';
        return kListTrouble;
    }
    if (!streams.out) {
        streams.err << "quillon-list: the answer could not be written whole\n";
        return kListTrouble;
    }
    return *status;
}

}  // namespace quillon
