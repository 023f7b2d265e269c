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

RecipientButton recipientButtonFor(const std::string& selectedItem) {
    if (selectedItem == kQueryItem)
        return {kQueryItem, true};
    return {kTestCaption, selectedItem != kPleaseSelectItem};
}

void queryRecipients(AlertScreen screen, CNetworkEnum& network, RecipientQueryHost& host) {
    const bool isWizard = screen == AlertScreen::SetupWizard;
    const bool disablesButton = screen != AlertScreen::Zip;
    if (disablesButton)
        host.enableQueryButton(false);
    host.showBusyPointer(true);
    if (isWizard)
        host.showQueryStatus("Querying computers on the network, please wait ...");
    network.Reset();
    const auto items = recipientItems(network.GetServerList());
    const bool found = items.front() != kNoComputersItem;
    host.setRecipients(items, found);
    host.showBusyPointer(false);
    RecipientButton button;
    if (isWizard) {
        button = recipientButtonFor(found ? items.front() : kQueryItem);
        host.setQueryButtonCaption(button.caption);
        host.showQueryStatus("");
    }
    if (disablesButton)
        host.enableQueryButton(button.enabled);
}

}  // namespace quillon
