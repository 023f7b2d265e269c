// SPDX-License-Identifier: MIT
#include "job/evidence_facts.h"

#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "app/version.h"
#include "evidence/job_keys.h"
#include "evidence/name_text.h"
#include "job/file_tail.h"
#include "platform/host.h"
#include "platform/volume.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// A wrecked file may have any number of gaps.
constexpr std::size_t kMostRanges = 1000;

// A hostile tree has as many extensions as files.
constexpr std::size_t kMostExtensionTexts = 1000;

// A list may hold any number.
std::int64_t wholeNumber(std::optional<double> number) {
    return static_cast<std::int64_t>(std::clamp(number.value_or(0), -9e18, 9e18));
}

std::string optionsAsJson(const JobOptions& options) {
    const nlohmann::ordered_json json = {{"test", options.checkFileQuality},
                                         {"skip_list", options.useSkipList},
                                         {"common_headers", options.useCommonHeaders},
                                         {"copy", options.copy},
                                         {"heads", options.keepHeads},
                                         {"ends", looksAtEnds(options)}};
    return json.dump();
}

std::string versionText() {
    const Version version = programVersion();
    return fmt::format("{}.{}.{}", version.major, version.minor, version.revision);
}

}  // namespace

Result<void> writeJobBegin(EvidenceStore& store, const JobState& state, const std::string& hostName) {
    namespace keys = job_keys;
    const std::string source = state.options.source.value_or(NativePath()).native();
    const Volume volume = volumeOf(source);
    const std::pair<const char*, std::string> texts[] = {
        {keys::kId, state.options.jobId},
        {keys::kSource, nameText(source)},
        {keys::kFileSystem, volume.fileSystem},
        {keys::kVolume, nameText(volume.uuid)},
        {keys::kEnd, keys::kRunning},
        {keys::kVersion, versionText()},
        {keys::kHost, hostName},
        {keys::kUser, userName()},
        {keys::kOptions, optionsAsJson(state.options)},
    };
    for (const auto& [key, text] : texts) {
        if (auto written = store.setJob(key, text); !written)
            return written;
    }
    if (nameText(source) != source) {
        if (auto written = store.setJob(keys::kSourceBytes, Blob{source}); !written)
            return written;
    }
    return store.setJob(keys::kStarted, evidenceTime(fileTimeNow()));
}

Result<void> writeMessages(EvidenceStore& store, const ReportMessages& messages) {
    for (const auto& row : kGrades.values) {
        if (auto written = store.setMessage(row.grade, utf16ToUtf8(messages[row.grade])); !written)
            return written;
    }
    return {};
}

Result<void> writeJobEnd(EvidenceStore& store, const char* how, const std::string& counters,
                         const std::string& quality) {
    return store.setJob(job_keys::kEnd, how)
        .and_then([&] { return store.setJob(job_keys::kEnded, evidenceTime(fileTimeNow())); })
        .and_then([&] { return store.setJob(job_keys::kCounters, counters); })
        .and_then([&] { return store.setJob(job_keys::kQuality, quality); });
}

Result<void> writeListFacts(EvidenceStore& store, const NativePath& list, std::int64_t digest) {
    const auto stamp = fileStamp(list);
    if (!stamp)
        return failure(stamp.error());
    return store.setJob(job_keys::kListBytes, static_cast<std::int64_t>(stamp->size))
        .and_then([&] { return store.setJob(job_keys::kListModified, evidenceTime(stamp->modified)); })
        .and_then([&] { return store.setJob(job_keys::kListDigest, digest); });
}

std::int64_t evidenceTime(const FileTime& time) {
    return time.seconds * 1'000'000'000 + time.nanoseconds;
}

NativePath sourceIn(EvidenceReader& evidence) {
    const auto bytes = evidence.jobText(job_keys::kSourceBytes).value_or(std::nullopt);
    const auto source = bytes ? bytes : evidence.jobText(job_keys::kSource).value_or(std::nullopt);
    return source.value_or("");
}

CopyOutcome copyOutcome(const tl::expected<CopyFacts, CopyError>& result, bool compared) {
    CopyOutcome outcome;
    outcome.copied = result.has_value();
    if (!result) {
        outcome.error = result.error().text();
        if (result.error().differs)
            outcome.verified = 0;
        return outcome;
    }
    if (compared)
        outcome.verified = 1;
    if (result->gaps.empty() && !result->unread)
        return outcome;
    const ByteRanges& unread = result->unread ? *result->unread : result->gaps;
    outcome.badBytes = static_cast<std::int64_t>(bytesIn(unread));
    outcome.badRanges = rangesText(unread, kMostRanges);
    return outcome;
}

RowDescriber::RowDescriber(const NativePath& source) : prefix_(source.native()) {
    if (!prefix_.empty() && prefix_.back() != '/')
        prefix_.push_back('/');
}

std::string_view RowDescriber::below(std::string_view path) const {
    if (path.starts_with(prefix_))
        path.remove_prefix(prefix_.size());
    return path;
}

void RowDescriber::describe(const ListRow& row, EvidenceRow& out) {
    const std::string_view path = below(row.nativePath());
    const auto slash = path.rfind('/');
    out.folder = path.substr(0, slash == path.npos ? 0 : slash);
    out.name = path.substr(slash == path.npos ? 0 : slash + 1);
    out.extension = extensionText(row.extension());
    out.size = sizeOf(row);
    out.attributes = wholeNumber(row.attributes());
}

// Files of a few kinds take turns in most folders.
const std::string& RowDescriber::extensionText(const std::u16string& extension) {
    if (extensionTexts_.size() >= kMostExtensionTexts)
        extensionTexts_.clear();
    const auto [known, isNew] = extensionTexts_.try_emplace(extension);
    if (isNew)
        known->second = nameText(foldedName(toNative(extension)));
    return known->second;
}

std::int64_t RowDescriber::sizeOf(const ListRow& row) {
    return wholeNumber(row.size());
}

bool RowDescriber::isJudgedSo(const EvidenceRow& row, const FileVerdict& verdict, const ReportMessages& messages) {
    const FileFindings& found = verdict.findings;
    return verdict.grade && row.grade == verdict.grade && !row.result && verdict.text == messages[*verdict.grade] &&
           row.reason == found.reason && row.detail == found.detail && row.doubt == found.doubt &&
           row.doubtDetail == found.doubtDetail && row.tail.empty();
}

void RowDescriber::judge(const FileVerdict& verdict, const ReportMessages& messages, EvidenceRow& out) {
    out.grade = verdict.grade;
    const bool plain = verdict.grade ? verdict.text == messages[*verdict.grade] : verdict.text.empty();
    out.result = plain ? std::nullopt : std::optional(utf16ToUtf8(verdict.text));
    out.unread = verdict.head != nullptr ? static_cast<std::int64_t>(kHeaderBytes) - verdict.head->length : 0;
    if (!verdict.open)
        takeFindings(verdict.findings, out);
}

void RowDescriber::takeFindings(FileFindings findings, EvidenceRow& out) {
    out.reason = findings.reason;
    out.detail = std::move(findings.detail);
    out.doubt = std::move(findings.doubt);
    out.doubtDetail = std::move(findings.doubtDetail);
    judgeTail(out);
}

}  // namespace quillon
