// SPDX-License-Identifier: MIT
#pragma once

// `quillon-messenger`: receives alerts on the computer of the person who waits for them, shows and stores them and
// acknowledges.

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "messaging/system_network.h"
#include "platform/host_address.h"

namespace quillon {

/// What the command takes from its process.
struct MessengerProcess {
    std::ostream& out;                                   ///< the alerts
    std::ostream& err;                                   ///< everything else
    std::function<int()> interrupts = [] { return 0; };  ///< presses of Ctrl-C so far: the first one ends the command
    HostResolver resolver = resolveHost;
    HostResolver known = resolveByHostsDatabase;  ///< what needs no asking
    /// Ends the process with this status at once: somebody does not read its output, and a usual end would wait for
    /// that.
    std::function<void(int status)> endNow = [](int) {};
};

/// Exit statuses.
inline constexpr int kMessengerEnded = 0;   ///< by Ctrl-C or by its service manager
inline constexpr int kMessengerFailed = 1;  ///< the port or the log file cannot be had
inline constexpr int kMessengerUsage = 2;   ///< a line says how to use it

/// Runs the command with its arguments (without the program's name) until it is interrupted; gives the exit status.
[[nodiscard]] int runMessengerCommand(const std::vector<std::string>& arguments, const MessengerProcess& process);

}  // namespace quillon
