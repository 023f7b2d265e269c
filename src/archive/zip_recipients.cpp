// SPDX-License-Identifier: MIT
// The zip screen's recipient box: query of the network and test of a computer.
#include <utility>

#include "archive/zip_file_lists.h"
#include "messaging/recipient_probe.h"
#include "messaging/recipient_query.h"

namespace quillon {

/// Shows a query or a test on the screen. What other screens have besides is never asked of this one.
class ZipFileLists::RecipientHost final : public RecipientQueryHost, public RecipientProbeHost {
public:
    explicit RecipientHost(ZipFileLists& lists) : lists_(lists) {}

    void enableQueryButton(bool /*enabled*/) override {}
    void setQueryButtonCaption(const std::string& /*caption*/) override {}
    void showQueryStatus(const std::string& /*text*/) override {}
    void showTestStatus(const std::string& /*text*/) override {}
    void enableTestButton(bool enabled) override {
        lists_.state.testEnabled = enabled;
        lists_.host_.showState();
    }
    void showBusyPointer(bool busy) override { lists_.showBusy(busy); }
    void setRecipients(const std::vector<std::string>& items, bool enabled) override {
        lists_.state.recipients = items;
        lists_.state.recipientIndex = items.empty() ? -1 : 0;
        lists_.state.recipientsEnabled = enabled;
        lists_.host_.showState();
    }

private:
    ZipFileLists& lists_;
};

void ZipFileLists::queryNetwork(std::shared_ptr<NetworkProvider> network) {
    RecipientHost host(*this);
    CNetworkEnum computers(std::move(network), surroundings_.loop);
    queryRecipients(AlertScreen::Zip, computers, host);
}

void ZipFileLists::testRecipient(AlertExchange& exchange) {
    RecipientHost host(*this);
    quillon::testRecipient(state.recipient(), kZipScreenRecipient, exchange, installation_, surroundings_, host);
}

}  // namespace quillon
