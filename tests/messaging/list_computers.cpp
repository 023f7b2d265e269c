// SPDX-License-Identifier: MIT
// For namespaces_test.sh: prints the server list of this computer's network, or with a name its address.
#include <iostream>

#include "messaging/network_enum.h"
#include "platform/host_address.h"
#include "support/fake_surroundings.h"

int main(int argc, char* argv[]) {
    if (argc > 1) {
        const auto address = quillon::resolveHost(argv[1]);
        if (!address) {
            std::cout << address.error().text << '\n';
            return 1;
        }
        for (std::size_t i = 12; i < 16; ++i) std::cout << int(address->bytes.at(i)) << (i < 15 ? "." : "\n");
        return 0;
    }
    quillon::test::CountingLoop loop;
    quillon::CNetworkEnum network(quillon::systemNetwork(), loop);
    network.Reset();
    std::cout << network.GetServerList() << '\n';
    return 0;
}
