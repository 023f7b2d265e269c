// SPDX-License-Identifier: MIT
#include "messaging/recipient_query.h"

#include "text/fields.h"

namespace quillon {

std::vector<std::string> recipientItems(const std::string& serverList) {
    const std::string names = replacedAll(serverList, "\\\\", "");
    const auto elements = splitFields(names);
    if (elements.empty())
        return {kNoComputersItem};
    std::vector<std::string> items{kPleaseSelectItem};
    for (const std::string_view element : elements) {
        if (!trim(element).empty())
            items.emplace_back(element);
    }
    return items;
}

void queryRecipients(CNetworkEnum& network, const RecipientScreen& screen) {
    RecipientBox& box = screen.box;
    if (screen.rules.disablesButton)
        screen.enable(box.queryEnabled, false);
    screen.showBusy(true);
    screen.showStatus("Querying computers on the network, please wait ...");
    network.Reset();
    box.items = recipientItems(network.GetServerList());
    box.enabled = box.items.front() != kNoComputersItem;
    if (screen.rules.oneButton) {
        box.choose(0);
        box.tests = box.enabled;
    } else {
        box.select(0);
    }
    screen.show();
    screen.showBusy(false);
    screen.showStatus("");
    if (screen.rules.disablesButton)
        screen.enable(box.queryEnabled, true);
}

}  // namespace quillon
