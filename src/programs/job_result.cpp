// SPDX-License-Identifier: MIT
#include "programs/job_result.h"

#include <nlohmann/json.hpp>

#include "job/counters_json.h"
#include "job/statistics.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

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
    return {{"to", state.options.recipient}, {"acknowledged", state.report == ReportState::Acknowledged}};
}

Json logAsJson(const JobLog& log, const DateTexts& dates) {
    Json rows = Json::array();
    for (const auto& row : log.rows()) rows.push_back({{"time", dates.time(row.time)}, {"event", row.text}});
    return rows;
}

}  // namespace

std::string jobResultAsJson(const Job& job, const JobResult& result, const DateTexts& dates) {
    const auto seconds = [](std::int64_t milliseconds) { return static_cast<double>(milliseconds) / 1000.0; };
    const auto list = job.lists().finalPath();
    const EndRow& end = rowOf(result.cause);
    Json json;
    json["job"] = job.state.options.jobId;
    json["end"] = wordOf(end.end);
    json["reason"] = end.word;
    json["detail"] = result.detail;
    json["status"] = result.status;
    json["losses"] = lossesAsJson(job.state.counters);
    json["list"] = result.listStands && list ? Json(readable(list->native())) : Json(nullptr);
    json["alert"] = alertAsJson(job.state);
    json["quality"] = job.state.texts.quality;
    json["size"] = sizeLabel(job.state);
    json["counters"] = countersAsJson(job.state.counters);
    json["seconds"] = {{"folder_tests", seconds(result.times.folderTests)},
                       {"file_count", seconds(result.times.fileCount)},
                       {"testing", seconds(result.times.testing)},
                       {"copying", seconds(result.times.copying)}};
    json["log"] = logAsJson(job.state.log, dates);
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::string withPlainLineEnds(const std::string& text) {
    return replacedAll(text, "\r\n", "\n");
}

}  // namespace quillon
