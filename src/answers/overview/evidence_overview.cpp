// SPDX-License-Identifier: MIT
#include "answers/overview/evidence_overview.h"

#include <algorithm>

#include "answers/ask_evidence.h"
#include "answers/overview/evidence_search.h"
#include "evidence/schema.h"

namespace quillon {

namespace {

// id, path, error, whether folders lie below it, files, bytes, and a count for each grade in the order of the grades.
// A blob is behind every text.
std::string selectFolder() {
    std::string sql =
        "SELECT id, coalesce(path_bytes, path), error, EXISTS (SELECT 1 FROM folder b WHERE b.path > iif(f.path = '', "
        "'', f.path || '/') AND b.path < iif(f.path = '', x'00', f.path || '0')), files, bytes";
    for (const auto& row : kGrades.values) sql += ", " + countColumn(row.grade);
    return sql + " FROM folder f ";
}

constexpr int kFirstGrade = 6;

std::string lastPart(std::string_view path) {
    return std::string(path.substr(path.rfind('/') + 1));
}

Result<std::int64_t> numberOf(EvidenceReader& reader, std::string_view sql) {
    std::int64_t number = 0;
    return ask(reader, sql, [&](const Statement& row) { number = row.integer(0); }).map([&] { return number; });
}

}  // namespace

Result<std::unique_ptr<OverviewSource>> EvidenceOverview::open(const NativePath& evidence) {
    auto reader = EvidenceReader::open(evidence);
    auto forAnswers = EvidenceReader::open(evidence);
    if (!reader || !forAnswers)
        return failure(reader ? forAnswers.error() : reader.error());
    std::unique_ptr<EvidenceOverview> overview(new EvidenceOverview(std::move(*reader), std::move(*forAnswers)));
    auto source = overview->answers_.source();
    if (!source)
        return failure(source.error());
    overview->source_ = std::move(*source);
    if (auto counted = overview->countUncounted(); !counted)
        return failure(counted.error());
    return overview;
}

// A parent's number is smaller than its children's.
Result<void> EvidenceOverview::countUncounted() {
    const auto uncounted = numberOf(reader_, "SELECT EXISTS (SELECT 1 FROM folder WHERE files IS NULL)");
    if (!uncounted || *uncounted == 0)
        return uncounted ? Result<void>() : failure(uncounted.error());
    auto asked = ask(reader_, "SELECT folder, grade, count(*), sum(size) FROM file GROUP BY folder, grade",
                     [&](const Statement& row) {
                         count(counted_[row.integer(0)], {numbered<Grade>(row, 1), {}, row.integer(3)}, row.integer(2));
                     });
    if (!asked)
        return asked;
    return ask(reader_, "SELECT id, parent FROM folder ORDER BY id DESC", [&](const Statement& row) {
        const Figures own = counted_[row.integer(0)];
        if (row.integer(1) != row.integer(0) && !row.isNull(1))
            counted_[row.integer(1)] += own;
    });
}

FolderFacts EvidenceOverview::factsOf(const Statement& row) const {
    FolderFacts facts;
    facts.id = row.integer(0);
    facts.path = std::string(row.blob(1));
    facts.name = lastPart(facts.path);
    facts.error = std::string(row.text(2));
    facts.hasFolders = row.integer(3) != 0;
    if (!counted_.empty()) {
        const auto found = counted_.find(facts.id);
        facts.figures = found == counted_.end() ? Figures() : found->second;
        return facts;
    }
    facts.figures.files = row.integer(4);
    facts.figures.bytes = row.integer(5);
    facts.figures.notTested = facts.figures.files;
    for (std::size_t i = 0; i < kGradeCount; ++i) {
        facts.figures.grades.values[i] = row.integer(kFirstGrade + static_cast<int>(i));
        facts.figures.notTested -= facts.figures.grades.values[i];
    }
    return facts;
}

Result<Figures> EvidenceOverview::total() {
    return answers_.total();
}

Result<FigureRows> EvidenceOverview::extensions() {
    auto figures = answers_.byExtension();
    if (!figures)
        return failure(figures.error());
    FigureRows rows(figures->begin(), figures->end());
    std::ranges::stable_sort(rows, std::ranges::greater(), [](const auto& row) { return row.second.files; });
    return rows;
}

Result<FigureRows> EvidenceOverview::reasons() {
    FigureRows rows;
    const auto asked =
        ask(reader_, "SELECT reason, sum(files), sum(bytes) FROM by_reason GROUP BY reason ORDER BY 2 DESC",
            [&](const Statement& row) {
                const auto reason = numbered<Reason>(row, 0);
                if (!reason || row.integer(1) <= 0)
                    return;
                Figures figures;
                figures.files = row.integer(1);
                figures.bytes = row.integer(2);
                figures.reasons[static_cast<std::size_t>(*reason)] = figures.files;
                rows.emplace_back(reasonRow(*reason).name, figures);
            });
    if (!asked)
        return failure(asked.error());
    return rows;
}

Result<FolderFacts> EvidenceOverview::root() {
    FolderFacts root;
    const auto asked =
        ask(reader_, selectFolder() + "WHERE path = ''", [&](const Statement& row) { root = factsOf(row); });
    if (!asked)
        return failure(asked.error());
    return root;
}

Result<FolderList> EvidenceOverview::folders(const FolderFacts& parent) {
    auto statement = reader_.prepare(selectFolder() +
                                     "WHERE parent = ?1 AND id <> ?1 AND path > ?2 AND path < ?3 ORDER BY files DESC");
    if (!statement)
        return failure(statement.error());
    const BranchRange range(parent.path);
    FolderList list;
    const auto asked = eachRow(statement->bind(parent.id, range.first, range.behind), [&](const Statement& row) {
        if (list.folders.size() < kMostFolders)
            list.folders.push_back(factsOf(row));
        else
            ++list.others;
    });
    if (!asked)
        return failure(asked.error());
    std::ranges::sort(list.folders, {}, &FolderFacts::name);
    return list;
}

Result<std::unique_ptr<FileSearch>> EvidenceOverview::search(const FileWish& wish) {
    return EvidenceSearch::begin(reader_, wish);
}

Result<EvidenceRow> EvidenceOverview::file(std::int64_t id) {
    EvidenceRow row;
    const auto found = reader_.findId(id, row);
    if (!found)
        return failure(found.error());
    if (!*found)
        return failure(ErrorKind::NotFound, "the evidence has no such file any more");
    return row;
}

Result<std::optional<std::string>> EvidenceOverview::head(const EvidenceRow& file) {
    const auto head = reader_.head(file);
    if (!head)
        return failure(head.error());
    if (*head == nullptr)
        return std::nullopt;
    return std::string((*head)->given());
}

}  // namespace quillon
