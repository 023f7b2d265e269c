// SPDX-License-Identifier: MIT
#pragma once

// Counters of a job under the names that scripts know them by.

#include <nlohmann/json.hpp>

#include "job/job_state.h"

namespace quillon {

[[nodiscard]] nlohmann::ordered_json countersAsJson(const JobCounters& counters);

}  // namespace quillon
