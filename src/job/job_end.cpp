// SPDX-License-Identifier: MIT
#include "job/job_end.h"

#include <algorithm>

namespace quillon {

namespace {

constexpr bool standsInOrder() {
    for (std::size_t i = 0; i < kJobEnds.size(); ++i) {
        if (static_cast<std::size_t>(kJobEnds[i].cause) != i)
            return false;
    }
    return true;
}
static_assert(standsInOrder());

}  // namespace

const char* wordOf(JobEnd end) {
    switch (end) {
        case JobEnd::Complete:
            return "complete";
        case JobEnd::NotStarted:
            return "not started";
        case JobEnd::Stopped:
            return "stopped";
        case JobEnd::NoList:
            return "no list";
        case JobEnd::Busy:
            return "busy";
    }
    return "";
}

bool hasLosses(const JobCounters& counters) {
    return std::any_of(kJobLosses.begin(), kJobLosses.end(),
                       [&counters](const LossRow& loss) { return counters.*loss.counter > 0; });
}

bool hasLosses(const JobState& state) {
    return hasLosses(state.counters) || !state.gaps.empty();
}

int exitStatus(EndCause cause, const JobState& state, bool alertOptional) {
    const int status = rowOf(cause).status;
    if (status != kExitComplete)
        return status;
    if (hasLosses(state))
        return kExitLosses;
    return state.report == ReportState::NotAcknowledged && !alertOptional ? kExitAlert : kExitComplete;
}

}  // namespace quillon
