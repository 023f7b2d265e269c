// SPDX-License-Identifier: MIT
#pragma once

// A datagram socket that a test drives: datagrams are put in by hand, failures are armed, and every operation is
// recorded by name.

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "platform/datagram_socket.h"

namespace quillon::test {

class ScriptedSocket final : public DatagramSocket {
public:
    /// Operations are appended to `journal` as "<name>.<operation>", so that the order over several sockets shows.
    ScriptedSocket(std::string name, std::vector<std::string>& journal) : name_(std::move(name)), journal_(journal) {}

    bool isOpen() const override { return open_; }
    void setRemoteHost(const std::string& host) override { note("RemoteHost=" + (remoteHost = host)); }
    void setRemotePort(std::int32_t port) override { note("RemotePort=" + std::to_string(remotePort = port)); }
    void setLocalPort(std::int32_t port) override { note("LocalPort=" + std::to_string(localPort = port)); }
    Result<void> bind(std::int32_t port) override {
        note("Bind " + std::to_string(port));
        if (bindError)
            return failure(*bindError);
        localPort = port;
        open();
        return {};
    }
    Result<void> sendData(std::string_view bytes) override {
        note("SendData");
        if (sendFailure)
            return failure(*sendFailure);
        open();
        if (lookupTurns > 0)
            lookupLeft_ = lookupTurns;
        waiting_ = std::string(bytes);
        if (lookupLeft_ == 0)
            leave();
        return {};
    }
    bool isSending() const override { return waiting_.has_value(); }
    std::string getData() override {
        note("GetData");
        told_ = false;
        if (!open_ || arrived_.empty())
            return "";
        std::string bytes = arrived_.front();
        arrived_.pop_front();
        return bytes;
    }
    void close() override {
        note("Close");
        open_ = false;
        told_ = false;
        arrived_.clear();
        waiting_.reset();
    }
    SocketEvents poll(std::chrono::milliseconds /*patience*/) override {
        SocketEvents events;
        if (waiting_ && (lookupLeft_ == 0 || --lookupLeft_ == 0)) {
            if (lookupError) {
                events.sendError = lookupError;
                waiting_.reset();
            } else {
                leave();
            }
        }
        events.arrived = announces && open_ && !told_ && !arrived_.empty();
        told_ = told_ || events.arrived;
        return events;
    }

    /// A datagram reaches the socket; lost when it is closed, as on a real one.
    void arrive(std::string bytes) {
        if (open_)
            arrived_.push_back(std::move(bytes));
    }
    void open() { open_ = true; }

    bool announces = true;  ///< false: what arrives is never told, but can be taken
    std::string remoteHost;
    std::int32_t remotePort = 0;
    std::int32_t localPort = 0;
    std::optional<FileError> bindError;
    std::optional<FileError> sendFailure;  ///< told by `sendData` itself
    int lookupTurns = 0;                   ///< how many polls a name look-up takes
    std::optional<FileError> lookupError;  ///< how the look-up ends
    std::vector<std::string> sent;         ///< datagrams that have left
    std::vector<std::string> sentTo;       ///< "<host>:<port> from <port>" of each

private:
    void note(const std::string& operation) { journal_.push_back(name_ + "." + operation); }
    void leave() {
        sent.push_back(*waiting_);
        sentTo.push_back(remoteHost + ":" + std::to_string(remotePort) + " from " + std::to_string(localPort));
        waiting_.reset();
    }

    std::string name_;
    std::vector<std::string>& journal_;
    bool open_ = false;
    bool told_ = false;
    int lookupLeft_ = 0;
    std::deque<std::string> arrived_;
    std::optional<std::string> waiting_;
};

}  // namespace quillon::test
