// SPDX-License-Identifier: MIT
#pragma once

// Finds damage, not forgery: a digest of bytes and numbers that any single changed word changes for certain, and any
// other damage but for one case in 2^64.

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace quillon {

class Digest {
public:
    void add(std::uint64_t word) {
        // Each step can be undone, for the state as for the word: what differs once stays different.
        state_ = std::rotl((state_ ^ word) * 0x9E3779B97F4A7C15U, 29) + 0x165667B19E3779F9U;
    }
    void add(std::int64_t number) { add(static_cast<std::uint64_t>(number)); }
    void add(std::optional<std::int64_t> number) {
        add(std::uint64_t{number.has_value()});
        add(number.value_or(0));
    }
    /// With their number, so that two texts side by side do not count as one.
    void add(std::string_view bytes) {
        add(std::uint64_t{bytes.size()});
        for (; bytes.size() >= sizeof(std::uint64_t); bytes.remove_prefix(sizeof(std::uint64_t)))
            add(wordOf(bytes.substr(0, sizeof(std::uint64_t))));
        add(wordOf(bytes));
    }

    [[nodiscard]] std::int64_t value() const {
        std::uint64_t mixed = (state_ ^ (state_ >> 32)) * 0xD6E8FEB86659FD93U;
        mixed ^= mixed >> 32;
        return static_cast<std::int64_t>(mixed);
    }

private:
    static std::uint64_t wordOf(std::string_view bytes) {
        static_assert(std::endian::native == std::endian::little, "digests are kept in files");
        std::uint64_t word = 0;
        if (!bytes.empty())
            std::memcpy(&word, bytes.data(), bytes.size());
        return word;
    }

    std::uint64_t state_ = 0x27D4EB2F165667C5U;
};

}  // namespace quillon
