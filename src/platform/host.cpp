// SPDX-License-Identifier: MIT
#include "platform/host.h"

#include <array>

#include <pwd.h>
#include <unistd.h>

#include "text/fields.h"

namespace quillon {

std::string hostName() {
    std::array<char, 256> buffer{};
    if (::gethostname(buffer.data(), buffer.size() - 1) != 0)
        return "localhost";
    const std::string_view name = trimRight(std::string_view(buffer.data()));
    return name.empty() ? "localhost" : std::string(name);
}

std::string userName() {
    const struct passwd* entry = ::getpwuid(::geteuid());
    return entry != nullptr && entry->pw_name != nullptr ? entry->pw_name : "";
}

}  // namespace quillon
