// SPDX-License-Identifier: MIT
#include "programs/job_result.h"

#include <nlohmann/json.hpp>

#include "job/statistics.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

using Json = nlohmann::ordered_json;

const char* nameOf(JobEnd end) {
    switch (end) {
        case JobEnd::Complete:
            return "complete";
        case JobEnd::NotStarted:
            return "not started";
        case JobEnd::Stopped:
            return "stopped";
        case JobEnd::NoList:
            return "no list";
    }
    return "";
}

Json countersAsJson(const JobCounters& counters) {
    Json json = {{"folders", counters.folders},
                 {"folder_errors", counters.folderErrors},
                 {"folders_not_read", counters.unlistedFolders},
                 {"files", counters.files},
                 {"total_bytes", counters.totalBytes},
                 {"skipped", counters.skipped},
                 {"rows_read", counters.rowsRead},
                 {"tested", counters.tested}};
    for (const Grade grade : kJsonOrder) json[kGrades[grade].jsonKey.value] = counters[grade];
    json["copy_errors"] = counters.copyErrors;
    json["lost_rows"] = counters.lostRows;
    return json;
}

Json logAsJson(const JobLog& log, const DateTexts& dates) {
    Json rows = Json::array();
    for (const auto& row : log.rows()) rows.push_back({{"time", dates.time(row.time)}, {"event", row.text}});
    return rows;
}

}  // namespace

std::string jobResultAsJson(const Job& job, const PhaseTimes& times, JobEnd end, const DateTexts& dates) {
    const auto seconds = [](std::int64_t milliseconds) { return static_cast<double>(milliseconds) / 1000.0; };
    const auto list = job.lists().finalPath();
    Json result;
    result["job"] = job.state.options.jobId;
    result["end"] = nameOf(end);
    result["list"] = end == JobEnd::Complete && list ? Json(readable(list->native())) : Json(nullptr);
    result["quality"] = job.state.texts.quality;
    result["size"] = sizeLabel(job.state);
    result["counters"] = countersAsJson(job.state.counters);
    result["gaps"] = job.state.gaps;
    result["seconds"] = {{"folder_tests", seconds(times.folderTests)},
                         {"file_count", seconds(times.fileCount)},
                         {"testing", seconds(times.testing)},
                         {"copying", seconds(times.copying)}};
    result["log"] = logAsJson(job.state.log, dates);
    return result.dump(2, ' ', false, Json::error_handler_t::replace);
}

std::string withPlainLineEnds(const std::string& text) {
    return replacedAll(text, "\r\n", "\n");
}

}  // namespace quillon
