// SPDX-License-Identifier: MIT
#include "messaging/system_network.h"

#include <algorithm>
#include <set>

#include "messaging/network_enum.h"
#include "platform/host_address.h"
#include "platform/service_browser.h"
#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

constexpr const char* kHostsDatabase = "/etc/hosts";

std::vector<std::string_view> words(std::string_view line) {
    constexpr std::string_view blanks = " \t";
    std::vector<std::string_view> found;
    line = line.substr(0, line.find('#'));
    for (auto start = line.find_first_not_of(blanks); start != line.npos; start = line.find_first_not_of(blanks)) {
        line.remove_prefix(start);
        const auto end = std::min(line.find_first_of(blanks), line.size());
        found.push_back(line.substr(0, end));
        line.remove_prefix(end);
    }
    return found;
}

bool isOtherComputer(const HostAddress& address) {
    const auto& bytes = address.bytes;
    if (address.isIpv4())
        return bytes[12] != 0 && bytes[12] != 127 && bytes[12] < 224;  // from 224 on: multicast, reserved, broadcast
    const bool zeroHead = std::all_of(bytes.begin(), bytes.end() - 1, [](std::uint8_t byte) { return byte == 0; });
    const bool localNet =
        bytes[0] == 0xFE && std::all_of(bytes.begin() + 1, bytes.end(), [](std::uint8_t byte) { return byte == 0; });
    return !(zeroHead && bytes[15] <= 1) && !localNet && bytes[0] != 0xFF;
}

// One container, the local network, with all computers in it.
class SystemNetwork final : public NetworkProvider {
public:
    Result<std::vector<NetworkResource>> enumerate(const NetworkResource* container, std::uint32_t /*resourceType*/,
                                                   Moment deadline) override {
        if (container == nullptr)
            return std::vector{NetworkResource{DisplayType::Network, kUsageContainer, "Local network"}};
        const auto hosts = readWholeFile(kHostsDatabase);
        const auto inDatabase = hosts ? namesInHostsDatabase(*hosts) : std::vector<std::string>{};
        std::vector<NetworkResource> servers;
        for (const std::string& name : mergedNames(browseAnnouncedHosts(deadline), inDatabase))
            servers.push_back({DisplayType::Server, 0, "\\\\" + name});
        return servers;
    }
};

}  // namespace

std::vector<std::string> namesInHostsDatabase(std::string_view text) {
    std::vector<std::string> names;
    for (const std::string_view line : splitLines(text)) {
        const auto fields = words(line);
        if (fields.size() < 2)
            continue;
        const auto address = numericAddress(std::string(fields[0]));
        if (!address || !isOtherComputer(*address))
            continue;
        const auto plain = std::find_if(fields.begin() + 1, fields.end(),
                                        [](std::string_view name) { return name.find('.') == name.npos; });
        names.emplace_back(plain != fields.end() ? *plain : fields[1]);
    }
    return names;
}

std::optional<HostAddress> addressInHostsDatabase(std::string_view text, const std::string& name) {
    if (auto address = numericAddress(name))
        return address;
    std::optional<HostAddress> first;
    for (const std::string_view line : splitLines(text)) {
        const auto fields = words(line);
        const auto isName = [folded = foldedName(name)](std::string_view field) { return foldedName(field) == folded; };
        if (fields.size() < 2 || std::none_of(fields.begin() + 1, fields.end(), isName))
            continue;
        const auto address = numericAddress(std::string(fields[0]));
        if (address && address->isIpv4())
            return address;
        if (address && !first)
            first = address;
    }
    return first;
}

Result<HostAddress> resolveByHostsDatabase(const std::string& name) {
    const auto hosts = readWholeFile(kHostsDatabase);
    const auto address = addressInHostsDatabase(hosts.value_or(std::string()), name);
    if (!address)
        return failure(ErrorKind::NotFound, readable(name) + " is not in the hosts database");
    return *address;
}

std::string shownHostName(std::string_view announced) {
    constexpr std::string_view suffix = ".local";
    while (!announced.empty() && announced.back() == '.') announced.remove_suffix(1);
    if (announced.size() > suffix.size() && announced.substr(announced.size() - suffix.size()) == suffix)
        announced.remove_suffix(suffix.size());
    return std::string(announced);
}

bool canBeListed(std::string_view name) {
    return !name.empty() && std::none_of(name.begin(), name.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= ' ' || byte == 0x7F || c == ',' || c == '\\';
    });
}

std::vector<std::string> mergedNames(const std::vector<std::string>& announced,
                                     const std::vector<std::string>& inDatabase) {
    std::vector<std::string> names;
    std::set<std::u16string> seen;
    const auto add = [&](const std::string& name) {
        if (canBeListed(name) && seen.insert(lowered(utf8ToUtf16(name))).second)
            names.push_back(name);
    };
    for (const std::string& name : announced) add(shownHostName(name));
    for (const std::string& name : inDatabase) add(name);
    return names;
}

std::shared_ptr<NetworkProvider> systemNetwork() {
    return std::make_shared<SystemNetwork>();
}

}  // namespace quillon
