// SPDX-License-Identifier: MIT
#include "messaging/network_enum.h"

#include <condition_variable>
#include <map>
#include <mutex>

#include <gmock/gmock.h>

#include "messaging/recipient_query.h"
#include "messaging/system_network.h"
#include "platform/host.h"
#include "support/fake_surroundings.h"

namespace quillon {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

NetworkResource container(const std::string& name, DisplayType type = DisplayType::Network) {
    return {type, kUsageContainer, name};
}
NetworkResource leaf(const std::string& name, DisplayType type = DisplayType::Server) {
    return {type, 0, name};
}

// A network as a table: the children of each container by name, the root's under "".
class ScriptedNetwork final : public NetworkProvider {
public:
    Result<std::vector<NetworkResource>> enumerate(const NetworkResource* container, std::uint32_t resourceType,
                                                   std::chrono::steady_clock::time_point) override {
        const std::lock_guard lock(mutex);
        const std::string name = container == nullptr ? "" : container->remoteName.value_or("?");
        opened.push_back(name);
        types.push_back(resourceType);
        const auto found = children.find(name);
        if (found == children.end())
            return failure(ErrorKind::PathAccess, "cannot be opened");
        return found->second;
    }

    std::map<std::string, std::vector<NetworkResource>> children;
    std::mutex mutex;
    std::vector<std::string> opened;
    std::vector<std::uint32_t> types;
};

class NetworkEnum : public testing::Test {
protected:
    std::string serverList() {
        network.Reset();
        return network.GetServerList();
    }

    test::CountingLoop loop;
    std::shared_ptr<ScriptedNetwork> provider = std::make_shared<ScriptedNetwork>();
    CNetworkEnum network{provider, loop};
};

TEST_F(NetworkEnum, TheServerListHasACommaBehindEachName) {
    provider->children = {{"", {container("net")}}, {"net", {leaf("\\\\LAB7"), leaf("\\\\DESK2")}}};
    EXPECT_EQ(serverList(), "\\\\LAB7,\\\\DESK2,");
}

TEST_F(NetworkEnum, TheWalkIsBreadthFirst) {
    provider->children = {{"", {container("a"), container("b")}},
                          {"a", {container("a1"), leaf("\\\\S1")}},
                          {"b", {leaf("\\\\S2")}},
                          {"a1", {leaf("\\\\S3")}}};
    EXPECT_EQ(serverList(), "\\\\S1,\\\\S2,\\\\S3,");
    EXPECT_THAT(provider->opened, ElementsAre("", "a", "b", "a1"));
}

TEST_F(NetworkEnum, ServersThatAreContainersAreOpenedToo) {
    provider->children = {{"", {container("\\\\S1", DisplayType::Server)}},
                          {"\\\\S1", {leaf("\\\\S1\\share", DisplayType::Share)}}};
    EXPECT_EQ(serverList(), "\\\\S1,");
    EXPECT_EQ(network.list(DisplayType::Share), "\\\\S1\\share|");
}

TEST_F(NetworkEnum, EachDisplayTypeHasItsSeparator) {
    std::vector<NetworkResource> all;
    for (std::uint32_t type = 0; type < 12; ++type)
        all.push_back(leaf("n" + std::to_string(type), static_cast<DisplayType>(type)));
    provider->children = {{"", all}};
    network.Reset();
    EXPECT_EQ(network.list(DisplayType::Generic), "n0|");
    EXPECT_EQ(network.list(DisplayType::Domain), "n1, ");
    EXPECT_EQ(network.list(DisplayType::Server), "n2,");
    EXPECT_EQ(network.list(DisplayType::Share), "n3|");
    EXPECT_EQ(network.list(DisplayType::File), "n4|");
    EXPECT_EQ(network.list(DisplayType::Group), "n5|");
    EXPECT_EQ(network.list(DisplayType::Network), "n6|");
    EXPECT_EQ(network.list(DisplayType::Root), "n7|");
    EXPECT_EQ(network.list(DisplayType::AdminShare), "n8|");
    EXPECT_EQ(network.list(DisplayType::Directory), "n9|");
    EXPECT_EQ(network.list(static_cast<DisplayType>(10)), "") << "other values are skipped";
}

TEST_F(NetworkEnum, ASingleResourceCollectsNothing) {
    provider->children = {{"", {leaf("\\\\ONLY")}}};
    EXPECT_EQ(serverList(), "");
    EXPECT_EQ(network.GetLocalMachineName(), "");
}

TEST_F(NetworkEnum, TwoResourcesAreCollectedWithThisComputersName) {
    provider->children = {{"", {leaf("\\\\A"), leaf("\\\\B")}}};
    EXPECT_EQ(serverList(), "\\\\A,\\\\B,");
    EXPECT_EQ(network.GetLocalMachineName(), hostName());
}

TEST_F(NetworkEnum, ARecordWithoutANameAddsItsSeparatorAlone) {
    provider->children = {{"", {leaf("\\\\A"), {DisplayType::Server, 0, std::nullopt}, leaf("\\\\B")}}};
    EXPECT_EQ(serverList(), "\\\\A,,\\\\B,");
    EXPECT_THAT(recipientItems(network.GetServerList()), ElementsAre("Please Select", "A", "B"));
}

TEST_F(NetworkEnum, AContainerThatCannotBeOpenedIsPassedOver) {
    provider->children = {{"", {container("locked"), container("open")}}, {"open", {leaf("\\\\A")}}};
    EXPECT_EQ(serverList(), "\\\\A,");
}

TEST_F(NetworkEnum, ARootThatCannotBeOpenedGivesNothing) {
    EXPECT_EQ(serverList(), "");
}

TEST_F(NetworkEnum, TheResourceTypeIsDiskUntilSet) {
    EXPECT_EQ(network.GetResourceType(), 1U);
    network.SetResourceType(3);
    EXPECT_EQ(network.GetResourceType(), 3U);
    network.Reset();
    EXPECT_THAT(provider->types, ElementsAre(3U));
}

TEST_F(NetworkEnum, ASecondQueryStartsAnew) {
    provider->children = {{"", {leaf("\\\\A"), leaf("\\\\B")}}};
    EXPECT_EQ(serverList(), "\\\\A,\\\\B,");
    EXPECT_EQ(serverList(), "\\\\A,\\\\B,");
    provider->children.clear();
    EXPECT_EQ(serverList(), "");
}

// A network that never answers, until the test lets it.
class HungNetwork final : public NetworkProvider {
public:
    Result<std::vector<NetworkResource>> enumerate(const NetworkResource* container, std::uint32_t,
                                                   std::chrono::steady_clock::time_point) override {
        if (container == nullptr)
            return std::vector{leaf("\\\\A"), leaf("\\\\B"), NetworkResource{DisplayType::Network, 2, "hung"}};
        std::unique_lock lock(mutex);
        released.wait(lock, [this] { return isReleased; });
        ended = true;
        released.notify_all();
        return std::vector<NetworkResource>{};
    }

    std::mutex mutex;
    std::condition_variable released;
    bool isReleased = false;
    bool ended = false;
};

TEST(NetworkEnumTime, AHungNetworkEndsAtTheDeadlineWithWhatIsKnownWhileTheLoopTurns) {
    auto hung = std::make_shared<HungNetwork>();
    test::CountingLoop loop;
    std::chrono::steady_clock::duration longestGap{};
    auto last = std::chrono::steady_clock::now();
    loop.onTurn = [&](int) {
        const auto now = std::chrono::steady_clock::now();
        longestGap = std::max(longestGap, now - last);
        last = now;
    };
    const auto start = last;
    CNetworkEnum network(hung, loop, std::chrono::milliseconds(200));
    network.Reset();
    EXPECT_EQ(network.GetServerList(), "\\\\A,\\\\B,");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(200));
    EXPECT_GE(loop.turns, 3);
    EXPECT_LT(longestGap, std::chrono::milliseconds(150)) << "10 ms between turns, with room for a busy machine";
    std::unique_lock lock(hung->mutex);
    hung->isReleased = true;
    hung->released.notify_all();
    hung->released.wait(lock, [&] { return hung->ended; });
}

TEST(NetworkEnumTime, ARealQueryEndsWithinThreeSecondsWithOrWithoutADaemon) {
    test::CountingLoop loop;
    CNetworkEnum network(systemNetwork(), loop);
    const auto start = std::chrono::steady_clock::now();
    network.Reset();
    EXPECT_LE(std::chrono::steady_clock::now() - start, std::chrono::seconds(3));
    const std::string list = network.GetServerList();
    EXPECT_TRUE(list.empty() || list.substr(0, 2) == "\\\\") << list;
}

TEST(HostsDatabase, GivesOneNameALineWithoutTheLoopback) {
    EXPECT_THAT(namesInHostsDatabase("127.0.0.1\tlocalhost\n"
                                     "127.0.1.1 lab7.example.org lab7\n"
                                     "# 10.0.0.9 comment\n"
                                     "\n"
                                     "10.0.0.2   desk2.example.org desk2 d2 # the reception\r\n"
                                     "10.0.0.3 desk3.example.org\n"
                                     "  10.0.0.4\tdesk4\n"
                                     "10.0.0.5\n"
                                     "not-an-address desk5\n"
                                     "::1 localhost ip6-localhost ip6-loopback\n"
                                     "fe00::0 ip6-localnet\n"
                                     "ff00::0 ip6-mcastprefix\n"
                                     "ff02::1 ip6-allnodes\n"
                                     "255.255.255.255 broadcasthost\n"
                                     "0.0.0.0 blocked.example.org\n"
                                     "fd00::7 desk7"),
                ElementsAre("desk2", "desk3.example.org", "desk4", "desk7"));
    EXPECT_THAT(namesInHostsDatabase(""), IsEmpty());
}

TEST(HostsDatabase, TellsTheAddressOfANameInAnyCaseAndAsksNobody) {
    constexpr std::string_view hosts =
        "127.0.0.1\tlocalhost\n"
        "fe80::7 LAB7\n"
        "10.0.0.7 lab7.lab.example lab7 # the first workstation\n"
        "nonsense LAB8\n";
    EXPECT_EQ(addressInHostsDatabase(hosts, "LAB7"), numericAddress("10.0.0.7"));
    EXPECT_EQ(addressInHostsDatabase(hosts, "lab7.LAB.example"), numericAddress("10.0.0.7"));
    EXPECT_EQ(addressInHostsDatabase(hosts, "10.0.0.9"), numericAddress("10.0.0.9")) << "written in numbers";
    for (const char* unknown : {"LAB8", "LAB9", "#", "workstation", ""})
        EXPECT_EQ(addressInHostsDatabase(hosts, unknown), std::nullopt) << unknown;
}

TEST(AnnouncedHosts, AreShownWithoutTheirDomain) {
    EXPECT_EQ(shownHostName("labpc.local"), "labpc");
    EXPECT_EQ(shownHostName("labpc.local."), "labpc");
    EXPECT_EQ(shownHostName("labpc"), "labpc");
    EXPECT_EQ(shownHostName("labpc.example.org"), "labpc.example.org");
    EXPECT_EQ(shownHostName(".local"), ".local");
}

TEST(ComputerNames, AreListedOnceWhateverTheirCaseAndNeverWithASeparator) {
    EXPECT_THAT(mergedNames({"Desk2.local", "a,b.local", "x y", "back\\slash", "bad\nname", ""}, {"desk2", "DESK3"}),
                ElementsAre("Desk2", "DESK3"));
}

}  // namespace
}  // namespace quillon
