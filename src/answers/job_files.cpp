// SPDX-License-Identifier: MIT
#include "answers/job_files.h"

#include <set>

#include <nlohmann/json.hpp>

#include "app/kept_files.h"
#include "evidence/evidence_reader.h"
#include "evidence/job_keys.h"
#include "evidence/name_text.h"
#include "platform/folders.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::string_view kListEnding = ".csv";

JobFiles filesOf(const NativePath& folder, const std::string& id) {
    JobFiles files{id, {}, {}};
    if (const auto list = childPath(folder, id + std::string(kListEnding)); list && isRegularFile(*list))
        files.list = *list;
    if (const auto evidence = childPath(folder, id + std::string(kEvidenceEnding));
        evidence && isRegularFile(*evidence))
        files.evidence = *evidence;
    return files;
}

bool isThere(const JobFiles& files) {
    return !files.list.empty() || !files.evidence.empty();
}

std::string_view ending(std::string_view name) {
    const std::string folded = foldedName(name);
    for (const auto known : {kListEnding, kEvidenceEnding}) {
        if (folded.size() > known.size() && folded.ends_with(known))
            return known;
    }
    return {};
}

// The IDs of the jobs that this one was made of, as texts. Evidence that cannot be read is told of when it is asked.
void addMerged(const JobFiles& job, std::set<std::string>& ids) {
    if (job.evidence.empty())
        return;
    auto evidence = EvidenceReader::open(job.evidence);
    if (!evidence)
        return;
    const auto merged = evidence->jobText(job_keys::kMerged).value_or(std::nullopt).value_or("[]");
    const auto json = nlohmann::json::parse(merged, nullptr, false);
    for (const auto& id : json.is_array() ? json : nlohmann::json::array()) {
        if (id.is_string() && id.get<std::string>() != nameText(job.id))
            ids.insert(id.get<std::string>());
    }
}

}  // namespace

Result<JobFiles> findJob(const NativePath& listFolder, std::string_view given) {
    const std::string name(given);
    if (!listFolder.empty() && name.find('/') == name.npos) {
        if (auto files = filesOf(listFolder, name); isThere(files))
            return files;
    }
    const NativePath path(name);
    if (const auto end = ending(path.filename().native()); !end.empty() && isRegularFile(path)) {
        const std::string file = path.filename().native();
        const std::string id = file.substr(0, file.size() - end.size());
        auto files = filesOf(path.parent_path(), id);
        (end == kListEnding ? files.list : files.evidence) = path;
        return files;
    }
    return failure(ErrorKind::NotFound, "there is no list and no evidence of \"" + readable(given) + "\"");
}

Result<std::vector<JobFiles>> findCase(const NativePath& listFolder, std::string_view separator,
                                       std::string_view caseId) {
    const auto names = listFiles(listFolder);
    if (!names)
        return failure(names.error());
    const std::string continued = std::string(caseId) + std::string(separator);
    std::set<std::string> ids;
    for (const auto& name : *names) {
        const auto end = ending(name);
        const std::string id = name.substr(0, name.size() - end.size());
        if (!end.empty() && (id == caseId || (id.starts_with(continued) && id.size() > continued.size())))
            ids.insert(id);
    }
    std::vector<JobFiles> jobs;
    std::set<std::string> replaced;
    for (const auto& id : ids) {
        auto files = filesOf(listFolder, id);
        if (!isThere(files))
            continue;
        addMerged(files, replaced);
        jobs.push_back(std::move(files));
    }
    std::erase_if(jobs, [&](const JobFiles& job) { return replaced.contains(nameText(job.id)); });
    if (jobs.empty())
        return failure(ErrorKind::NotFound, "there is no job of the case \"" + readable(caseId) + "\"");
    return jobs;
}

std::vector<CaseFiles> casesOf(const NativePath& listFolder, std::string_view separator, std::string_view jobId) {
    std::vector<CaseFiles> cases;
    std::string_view id = jobId;
    while (!id.empty()) {
        auto jobs = findCase(listFolder, separator, id);
        if (jobs && jobs->size() > (cases.empty() ? 1 : cases.back().jobs.size()))
            cases.push_back({std::string(id), std::move(*jobs)});
        const auto end = separator.empty() ? id.npos : id.rfind(separator);
        id = id.substr(0, end == id.npos ? 0 : end);
    }
    return cases;
}

}  // namespace quillon
