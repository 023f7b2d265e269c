// SPDX-License-Identifier: MIT
#include "answers/merged_job.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "answers/ask_evidence.h"
#include "answers/walk_order.h"
#include "evidence/job_keys.h"
#include "evidence/name_text.h"
#include "job/folder_walk.h"
#include "job/job_evidence.h"
#include "job/statistics.h"
#include "text/list_text.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;
using Jobs = std::vector<MergeInput>;

tl::unexpected<FileError> apart(std::string text) {
    return failure(ErrorKind::PathAccess, std::move(text));
}

// What each job says under a key; empty where it says nothing.
Result<std::vector<std::string>> textsOf(Jobs& jobs, const char* key) {
    std::vector<std::string> texts;
    for (auto& job : jobs) {
        const auto text = job.evidence().jobText(key);
        if (!text)
            return failure(text.error());
        texts.push_back(text->value_or(""));
    }
    return texts;
}

bool allEqual(const std::vector<std::string>& texts) {
    return std::ranges::all_of(texts, [&](const std::string& text) { return text == texts.front(); });
}

std::string joined(const std::vector<std::string>& texts) {
    std::set<std::string> told;
    std::string all;
    for (const auto& text : texts) {
        if (!text.empty() && told.insert(text).second)
            all += (all.empty() ? "" : ", ") + text;
    }
    return all;
}

Json parsed(const std::string& text) {
    auto json = Json::parse(text, nullptr, false);
    return json.is_object() ? json : Json::object();
}

// The options that all jobs had alike.
std::string commonOptions(const std::vector<std::string>& texts) {
    Json common = parsed(texts.front());
    for (const auto& text : texts) {
        const Json options = parsed(text);
        Json kept = Json::object();
        for (const auto& [name, value] : common.items()) {
            if (options.contains(name) && options[name] == value)
                kept[name] = value;
        }
        common = std::move(kept);
    }
    return common.dump();
}

Json summedCounters(const std::vector<std::string>& texts) {
    Json sum = parsed(texts.front());
    for (std::size_t i = 1; i < texts.size(); ++i) {
        const Json more = parsed(texts[i]);
        for (const auto& [name, value] : more.items()) {
            if (value.is_number_integer())
                sum[name] = sum.value(name, std::int64_t{0}) + value.get<std::int64_t>();
        }
    }
    return sum;
}

std::string qualityOf(const Json& counters) {
    JobState state;
    for (const auto& row : kGrades.values)
        state.counters[row.grade] = counters.value(row.jsonKey.value, std::int32_t{0});
    updateQuality(state);
    return state.texts.quality;
}

Result<void> checkNumbers(const Jobs& jobs) {
    const PartFacts& first = *jobs.front().part();
    std::vector<const MergeInput*> found(
        static_cast<std::size_t>(std::clamp<std::int64_t>(first.part.of, 1, kMostParts)));
    for (const auto& job : jobs) {
        const JobPart& part = job.part()->part;
        if (part.of != first.part.of || part.jobId != first.part.jobId)
            return apart(fmt::format("{} is part {} of job \"{}\", and {} is part {} of job \"{}\"", jobs.front().id(),
                                     partText(first.part), first.part.jobId, job.id(), partText(part), part.jobId));
        if (part.number < 1 || part.number > static_cast<std::int64_t>(found.size()))
            return apart(job.id() + ": it is damaged");
        const MergeInput*& place = found[static_cast<std::size_t>(part.number - 1)];
        if (place != nullptr)
            return apart(fmt::format("{} and {} are both part {}", place->id(), job.id(), partText(part)));
        place = &job;
    }
    const auto missing = std::ranges::find(found, nullptr);
    if (missing == found.end())
        return {};
    return apart(fmt::format("part {} of {} is missing ({} of them are there)", missing - found.begin() + 1,
                             found.size(), jobs.size()));
}

Result<void> sameFacts(const Jobs& jobs) {
    const PartFacts& first = *jobs.front().part();
    for (const auto& job : jobs) {
        const auto differs = [&](const char* what) {
            return apart(fmt::format("{} and {} have {}", jobs.front().id(), job.id(), what));
        };
        if (job.source() != jobs.front().source())
            return differs("different sources");
        if (job.part()->skipList != first.skipList)
            return differs("different skip lists");
        if (job.part()->dates != first.dates)
            return differs("dates of different locales or time zones");
    }
    return {};
}

// Numbers of moments: the first start, the last end.
Result<void> writeMoments(EvidenceStore& store, Jobs& jobs) {
    std::optional<std::int64_t> started;
    std::optional<std::int64_t> ended;
    for (auto& job : jobs) {
        const auto begin = job.evidence().jobNumber(job_keys::kStarted);
        const auto end = job.evidence().jobNumber(job_keys::kEnded);
        if (!begin || !end)
            return failure(begin ? end.error() : begin.error());
        if (*begin)
            started = std::min(started.value_or(**begin), **begin);
        if (*end)
            ended = std::max(ended.value_or(**end), **end);
    }
    return store.setJob(job_keys::kStarted, started.value_or(0)).and_then([&] {
        return store.setJob(job_keys::kEnded, ended.value_or(0));
    });
}

Result<void> writeSource(EvidenceStore& store, const std::string& source) {
    const std::string path = source.empty() ? "/" : source;
    auto written = store.setJob(job_keys::kSource, std::string_view(nameText(path)));
    if (written && nameText(path) != path)
        written = store.setJob(job_keys::kSourceBytes, Blob{path});
    return written;
}

Result<void> writeRules(EvidenceStore& store, Jobs& jobs) {
    std::optional<std::int64_t> rules;
    for (auto& job : jobs) {
        const auto own = job.evidence().jobNumber(job_keys::kRules);
        if (!own)
            return failure(own.error());
        rules = !rules || *rules == own->value_or(0) ? own->value_or(0) : 0;
    }
    return store.setJob(job_keys::kRules, rules.value_or(0));
}

// How bad bytes came to be known, where all jobs know them alike.
Result<void> writeSectors(EvidenceStore& store, Jobs& jobs) {
    const auto texts = textsOf(jobs, job_keys::kSectors);
    if (!texts)
        return failure(texts.error());
    if (texts->front().empty() || !allEqual(*texts))
        return {};
    return store.setJob(job_keys::kSectors, texts->front());
}

struct FolderError {
    std::string path;  // below the common source
    std::string words;

    // The folder test goes before the walk, and each goes through the folders in the order of the walk.
    friend bool operator<(const FolderError& a, const FolderError& b) {
        const bool testA = a.words == kCannotBeEntered;
        const bool testB = b.words == kCannotBeEntered;
        return testA != testB ? testA : foldersInWalkOrder(a.path, b.path) < 0;
    }
};

Result<void> readFolderErrors(MergeInput& job, const std::string& below, std::vector<FolderError>& errors) {
    return ask(job.evidence(), "SELECT coalesce(path_bytes, path), error FROM folder WHERE error IS NOT NULL",
               [&](const Statement& row) {
                   const std::string path(row.blob(0));
                   const std::string between = below.empty() || path.empty() ? "" : "/";
                   errors.push_back({below + between + path, std::string(row.text(1))});
               });
}

}  // namespace

Result<void> checkTogether(const Jobs& jobs) {
    const auto parts = std::ranges::count_if(jobs, [](const MergeInput& job) { return job.part().has_value(); });
    if (parts == 0)
        return {};
    const auto whole = std::ranges::find_if(jobs, [](const MergeInput& job) { return !job.part(); });
    if (whole != jobs.end())
        return apart(whole->id() + " is a whole job, and others are parts of one");
    return checkNumbers(jobs).and_then([&] { return sameFacts(jobs); });
}

Result<void> checkRules(Jobs& jobs) {
    if (!jobs.front().part())
        return {};
    const std::pair<const char*, const char*> keys[] = {
        {job_keys::kOptions, "options"}, {job_keys::kRules, "rules"}, {job_keys::kVersion, "versions of the program"}};
    for (const auto& [key, what] : keys) {
        const auto texts = textsOf(jobs, key);
        if (!texts)
            return failure(texts.error());
        const auto other = std::ranges::find_if(*texts, [&](const auto& text) { return text != texts->front(); });
        if (other != texts->end())
            return apart(fmt::format("{} and {} have different {}", jobs.front().id(),
                                     jobs[static_cast<std::size_t>(other - texts->begin())].id(), what));
    }
    return {};
}

std::string commonSource(const Jobs& jobs) {
    std::string common = jobs.front().source();
    for (const auto& job : jobs) {
        while (!common.empty() && job.source() != common && !job.source().starts_with(common + "/"))
            common.resize(common.rfind('/') == common.npos ? 0 : common.rfind('/'));
    }
    return common;
}

Result<void> writeMergedJob(EvidenceStore& store, const std::string& id, Jobs& jobs) {
    Json merged = Json::array();
    for (const auto& job : jobs) merged.push_back(nameText(job.id()));
    const auto told = [&](const char* key, const auto& make) -> Result<void> {
        const auto texts = textsOf(jobs, key);
        if (!texts)
            return failure(texts.error());
        return store.setJob(key, std::string_view(std::string(make(*texts))));
    };
    const auto ifEqual = [](const auto& texts) { return allEqual(texts) ? texts.front() : std::string(); };
    const auto counters = textsOf(jobs, job_keys::kCounters);
    if (!counters)
        return failure(counters.error());
    const Json sum = summedCounters(*counters);
    auto written = store.setJob(job_keys::kId, std::string_view(id))
                       .and_then([&] { return writeSource(store, commonSource(jobs)); })
                       .and_then([&] { return told(job_keys::kFileSystem, ifEqual); })
                       .and_then([&] { return told(job_keys::kVolume, ifEqual); })
                       .and_then([&] { return told(job_keys::kVersion, joined); })
                       .and_then([&] { return told(job_keys::kHost, joined); })
                       .and_then([&] { return told(job_keys::kUser, joined); })
                       .and_then([&] { return told(job_keys::kOptions, commonOptions); })
                       .and_then([&] { return writeSectors(store, jobs); })
                       .and_then([&] { return writeMoments(store, jobs); })
                       .and_then([&] { return writeRules(store, jobs); })
                       .and_then([&] { return store.setJob(job_keys::kCounters, std::string_view(sum.dump())); })
                       .and_then([&] { return store.setJob(job_keys::kQuality, std::string_view(qualityOf(sum))); })
                       .and_then([&] { return store.setJob(job_keys::kEnd, std::string_view(job_keys::kComplete)); });
    if (written)
        written = store.setJob(job_keys::kMerged,
                               std::string_view(merged.dump(-1, ' ', false, Json::error_handler_t::replace)));
    for (const auto& row : kGrades.values) {
        if (written)
            written = store.setMessage(row.grade, jobs.front().message(row.grade));
    }
    return written;
}

Result<void> writeFolderErrors(EvidenceStore& store, const std::string& source, Jobs& jobs) {
    std::vector<FolderError> errors;
    for (auto& job : jobs) {
        const std::string below = job.source().substr(std::min(job.source().size(), source.size() + 1));
        if (auto read = readFolderErrors(job, below, errors); !read)
            return read;
    }
    std::ranges::stable_sort(errors, std::less<>());
    errors.resize(std::min(errors.size(), kMostFolderErrors));
    for (const auto& error : errors) {
        if (auto set = store.setFolderError(error.path, error.words); !set)
            return set;
    }
    return {};
}

}  // namespace quillon
