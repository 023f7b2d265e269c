// SPDX-License-Identifier: MIT
#include "answers/evidence_answers.h"

#include <unordered_map>
#include <vector>

#include <fmt/format.h>

#include "answers/ask_evidence.h"
#include "answers/evidence_files.h"
#include "answers/folder_branches.h"
#include "evidence/job_keys.h"
#include "evidence/schema.h"

namespace quillon {

Result<std::string> EvidenceAnswers::source() {
    for (const char* key : {job_keys::kSourceBytes, job_keys::kSource}) {
        const auto text = reader_.jobText(key);
        if (!text)
            return failure(text.error());
        if (*text)
            return **text;
    }
    return std::string();
}

Result<JobFacts> EvidenceAnswers::facts() {
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    JobFacts facts;
    const auto started = reader_.jobNumber(job_keys::kStarted);
    const auto end = reader_.jobText(job_keys::kEnd);
    if (!started || !end)
        return failure(started ? end.error() : started.error());
    if (*started)
        facts.started = **started / kNanoseconds;
    facts.end = end->value_or("");
    const auto asked = ask(reader_, "SELECT coalesce(path_bytes, path), error FROM folder WHERE error IS NOT NULL",
                           [&](const Statement& row) {
                               facts.unreadFolders.push_back({std::string(row.blob(0)), std::string(row.text(1))});
                           });
    if (!asked)
        return failure(asked.error());
    return facts;
}

Result<Figures> EvidenceAnswers::total() {
    const auto extensions = byExtension();
    if (!extensions)
        return failure(extensions.error());
    Figures sum;
    for (const auto& [extension, figures] : *extensions) sum += figures;
    return sum;
}

Result<FiguresBy> EvidenceAnswers::byExtension() {
    FiguresBy figures;
    auto asked = ask(reader_, "SELECT extension, grade, files, bytes FROM by_extension", [&](const Statement& row) {
        count(figures[std::string(row.text(0))], {numbered<Grade>(row, 1), {}, row.integer(3)}, row.integer(2));
    });
    if (!asked)
        return failure(asked.error());
    asked = ask(reader_, "SELECT extension, reason, files FROM by_reason", [&](const Statement& row) {
        if (const auto reason = numbered<Reason>(row, 1))
            figures[std::string(row.text(0))].reasons[static_cast<std::size_t>(*reason)] += row.integer(2);
        else if (row.integer(1) == kDoubtful)
            figures[std::string(row.text(0))].doubtful += row.integer(2);
    });
    if (!asked)
        return failure(asked.error());
    if (auto added = addDoubts(figures).and_then([&] { return addSectors(figures); }); !added)
        return failure(added.error());
    std::erase_if(figures, [](const auto& entry) { return entry.second.files == 0; });
    return figures;
}

// An evidence that does not count them is asked file by file.
Result<void> EvidenceAnswers::addDoubts(FiguresBy& figures) {
    const auto counted = reader_.jobNumber(job_keys::kDoubtsCounted);
    if (!counted)
        return failure(counted.error());
    if (*counted)
        return {};
    return ask(reader_, "SELECT extension, count(*) FROM file WHERE doubt IS NOT NULL AND grade = 0 GROUP BY extension",
               [&](const Statement& row) { figures[std::string(row.text(0))].doubtful += row.integer(1); });
}

Result<void> EvidenceAnswers::addSectors(FiguresBy& figures) {
    const auto counted = reader_.jobNumber(job_keys::kSectorsCounted);
    if (!counted)
        return failure(counted.error());
    if (*counted)
        return addCountedSectors(figures);
    return ask(reader_,
               "SELECT extension, grade, count(*), sum(bad_bytes > 0), sum(bad_bytes) FROM file "
               "WHERE bad_bytes IS NOT NULL GROUP BY extension, grade",
               [&](const Statement& row) {
                   countSectors(figures[std::string(row.text(0))], numbered<Grade>(row, 1), row.integer(2),
                                row.integer(3), row.integer(4));
               });
}

Result<void> EvidenceAnswers::addCountedSectors(FiguresBy& figures) {
    const auto sql = fmt::format("SELECT extension, reason, files, bytes FROM by_reason WHERE reason BETWEEN {} AND {}",
                                 kHurtRecovered, kSectorsKnown);
    return ask(reader_, sql, [&](const Statement& row) {
        Figures& sum = figures[std::string(row.text(0))];
        const std::int64_t files = row.integer(2);
        if (row.integer(1) == kSectorsKnown)
            sum.sectorsKnown += files;
        else if (row.integer(1) == kHurtRecovered)
            sum.hurtRecovered += files;
        else
            countSectors(sum, std::nullopt, 0, files, row.integer(3));
    });
}

Result<FiguresBy> EvidenceAnswers::byReason() {
    FiguresBy figures;
    const auto asked = ask(
        reader_, "SELECT reason, grade, count(*), sum(size) FROM file WHERE reason IS NOT NULL GROUP BY reason, grade",
        [&](const Statement& row) {
            if (const auto reason = numbered<Reason>(row, 0))
                count(figures[reasonRow(*reason).name], {numbered<Grade>(row, 1), reason, row.integer(3)},
                      row.integer(2));
        });
    if (!asked)
        return failure(asked.error());
    return figures;
}

Result<FiguresBy> EvidenceAnswers::byFolder(std::size_t depth) {
    std::unordered_map<std::int64_t, Figures> own;
    std::int64_t last = -1;
    Figures* figures = nullptr;  // files of one folder stand together
    auto asked = ask(reader_, "SELECT folder, grade, reason, size, doubt IS NOT NULL, bad_bytes FROM file",
                     [&](const Statement& row) {
                         if (figures == nullptr || row.integer(0) != last) {
                             last = row.integer(0);
                             figures = &own[last];
                         }
                         const auto grade = numbered<Grade>(row, 1);
                         count(*figures, {grade, numbered<Reason>(row, 2), row.integer(3),
                                          row.integer(4) != 0 && grade == Grade::Good});
                         if (const auto bad = row.integerOrNone(5))
                             countSectors(*figures, grade, 1, *bad > 0 ? 1 : 0, *bad);
                     });
    if (!asked)
        return failure(asked.error());
    FolderBranches branches(depth);
    asked = ask(reader_, "SELECT id, coalesce(path_bytes, path) FROM folder", [&](const Statement& row) {
        if (const auto found = own.find(row.integer(0)); found != own.end())
            branches.add(row.blob(1), found->second);
        else
            branches.add(row.blob(1), {});
    });
    if (!asked)
        return failure(asked.error());
    return branches.take();
}

Result<std::optional<std::uint64_t>> EvidenceAnswers::headSign(std::int64_t id) {
    EvidenceRow row;
    const auto found = reader_.findId(id, row);
    if (!found)
        return failure(found.error());
    if (!*found)
        return std::nullopt;
    const auto head = reader_.head(row);
    if (!head)
        return failure(head.error());
    if (*head == nullptr)
        return std::nullopt;
    return std::hash<std::string_view>()((*head)->given());
}

Result<std::unique_ptr<BriefFiles>> EvidenceAnswers::files(const FileWish& wish) {
    return EvidenceFiles::begin(reader_, wish);
}

}  // namespace quillon
