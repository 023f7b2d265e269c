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
    json["graded"] = counters.graded;
    json["copied"] = counters.copied;
    json["copy_errors"] = counters.copyErrors;
    json["damaged_copies"] = counters.damagedCopies;
    json["lost_rows"] = counters.lostRows;
    json["unread_heads"] = counters.unreadHeads;
    json["not_copied"] = counters.notCopied;
    json["rules_not_read"] = counters.unreadRules;
    json["not_fetched"] = counters.notFetched;
    json["lost_evidence"] = counters.lostEvidence;
    json["lost_messages"] = counters.lostMessages;
    return json;
}

}  // namespace quillon
