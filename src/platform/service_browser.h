// SPDX-License-Identifier: MIT
#pragma once

// The computers that announce services on the local network (DNS-SD), asked of the system's Avahi daemon. Without the
// daemon, without a message bus, or in a build without the client library every question is answered with nothing.

#include <optional>
#include <string>
#include <vector>

#include "platform/moment.h"

namespace quillon {

/// Host names of all computers that announce any service, as announced ("labpc.local"), each once, in the order seen.
/// Ends when everything known has been told, at the latest at `deadline`.
[[nodiscard]] std::vector<std::string> browseAnnouncedHosts(Moment deadline);

/// The address of an announced host name, in numbers; no value when nobody answers within a few seconds.
[[nodiscard]] std::optional<std::string> resolveAnnouncedHost(const std::string& hostName);

}  // namespace quillon
