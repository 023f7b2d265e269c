// SPDX-License-Identifier: MIT
#include "platform/host_address.h"

#include <algorithm>
#include <cstring>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "platform/service_browser.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::array<std::uint8_t, 12> kIpv4Prefix{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};

HostAddress fromIpv4(const in_addr& address) {
    HostAddress result;
    std::copy(kIpv4Prefix.begin(), kIpv4Prefix.end(), result.bytes.begin());
    std::memcpy(result.bytes.data() + kIpv4Prefix.size(), &address, sizeof address);
    return result;
}

std::optional<HostAddress> fromSystem(const addrinfo& info) {
    if (info.ai_family == AF_INET && info.ai_addrlen >= sizeof(sockaddr_in)) {
        sockaddr_in address{};
        std::memcpy(&address, info.ai_addr, sizeof address);
        return fromIpv4(address.sin_addr);
    }
    if (info.ai_family == AF_INET6 && info.ai_addrlen >= sizeof(sockaddr_in6)) {
        sockaddr_in6 address{};
        std::memcpy(&address, info.ai_addr, sizeof address);
        HostAddress result;
        std::memcpy(result.bytes.data(), &address.sin6_addr, result.bytes.size());
        result.scope = address.sin6_scope_id;
        return result;
    }
    return std::nullopt;
}

Result<HostAddress> askSystem(const std::string& name, int flags) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = flags;
    addrinfo* list = nullptr;
    const int code = ::getaddrinfo(name.c_str(), nullptr, &hints, &list);
    if (code != 0)
        return failure(ErrorKind::NotFound, readable(name) + ": " + ::gai_strerror(code));
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
    std::optional<HostAddress> first;
    for (const addrinfo* info = list; info != nullptr; info = info->ai_next) {
        const auto address = fromSystem(*info);
        if (address && address->isIpv4())
            return *address;
        if (address && !first)
            first = address;
    }
    if (!first)
        return failure(ErrorKind::NotFound, readable(name) + ": no internet address");
    return *first;
}

// The library takes a name up to its first zero byte, which would be another name; no host name holds a control
// character.
bool canBeAsked(const std::string& name) {
    constexpr std::size_t longestName = 253;
    return !name.empty() && name.size() <= longestName &&
           std::none_of(name.begin(), name.end(), [](unsigned char c) { return c <= ' ' || c == 0x7F; });
}

}  // namespace

bool HostAddress::isIpv4() const {
    return std::equal(kIpv4Prefix.begin(), kIpv4Prefix.end(), bytes.begin());
}

std::optional<HostAddress> numericAddress(const std::string& text) {
    if (!canBeAsked(text))
        return std::nullopt;
    const auto address = askSystem(text, AI_NUMERICHOST);
    return address ? std::optional(*address) : std::nullopt;
}

Result<HostAddress> resolveHost(const std::string& name) {
    if (!canBeAsked(name))
        return failure(ErrorKind::NotFound, "\"" + readable(name) + "\" is not the name of a computer");
    auto address = askSystem(name, 0);
    if (address || name.find('.') != std::string::npos)
        return address;
    const std::string localName = name + ".local";
    if (const auto announced = resolveAnnouncedHost(localName)) {
        if (const auto found = numericAddress(*announced))
            return *found;
    }
    if (auto found = askSystem(localName, 0))
        return found;
    return address;
}

}  // namespace quillon
