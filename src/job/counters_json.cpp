// SPDX-License-Identifier: MIT
#include "job/counters_json.h"

namespace quillon {

nlohmann::ordered_json countersAsJson(const JobCounters& counters) {
    nlohmann::ordered_json json = {{"folders", counters.folders},
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

}  // namespace quillon
