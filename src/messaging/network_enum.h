// SPDX-License-Identifier: MIT
#pragma once

// The computers of the network: a walk over the tree of network resources, the names sorted by display type. Made anew
// for each query.

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/event_loop.h"
#include "platform/moment.h"
#include "platform/result.h"

namespace quillon {

/// What kind of thing a resource is shown as. Other values than these are skipped.
enum class DisplayType : std::uint32_t {
    Generic = 0,
    Domain = 1,
    Server = 2,
    Share = 3,
    File = 4,
    Group = 5,
    Network = 6,
    Root = 7,
    AdminShare = 8,
    Directory = 9,
};

inline constexpr std::uint32_t kResourceDisk = 1;
inline constexpr std::uint32_t kUsageContainer = 2;

struct NetworkResource {
    DisplayType displayType = DisplayType::Generic;
    std::uint32_t usage = 0;                ///< bit 2: a container, which the walk opens
    std::optional<std::string> remoteName;  ///< UTF-8; a server's begins with "\\"
};

/// Knows what is on the network. Called on a thread of its own, never on the one that a person waits for.
class NetworkProvider {
public:
    virtual ~NetworkProvider() = default;

    /// What stands directly in a container; null for the root. Ends at `deadline` with what is known by then.
    [[nodiscard]] virtual Result<std::vector<NetworkResource>> enumerate(const NetworkResource* container,
                                                                         std::uint32_t resourceType,
                                                                         Moment deadline) = 0;
};

class CNetworkEnum {
public:
    /// The longest that `Reset` takes; what has not answered by then is left out.
    static constexpr std::chrono::milliseconds kPatience{2800};

    /// The provider is shared with the thread that asks it, which a silent network can keep longer than this object
    /// lives.
    CNetworkEnum(std::shared_ptr<NetworkProvider> provider, EventLoop& loop,
                 std::chrono::milliseconds patience = kPatience);

    /// Walks the whole network, breadth first, and fills the lists, turning the event loop meanwhile. A root or a
    /// container that cannot be opened counts as empty.
    ///
    /// Kept: a network of a single resource collects nothing, not even the names of user and computer (test
    /// ASingleResourceCollectsNothing).
    void Reset();

    void SetResourceType(std::uint32_t type) { resourceType_ = type; }
    [[nodiscard]] std::uint32_t GetResourceType() const { return resourceType_; }
    /// This computer's name; empty until a walk has collected something.
    [[nodiscard]] const std::string& GetLocalMachineName() const { return machineName_; }
    /// The servers, each with its "\\" in front and a comma behind; empty without one.
    [[nodiscard]] const std::string& GetServerList() const { return list(DisplayType::Server); }
    /// The names of one display type, each followed by the separator of the type: ", " for domains, "," for servers,
    /// "|" for all others.
    [[nodiscard]] const std::string& list(DisplayType type) const;

private:
    [[nodiscard]] std::vector<NetworkResource> walk() const;
    void collect(const std::vector<NetworkResource>& resources);

    std::shared_ptr<NetworkProvider> provider_;
    EventLoop& loop_;
    std::chrono::milliseconds patience_;
    std::uint32_t resourceType_ = kResourceDisk;
    std::string userName_;
    std::string machineName_;
    std::array<std::string, 10> lists_;
};

/// The computers that announce themselves on the local network and those of the hosts database.
[[nodiscard]] std::shared_ptr<NetworkProvider> systemNetwork();

}  // namespace quillon
