// SPDX-License-Identifier: MIT
#include "platform/datagram_socket.h"

#include <algorithm>
#include <cstring>
#include <thread>
#include <utility>

#include <fmt/format.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "platform/start_beside.h"
#include "platform/system_error.h"

namespace quillon {

namespace {

// The largest payload that a UDP datagram can have is below this.
constexpr std::size_t kDatagramBytes = 65536;
// While a name is being looked up nothing tells of the answer, so it is asked for at this interval.
constexpr std::chrono::milliseconds kLookupInterval{2};

std::string portName(std::int32_t port) {
    return fmt::format("UDP port {}", port);
}

// The system's form of an address and how many bytes of it count.
struct SystemAddress {
    sockaddr_storage storage{};
    socklen_t length = 0;
};

SystemAddress systemAddress(const HostAddress& address, std::uint16_t port, bool ipv6) {
    SystemAddress result;
    if (ipv6) {
        sockaddr_in6 form{};
        form.sin6_family = AF_INET6;
        form.sin6_port = htons(port);
        form.sin6_scope_id = address.scope;
        std::memcpy(&form.sin6_addr, address.bytes.data(), address.bytes.size());
        std::memcpy(&result.storage, &form, sizeof form);
        result.length = sizeof form;
    } else {
        sockaddr_in form{};
        form.sin_family = AF_INET;
        form.sin_port = htons(port);
        std::memcpy(&form.sin_addr, address.bytes.data() + 12, sizeof form.sin_addr);
        std::memcpy(&result.storage, &form, sizeof form);
        result.length = sizeof form;
    }
    return result;
}

// The other way round; an address of no kind for any other form.
HostAddress hostAddress(const SystemAddress& address) {
    HostAddress result;
    if (address.storage.ss_family == AF_INET6) {
        sockaddr_in6 form{};
        std::memcpy(&form, &address.storage, sizeof form);
        std::memcpy(result.bytes.data(), &form.sin6_addr, result.bytes.size());
        result.scope = form.sin6_scope_id;
    } else if (address.storage.ss_family == AF_INET) {
        sockaddr_in form{};
        std::memcpy(&form, &address.storage, sizeof form);
        result.bytes[10] = result.bytes[11] = 0xFF;
        std::memcpy(result.bytes.data() + 12, &form.sin_addr, sizeof form.sin_addr);
    }
    return result;
}

int newSocket(bool ipv6) {
    return ::socket(ipv6 ? AF_INET6 : AF_INET, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

bool acceptIpv4Too(int descriptor) {
    const int off = 0;
    return ::setsockopt(descriptor, IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off) == 0;
}

Result<void> bindDescriptor(int descriptor, const SystemAddress& address, std::int32_t port) {
    const auto* form = reinterpret_cast<const sockaddr*>(&address.storage);
    if (::bind(descriptor, form, address.length) != 0)
        return failure(systemError(portName(port)));
    return {};
}

}  // namespace

UdpSocket::UdpSocket(HostResolver resolver) : resolver_(std::move(resolver)) {
}

UdpSocket::UdpSocket(HostResolver resolver, const HostAddress& localAddress)
    : resolver_(std::move(resolver)), localAddress_(localAddress) {
}

UdpSocket::~UdpSocket() {
    close();
}

void UdpSocket::close() {
    pending_.reset();
    arrivalReported_ = false;
    if (descriptor_ >= 0)
        ::close(std::exchange(descriptor_, -1));
}

Result<void> UdpSocket::open(std::int32_t port) {
    if (port < 0 || port > 65535)
        return failure(ErrorKind::InvalidArgument, portName(port) + ": no such port");
    ipv6_ = !localAddress_ || !localAddress_->isIpv4();
    int descriptor = newSocket(ipv6_);
    if (descriptor >= 0 && ipv6_ && !localAddress_ && !acceptIpv4Too(descriptor)) {
        ::close(descriptor);
        descriptor = -1;
    }
    if (descriptor < 0 && !localAddress_) {
        // A kernel without IPv6.
        ipv6_ = false;
        descriptor = newSocket(false);
    }
    if (descriptor < 0)
        return failure(systemError(portName(port)));
    const auto address = systemAddress(localAddress_.value_or(HostAddress{}), static_cast<std::uint16_t>(port), ipv6_);
    if (auto bound = bindDescriptor(descriptor, address, port); !bound) {
        ::close(descriptor);
        return bound;
    }
    descriptor_ = descriptor;
    localPort_ = port;
    arrivalReported_ = false;
    return {};
}

Result<void> UdpSocket::bind(std::int32_t port) {
    if (isOpen())
        return failure(ErrorKind::InvalidArgument, portName(port) + ": the socket is open already");
    return open(port);
}

Result<void> UdpSocket::sendData(std::string_view bytes) {
    if (!isOpen()) {
        if (auto opened = open(localPort_); !opened)
            return opened;
    }
    if (const auto address = numericAddress(remoteHost_))
        return sendTo(*address, bytes);
    auto lookup = startBeside([resolve = resolver_, name = remoteHost_] { return resolve(name); });
    if (!lookup)
        return failure(lookup.error());
    pending_.emplace(PendingSend{*std::move(lookup), std::string(bytes)});
    return {};
}

Result<void> UdpSocket::sendTo(const HostAddress& address, std::string_view bytes) {
    if (remotePort_ <= 0 || remotePort_ > 65535)
        return failure(ErrorKind::InvalidArgument, portName(remotePort_) + ": no such port");
    if (!isOpen()) {
        if (auto opened = open(localPort_); !opened)
            return opened;
    }
    if (!ipv6_ && !address.isIpv4())
        return failure(systemError(portName(remotePort_), EAFNOSUPPORT));
    const auto peer = systemAddress(address, static_cast<std::uint16_t>(remotePort_), ipv6_);
    const auto* form = reinterpret_cast<const sockaddr*>(&peer.storage);
    const auto sent =
        retried([&] { return ::sendto(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL, form, peer.length); });
    if (sent < 0)
        return failure(systemError(portName(remotePort_)));
    return {};
}

std::string UdpSocket::getData() {
    arrivalReported_ = false;
    std::string bytes;
    if (!isOpen())
        return bytes;
    bytes.resize(kDatagramBytes);
    SystemAddress sender;
    auto* const form = reinterpret_cast<sockaddr*>(&sender.storage);
    sender.length = sizeof sender.storage;
    const auto count =
        retried([&] { return ::recvfrom(descriptor_, bytes.data(), bytes.size(), 0, form, &sender.length); });
    lastSender_ = hostAddress(sender);
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

void UdpSocket::sendWhenResolved(SocketEvents& events) {
    if (!pending_ || !hasCome(pending_->address, std::chrono::milliseconds{0}))
        return;
    const auto address = pending_->address.get();
    const std::string bytes = std::move(pending_->bytes);
    pending_.reset();
    if (!address)
        events.sendError = address.error();
    else if (auto sent = sendTo(*address, bytes); !sent)
        events.sendError = sent.error();
}

bool UdpSocket::readable(std::chrono::milliseconds patience) const {
    pollfd watched{descriptor_, POLLIN, 0};
    return ::poll(&watched, 1, static_cast<int>(patience.count())) > 0 && (watched.revents & POLLIN) != 0;
}

SocketEvents UdpSocket::poll(std::chrono::milliseconds patience) {
    SocketEvents events;
    sendWhenResolved(events);
    if (events.sendError)
        patience = std::chrono::milliseconds{0};
    else if (pending_)
        patience = std::min(patience, kLookupInterval);
    if (!isOpen() || arrivalReported_) {
        std::this_thread::sleep_for(patience);
        return events;
    }
    events.arrived = readable(patience);
    arrivalReported_ = events.arrived;
    return events;
}

std::int32_t UdpSocket::boundPort() const {
    sockaddr_storage storage{};
    socklen_t length = sizeof storage;
    if (!isOpen() || ::getsockname(descriptor_, reinterpret_cast<sockaddr*>(&storage), &length) != 0)
        return 0;
    sockaddr_in form{};
    std::memcpy(&form, &storage, sizeof form);  // the port stands at the same place in both families
    return ntohs(form.sin_port);
}

}  // namespace quillon
