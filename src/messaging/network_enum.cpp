// SPDX-License-Identifier: MIT
#include "messaging/network_enum.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "app/turn_until.h"
#include "platform/host.h"
#include "platform/start_beside.h"

namespace quillon {

namespace {

// A person picks one name of a list; a network of more resources is not walked to its end.
constexpr std::size_t kMostResources = 65536;

// What the thread has found so far; it outlives both sides.
struct Walk {
    std::mutex mutex;
    std::vector<NetworkResource> resources;

    void add(std::vector<NetworkResource> more) {
        const std::lock_guard lock(mutex);
        for (NetworkResource& resource : more) {
            if (resources.size() < kMostResources)
                resources.push_back(std::move(resource));
        }
    }
    [[nodiscard]] std::optional<NetworkResource> at(std::size_t index) {
        const std::lock_guard lock(mutex);
        return index < resources.size() ? std::optional(resources[index]) : std::nullopt;
    }
    [[nodiscard]] std::vector<NetworkResource> all() {
        const std::lock_guard lock(mutex);
        return resources;
    }
};

// Breadth first over a single list: what a container holds goes behind everything that is known already.
void walkNetwork(NetworkProvider& provider, std::uint32_t resourceType, Moment deadline, Walk& walk) {
    if (auto root = provider.enumerate(nullptr, resourceType, deadline))
        walk.add(std::move(*root));
    for (std::size_t index = 0; momentNow() < deadline; ++index) {
        const auto resource = walk.at(index);
        if (!resource)
            break;
        if ((resource->usage & kUsageContainer) == 0)
            continue;
        if (auto children = provider.enumerate(&*resource, resourceType, deadline))
            walk.add(std::move(*children));
    }
}

const char* separatorOf(DisplayType type) {
    switch (type) {
        case DisplayType::Domain:
            return ", ";
        case DisplayType::Server:
            return ",";
        default:
            return "|";
    }
}

}  // namespace

CNetworkEnum::CNetworkEnum(std::shared_ptr<NetworkProvider> provider, EventLoop& loop,
                           std::chrono::milliseconds patience)
    : provider_(std::move(provider)), loop_(loop), patience_(patience) {
}

void CNetworkEnum::Reset() {
    for (std::string& list : lists_) list.clear();
    collect(walk());
}

std::vector<NetworkResource> CNetworkEnum::walk() const {
    const auto state = std::make_shared<Walk>();
    const auto deadline = momentNow() + patience_;
    const auto walked = startBeside([state, provider = provider_, type = resourceType_, deadline] {
        walkNetwork(*provider, type, deadline, *state);
    });
    if (!walked)
        return {};  // as though the network were silent
    turnUntil(loop_, [&](std::chrono::milliseconds pause) {
        const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(deadline - momentNow());
        return remaining.count() <= 0 || hasCome(*walked, std::min(pause, remaining));
    });
    return state->all();
}

void CNetworkEnum::collect(const std::vector<NetworkResource>& resources) {
    if (resources.size() < 2)
        return;
    userName_ = userName();
    machineName_ = hostName();
    for (const NetworkResource& resource : resources) {
        const auto type = static_cast<std::size_t>(resource.displayType);
        if (type < lists_.size())
            lists_[type] += resource.remoteName.value_or("") + separatorOf(resource.displayType);
    }
}

const std::string& CNetworkEnum::list(DisplayType type) const {
    static const std::string none;
    const auto index = static_cast<std::size_t>(type);
    return index < lists_.size() ? lists_[index] : none;
}

}  // namespace quillon
