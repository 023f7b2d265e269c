// SPDX-License-Identifier: MIT
#pragma once

// "Query Network": the recipient boxes of the main window, the zip screen and the setup wizard are filled with the
// computers of the network.

#include <string>
#include <vector>

#include "messaging/alert_exchange.h"
#include "messaging/network_enum.h"

namespace quillon {

inline constexpr const char* kQueryItem = "Query";
inline constexpr const char* kTestCaption = "Test";
inline constexpr const char* kPleaseSelectItem = "Please Select";
inline constexpr const char* kNoComputersItem = "No Computers Found";

/// The controls that a query touches.
class RecipientQueryHost {
public:
    virtual ~RecipientQueryHost() = default;
    /// The button that was pressed: Command2, or the wizard's Command9 or Command10. The zip screen is never asked.
    virtual void enableQueryButton(bool enabled) = 0;
    /// The wizard's button. The other screens are never asked.
    virtual void setQueryButtonCaption(const std::string& caption) = 0;
    /// The hourglass.
    virtual void showBusyPointer(bool busy) = 0;
    /// The wizard's Label18. The other screens are never asked.
    virtual void showQueryStatus(const std::string& text) = 0;

    /// The combo box: all items anew with the first one selected, and whether it can be used.
    virtual void setRecipients(const std::vector<std::string>& items, bool enabled) = 0;
};

/// The items of a combo box for a server list. Without any server the single item "No Computers Found".
[[nodiscard]] std::vector<std::string> recipientItems(const std::string& serverList);

/// How the wizard's button follows the selected item: "Query" queries, "Please Select" disables it, any other tests.
struct RecipientButton {
    std::string caption;
    bool enabled = true;

    friend bool operator==(const RecipientButton&, const RecipientButton&) = default;
};
[[nodiscard]] RecipientButton recipientButtonFor(const std::string& selectedItem);

/// Runs the query and fills the combo box. On the wizard the button follows the first item afterwards, but reads
/// "Query", enabled, when there is no computer, so that the query can be repeated.
void queryRecipients(AlertScreen screen, CNetworkEnum& network, RecipientQueryHost& host);

}  // namespace quillon
