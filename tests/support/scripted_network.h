// SPDX-License-Identifier: MIT
#pragma once

// A network that holds what the test says.

#include <string>
#include <utility>
#include <vector>

#include "messaging/network_enum.h"

namespace quillon::test {

/// A network of servers with these names.
class ScriptedNetwork final : public NetworkProvider {
public:
    explicit ScriptedNetwork(std::vector<std::string> names) : names_(std::move(names)) {}
    Result<std::vector<NetworkResource>> enumerate(const NetworkResource* container, std::uint32_t /*resourceType*/,
                                                   std::chrono::steady_clock::time_point /*deadline*/) override {
        std::vector<NetworkResource> found;
        if (container == nullptr) {
            for (const auto& name : names_) found.push_back({DisplayType::Server, 0, "\\\\" + name});
        }
        return found;
    }

private:
    std::vector<std::string> names_;
};

}  // namespace quillon::test
