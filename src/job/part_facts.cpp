// SPDX-License-Identifier: MIT
#include "job/part_facts.h"

#include "evidence/digest.h"
#include "evidence/job_keys.h"
#include "platform/whole_file.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// Some moment of an afternoon, so that the date shows the locale and the hour the time zone.
constexpr std::int64_t kMoment = 981'173'106;

std::int64_t digestOf(const NativePath& file) {
    Digest digest;
    digest.add(std::string_view(readWholeFile(file).value_or(std::string())));
    return digest.value();
}

}  // namespace

PartFacts partFacts(const JobOptions& options, const Paths& paths, const DateTexts& dates, std::u16string_view token) {
    PartFacts facts;
    facts.part = options.part.value_or(JobPart());
    facts.token = utf16ToUtf8(token);
    if (options.useSkipList)
        facts.skipList = digestOf(fileIn(paths.localSettings, kSkipListFileName));
    facts.dates = dates.general(toLocalTime(kMoment));
    return facts;
}

Result<void> writePartFacts(EvidenceStore& store, const PartFacts& facts) {
    return store.setJob(job_keys::kPart, facts.part.number)
        .and_then([&] { return store.setJob(job_keys::kParts, facts.part.of); })
        .and_then([&] { return store.setJob(job_keys::kPartOf, std::string_view(facts.part.jobId)); })
        .and_then([&] { return store.setJob(job_keys::kToken, std::string_view(facts.token)); })
        .and_then([&] { return store.setJob(job_keys::kSkipList, facts.skipList); })
        .and_then([&] { return store.setJob(job_keys::kDates, std::string_view(facts.dates)); });
}

Result<std::optional<PartFacts>> readPartFacts(EvidenceReader& evidence) {
    const auto number = evidence.jobNumber(job_keys::kPart);
    const auto of = evidence.jobNumber(job_keys::kParts);
    const auto skipList = evidence.jobNumber(job_keys::kSkipList);
    for (const auto* read : {&number, &of, &skipList}) {
        if (!*read)
            return failure(read->error());
    }
    if (!*number || !*of)
        return std::nullopt;
    PartFacts facts;
    facts.part = {**number, **of, {}};
    facts.skipList = skipList->value_or(0);
    const std::pair<const char*, std::string&> texts[] = {
        {job_keys::kPartOf, facts.part.jobId}, {job_keys::kToken, facts.token}, {job_keys::kDates, facts.dates}};
    for (const auto& [key, text] : texts) {
        const auto read = evidence.jobText(key);
        if (!read)
            return failure(read.error());
        text = read->value_or("");
    }
    return facts;
}

}  // namespace quillon
