// SPDX-License-Identifier: MIT
// Heads of healthy files, put together from the layouts of their formats: what the starter database has to accept.
#pragma once

#include <string>
#include <vector>

#include "dbcheck/samples.h"

namespace quillon::test {

// One head for each variant of a common format. The path names the variant; what a layout leaves open is noise.
std::vector<Sample> healthyHeads();

// A head that holds `bytes` at its start and noise behind.
Sample headOf(const std::string& extension, const std::string& variant, const std::string& bytes);

}  // namespace quillon::test
