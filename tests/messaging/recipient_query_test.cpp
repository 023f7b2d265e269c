// SPDX-License-Identifier: MIT
#include "messaging/recipient_query.h"

#include <gmock/gmock.h>

#include "messaging/recorded_recipients.h"
#include "support/fake_surroundings.h"

namespace quillon {
namespace {

using testing::ElementsAre;

class FixedNetwork final : public NetworkProvider {
public:
    Result<std::vector<NetworkResource>> enumerate(const NetworkResource* container, std::uint32_t,
                                                   std::chrono::steady_clock::time_point) override {
        if (container != nullptr)
            return servers;
        return std::vector{NetworkResource{DisplayType::Network, kUsageContainer, "net"}};
    }
    std::vector<NetworkResource> servers;
};

class RecipientQuery : public testing::Test {
protected:
    void run(AlertScreen screen) {
        CNetworkEnum network(provider, loop);
        queryRecipients(network, host.screen(screen));
    }
    void twoComputers() {
        provider->servers = {{DisplayType::Server, 0, "\\\\LAB7"}, {DisplayType::Server, 0, "\\\\DESK2"}};
    }

    test::CountingLoop loop;
    std::shared_ptr<FixedNetwork> provider = std::make_shared<FixedNetwork>();
    test::RecordedRecipients host;
};

TEST_F(RecipientQuery, TheItemsArePleaseSelectAndTheNamesThisComputersOwnIncluded) {
    twoComputers();
    run(AlertScreen::Main);
    EXPECT_THAT(host.box.items, ElementsAre("Please Select", "LAB7", "DESK2"));
}

TEST_F(RecipientQuery, WithoutServersTheBoxIsDisabledAndSaysSo) {
    run(AlertScreen::Main);
    EXPECT_THAT(host.box.items, ElementsAre("No Computers Found"));
    EXPECT_THAT(host.steps, ElementsAre("disable", "hourglass", "items, box disabled", "pointer", "enable"));
}

TEST_F(RecipientQuery, TheMainWindowDisablesItsButtonMeanwhile) {
    twoComputers();
    run(AlertScreen::Main);
    EXPECT_THAT(host.steps, ElementsAre("disable", "hourglass", "items", "pointer", "enable"));
}

TEST_F(RecipientQuery, TheZipScreenLeavesItsButton) {
    twoComputers();
    run(AlertScreen::Zip);
    EXPECT_THAT(host.steps, ElementsAre("hourglass", "items", "pointer"));
}

TEST_F(RecipientQuery, TheWizardShowsAStatusAndItsButtonWaitsForAChoice) {
    twoComputers();
    run(AlertScreen::SetupWizard);
    EXPECT_THAT(host.steps,
                ElementsAre("disable", "hourglass", "status \"Querying computers on the network, please wait ...\"",
                            "items", "caption Test", "pointer", "status \"\""));
    EXPECT_EQ(host.box.button(), (RecipientButton{"Test", false}));
}

TEST_F(RecipientQuery, WithoutServersTheWizardsButtonQueriesAgain) {
    run(AlertScreen::SetupWizard);
    EXPECT_THAT(host.steps,
                ElementsAre("disable", "hourglass", "status \"Querying computers on the network, please wait ...\"",
                            "items, box disabled", "pointer", "status \"\"", "enable"));
    EXPECT_EQ(host.box.button(), (RecipientButton{"Query", true}));
}

TEST_F(RecipientQuery, TheWizardsButtonFollowsTheSelectedItem) {
    EXPECT_EQ(recipientButtonFor("Query"), (RecipientButton{"Query", true}));
    EXPECT_EQ(recipientButtonFor("Please Select"), (RecipientButton{"Test", false}));
    EXPECT_EQ(recipientButtonFor("DESK2"), (RecipientButton{"Test", true}));
    EXPECT_EQ(recipientButtonFor("query"), (RecipientButton{"Test", true}));
}

TEST(RecipientItems, TheEmptyElementBehindTheLastCommaFallsAway) {
    EXPECT_THAT(recipientItems("\\\\A,\\\\B,"), ElementsAre("Please Select", "A", "B"));
}

TEST(RecipientItems, BlankElementsAreLeftOutAndOthersStandAsTheyAre) {
    EXPECT_THAT(recipientItems("\\\\A ,  ,,\\\\ B,"), ElementsAre("Please Select", "A ", " B"));
}

TEST(RecipientItems, ACommaInANameSplitsIt) {
    EXPECT_THAT(recipientItems("\\\\A,B,"), ElementsAre("Please Select", "A", "B"));
}

TEST(RecipientItems, NoTextGivesNoComputers) {
    EXPECT_THAT(recipientItems(""), ElementsAre("No Computers Found"));
}

}  // namespace
}  // namespace quillon
