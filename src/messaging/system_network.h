// SPDX-License-Identifier: MIT
#pragma once

// The names of computers that this system can tell: from the hosts database and from the announcements of the local
// network.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/host_address.h"
#include "platform/result.h"

namespace quillon {

/// The names in the text of a hosts database, in file order: of each line the first name without a dot, else the first
/// name. Lines of addresses that are no other computer's (loopback, unspecified, broadcast, multicast) are left out.
[[nodiscard]] std::vector<std::string> namesInHostsDatabase(std::string_view text);

/// The address of a name that is written in numbers or stands in this text of a hosts database, in any case; the first
/// IPv4 one where there are several. No value for any other name. Asks nobody.
[[nodiscard]] std::optional<HostAddress> addressInHostsDatabase(std::string_view text, const std::string& name);

/// What this computer knows of a name by itself: `addressInHostsDatabase` with the system's own hosts database.
[[nodiscard]] Result<HostAddress> resolveByHostsDatabase(const std::string& name);

/// The name that a list of computers shows for an announced host: "labpc.local" is "labpc".
[[nodiscard]] std::string shownHostName(std::string_view announced);

/// True for a name that can stand in the list: no separator of the list, no blank, no control character.
[[nodiscard]] bool canBeListed(std::string_view name);

/// Names of both kinds, each once whatever its case, those that can be listed.
[[nodiscard]] std::vector<std::string> mergedNames(const std::vector<std::string>& announced,
                                                   const std::vector<std::string>& inDatabase);

}  // namespace quillon
