// SPDX-License-Identifier: MIT
#include "programs/job_result.h"

#include <optional>
#include <string_view>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "app/version.h"
#include "job/counters_json.h"
#include "job/statistics.h"
#include "text/fields.h"
#include "text/json_text.h"
#include "text/list_text.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

constexpr int kFormatVersion = 1;

// A name for a person, and beside it the very bytes where the text is not these.
void putName(Json& json, const std::string& key, const std::string& bytes) {
    const std::string text = readable(std::string_view(bytes));
    json[key] = text;
    if (text == bytes)
        return;
    std::string hex;
    for (const char byte : bytes) hex += fmt::format("{:02x}", static_cast<unsigned char>(byte));
    json[key + "_bytes"] = hex;
}

void putPath(Json& json, const std::string& key, const std::optional<NativePath>& path) {
    if (path)
        putName(json, key, path->native());
    else
        json[key] = nullptr;
}

Json rowAsJson(const LogRow& row, const DateTexts& dates) {
    const LocalTime& t = row.time;
    Json json;
    json["at"] = fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}", t.year, t.month, t.day, t.hour, t.minute, t.second);
    json["time"] = dates.time(row.time);
    json["level"] = row.colour == kLightRed ? "error" : row.colour == kLightOrange ? "warning" : "info";
    json["event"] = row.text;
    if (!row.path.empty())
        putName(json, "path", row.path);
    return json;
}

std::string programName() {
    const Version version = programVersion();
    return fmt::format("quillon-job {}.{}.{}", version.major, version.minor, version.revision);
}

Json lossesAsJson(const JobCounters& counters) {
    Json words = Json::array();
    for (const auto& loss : kJobLosses) {
        if (counters.*loss.counter > 0)
            words.push_back(loss.word);
    }
    return words;
}

Json alertAsJson(const JobState& state) {
    if (state.report == ReportState::NotSent)
        return nullptr;
    return {{"to", readable(std::string_view(state.options.recipient))},
            {"acknowledged", state.report == ReportState::Acknowledged}};
}

Json resumeAsJson(const std::optional<ResumeFigures>& resumed) {
    if (!resumed)
        return nullptr;
    return {{"from", resumed->from},        {"not_read_again", resumed->known},
            {"read_again", resumed->again}, {"changed", resumed->changed},
            {"new", resumed->added},        {"gone", resumed->gone}};
}

Json endsAsJson(const std::optional<EndFigures>& ends) {
    if (!ends)
        return nullptr;
    return {{"read", ends->read}, {"unread", ends->unread}, {"doubted", ends->doubted}, {"known", ends->known}};
}

Json logAsJson(const JobLog& log, const DateTexts& dates) {
    Json rows = Json::array();
    for (const auto& row : log.rows()) rows.push_back(rowAsJson(row, dates));
    return rows;
}

}  // namespace

std::string jobResultAsJson(const Job& job, const JobResult& result, const DateTexts& dates) {
    const auto seconds = [](std::int64_t milliseconds) { return static_cast<double>(milliseconds) / 1000.0; };
    const auto list = job.lists().finalPath();
    const EndRow& end = rowOf(result.cause);
    Json json;
    json["version"] = kFormatVersion;
    json["program"] = programName();
    putName(json, "job", job.state.options.jobId);
    if (job.state.options.part)
        json["part"] = partText(*job.state.options.part);
    json["end"] = wordOf(end.end);
    json["reason"] = end.word;
    json["detail"] = result.detail;
    json["status"] = result.status;
    json["losses"] = lossesAsJson(job.state.counters);
    json["gaps"] = job.state.gaps;
    putPath(json, "list", result.listStands && list ? std::optional(*list) : std::nullopt);
    putPath(json, "source", job.state.options.source);
    putPath(json, "target", job.state.options.target);
    json["resume"] = resumeAsJson(job.state.resumed);
    json["ends"] = endsAsJson(job.state.ends);
    json["sectors"] = result.scan ? scanAsJson(*result.scan) : Json(nullptr);
    json["alert"] = alertAsJson(job.state);
    json["quality"] = job.state.texts.quality;
    json["size"] = sizeLabel(job.state);
    json["counters"] = countersAsJson(job.state.counters);
    json["seconds"] = {{"folder_tests", seconds(result.times.folderTests)},
                       {"file_count", seconds(result.times.fileCount)},
                       {"testing", seconds(result.times.testing)},
                       {"copying", seconds(result.times.copying)},
                       {"ends", seconds(result.times.ends)}};
    json["log"] = logAsJson(job.state.log, dates);
    json["log_cut"] = job.state.log.dropped();
    return jsonText(json);
}

const char* wordOf(RegradeEnd end) {
    switch (end) {
        case RegradeEnd::Complete:
            return "complete";
        case RegradeEnd::NoList:
            return "no list";
        case RegradeEnd::NoEvidence:
            return "no evidence";
        case RegradeEnd::Busy:
            return "busy";
        case RegradeEnd::Stopped:
            return "stopped";
        case RegradeEnd::Failed:
            return "failed";
    }
    return "failed";
}

std::string regradeResultAsJson(const Job& job, const RegradeResult& result, int status, const DateTexts& dates) {
    const JobState& state = job.state;
    const auto list = job.lists().finalPath();
    Json json;
    json["version"] = kFormatVersion;
    json["program"] = programName();
    putName(json, "regrade", state.options.jobId);
    json["end"] = wordOf(result.end);
    json["detail"] = result.detail;
    json["status"] = status;
    json["losses"] = lossesAsJson(state.counters);
    putPath(json, "list", result.end != RegradeEnd::NoList && list ? std::optional(*list) : std::nullopt);
    json["unfinished"] = result.unfinished;
    json["rows"] = {{"all", result.counts.rows},
                    {"graded", result.counts.graded},
                    {"changed", result.counts.changed},
                    {"kept", result.counts.kept},
                    {"damaged", result.counts.damaged}};
    json["quality"] = state.texts.quality;
    json["quality_before"] = result.qualityBefore;
    json["counters"] = countersAsJson(state.counters);
    json["log"] = logAsJson(state.log, dates);
    json["log_cut"] = state.log.dropped();
    return jsonText(json);
}

std::string logRowAsJson(const LogRow& row, const DateTexts& dates) {
    return jsonText(rowAsJson(row, dates), -1);
}

std::string withPlainLineEnds(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, "\r\n") != 0)
            plain += text[i];
    }
    return plain;
}

}  // namespace quillon
