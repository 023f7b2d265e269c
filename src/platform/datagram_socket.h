// SPDX-License-Identifier: MIT
#pragma once

// A UDP socket as the alert exchange drives it: properties first, then bind or send; what happens is polled, so that it
// is dealt with on the thread that turns the event loop. Tests give a scripted one.

#include <chrono>
#include <cstdint>
#include <future>
#include <optional>
#include <string>
#include <string_view>

#include "platform/host_address.h"
#include "platform/result.h"

namespace quillon {

/// What a poll found.
struct SocketEvents {
    bool arrived = false;  ///< a datagram waits; told once, and again only after `getData` has been called
    std::optional<FileError> sendError;  ///< why a send failed whose name was looked up in the meantime; told once
};

class DatagramSocket {
public:
    virtual ~DatagramSocket() = default;

    /// True when the socket must be closed before it is set up anew.
    [[nodiscard]] virtual bool isOpen() const = 0;

    /// The peer of the next send. The name is looked up when something is sent. Ports are 0 to 65535; any other number
    /// fails in `bind` or `sendData`.
    virtual void setRemoteHost(const std::string& name) = 0;
    virtual void setRemotePort(std::int32_t port) = 0;
    virtual void setLocalPort(std::int32_t port) = 0;

    /// Opens the socket on a local port, which becomes the local port property. AddressInUse when the port is taken.
    [[nodiscard]] virtual Result<void> bind(std::int32_t port) = 0;

    /// Sends one datagram; binds the local port first when the socket is not open. Returns at once: a name is looked up
    /// on another thread, and the datagram leaves, or its failure is told, in a later `poll`. Closing the socket drops
    /// a datagram that has not left yet.
    [[nodiscard]] virtual Result<void> sendData(std::string_view bytes) = 0;

    /// True while a datagram waits for the address of its receiver.
    [[nodiscard]] virtual bool isSending() const = 0;

    /// The datagram that waits; empty when there is none or the socket is closed.
    [[nodiscard]] virtual std::string getData() = 0;

    /// Closes the socket; waiting datagrams are gone. A second close does nothing.
    virtual void close() = 0;

    /// Sends what has become ready and says what has happened. Waits for at most `patience` while there is nothing.
    [[nodiscard]] virtual SocketEvents poll(std::chrono::milliseconds patience) = 0;
};

/// The real one. IPv4 and IPv6 together where the computer has both.
class UdpSocket final : public DatagramSocket {
public:
    explicit UdpSocket(HostResolver resolver = resolveHost);
    /// Bound to one address of this computer instead of all.
    UdpSocket(HostResolver resolver, const HostAddress& localAddress);
    ~UdpSocket() override;
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    [[nodiscard]] bool isOpen() const override { return descriptor_ >= 0; }
    void setRemoteHost(const std::string& name) override { remoteHost_ = name; }
    void setRemotePort(std::int32_t port) override { remotePort_ = port; }
    void setLocalPort(std::int32_t port) override { localPort_ = port; }
    [[nodiscard]] Result<void> bind(std::int32_t port) override;
    [[nodiscard]] Result<void> sendData(std::string_view bytes) override;
    [[nodiscard]] bool isSending() const override { return pending_.has_value(); }
    [[nodiscard]] std::string getData() override;
    void close() override;
    [[nodiscard]] SocketEvents poll(std::chrono::milliseconds patience) override;

    /// Sends one datagram to an address that is known already; binds as `sendData` does.
    [[nodiscard]] Result<void> sendTo(const HostAddress& address, std::string_view bytes);
    /// The address that the datagram came from that `getData` gave last. Anybody can forge it.
    [[nodiscard]] const HostAddress& lastSender() const { return lastSender_; }
    /// The port that the system gave to a socket bound to port 0; 0 when the socket is closed.
    [[nodiscard]] std::int32_t boundPort() const;

private:
    struct PendingSend {
        std::future<Result<HostAddress>> address;
        std::string bytes;
    };

    [[nodiscard]] Result<void> open(std::int32_t port);
    void sendWhenResolved(SocketEvents& events);
    [[nodiscard]] bool readable(std::chrono::milliseconds patience) const;

    HostResolver resolver_;
    std::optional<HostAddress> localAddress_;
    std::string remoteHost_;
    std::int32_t remotePort_ = 0;
    std::int32_t localPort_ = 0;
    int descriptor_ = -1;
    bool ipv6_ = false;
    bool arrivalReported_ = false;
    HostAddress lastSender_;
    std::optional<PendingSend> pending_;
};

}  // namespace quillon
