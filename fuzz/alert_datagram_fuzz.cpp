// SPDX-License-Identifier: MIT
// Any bytes as a datagram that the messenger takes: what is answered is an alert that asks, and what is shown holds no
// control character.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "messaging/messenger.h"

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

void checkShown(const std::string& text) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        check((byte >= ' ' && byte != 0x7F) || c == '\n' || c == '\t');
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    int answers = 0;
    int shown = 0;
    int stored = 0;
    quillon::Messenger messenger(
        [&](const quillon::ReceivedAlert& alert) {
            ++stored;
            const std::string record = quillon::alertRecord("T", alert);
            checkShown(record);
            check(record.find('\n') == record.size() - 1);
        },
        [&](const std::string&) { ++answers; },
        [&](const quillon::ReceivedAlert& alert) {
            ++shown;
            checkShown(quillon::alertText("T", alert));
        });
    const auto kind = messenger.take(bytes);
    const bool isAlert = kind == quillon::DatagramKind::Alert;
    check(shown == (isAlert ? 1 : 0) && stored == shown && answers <= shown);
    return 0;
}
