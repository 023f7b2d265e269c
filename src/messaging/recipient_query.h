// SPDX-License-Identifier: MIT
#pragma once

// "Query Network": a recipient box is filled with the computers of the network.

#include <string>
#include <vector>

#include "messaging/network_enum.h"
#include "messaging/recipient_box.h"

namespace quillon {

/// The items of a box for a server list. Without any server the single item "No Computers Found".
[[nodiscard]] std::vector<std::string> recipientItems(const std::string& serverList);

/// Runs the query and fills the box with the first item chosen; a box without any computer is disabled. On the wizard
/// the button follows the first item afterwards, but reads "Query", enabled, when there is no computer, so that the
/// query can be repeated.
void queryRecipients(CNetworkEnum& network, const RecipientScreen& screen);

}  // namespace quillon
