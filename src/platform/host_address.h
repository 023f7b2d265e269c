// SPDX-License-Identifier: MIT
#pragma once

// The internet address of a computer, and how it is found by its name.

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/result.h"

namespace quillon {

/// An address in its IPv6 form; an IPv4 address a.b.c.d stands as ::ffff:a.b.c.d.
struct HostAddress {
    std::array<std::uint8_t, 16> bytes{};
    std::uint32_t scope = 0;  ///< the interface of a link-local address, else 0

    [[nodiscard]] bool isIpv4() const;

    friend bool operator==(const HostAddress&, const HostAddress&) = default;
};

/// An address written in numbers ("192.168.0.7", "fe80::1"); no value for anything else. Asks nobody.
[[nodiscard]] std::optional<HostAddress> numericAddress(const std::string& text);

/// The address of a computer: one, the IPv4 one where the name has several. A name without a dot that the system does
/// not know is looked for among the computers that announce themselves on the local network. May block for many
/// seconds: never call it on a thread that a person waits for. An unknown name is a NotFound failure.
[[nodiscard]] Result<HostAddress> resolveHost(const std::string& name);

/// How a name becomes an address; tests give their own.
using HostResolver = std::function<Result<HostAddress>(const std::string&)>;

}  // namespace quillon
