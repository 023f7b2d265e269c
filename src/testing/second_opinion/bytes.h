// SPDX-License-Identifier: MIT
#pragma once

// The head of a file as numbers: every read is checked, and arithmetic on sizes stops at the largest size instead of
// starting anew at zero.

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "platform/source_files.h"

namespace quillon {

/// The largest size that a file can have. Sums and products end there.
inline constexpr std::uint64_t kLargestSize = std::numeric_limits<std::int64_t>::max();

/// A number out of a head; nothing when it lies outside of the bytes that are there, and so is all that is made of it.
using Number = std::optional<std::uint64_t>;

enum class Order { Little, Big };

/// The first bytes of a file, at most 512, each with its place counted from 0. Does not own them.
class Bytes {
public:
    constexpr explicit Bytes(std::string_view bytes) : bytes_(bytes.substr(0, kHeaderBytes)) {}

    [[nodiscard]] constexpr std::uint64_t size() const { return bytes_.size(); }
    [[nodiscard]] constexpr bool holds(std::uint64_t at, std::uint64_t count) const {
        return at <= bytes_.size() && count <= bytes_.size() - at;
    }
    /// Up to `count` bytes, fewer or none where the head ends earlier.
    [[nodiscard]] constexpr std::string_view part(std::uint64_t at, std::uint64_t count) const {
        return at > bytes_.size() ? std::string_view() : bytes_.substr(at, count);
    }
    [[nodiscard]] constexpr bool has(std::uint64_t at, std::string_view bytes) const {
        // Most comparisons end with the first byte, which costs no call.
        return bytes.empty() ||
               (holds(at, bytes.size()) && bytes_[at] == bytes.front() && bytes_.substr(at, bytes.size()) == bytes);
    }

    /// A whole number of 1 to 8 bytes.
    [[nodiscard]] constexpr Number number(std::uint64_t at, std::uint64_t width, Order order) const {
        if (!holds(at, width))
            return std::nullopt;
        std::uint64_t value = 0;
        for (std::uint64_t i = 0; i < width; ++i) {
            const auto place = at + (order == Order::Big ? i : width - 1 - i);
            value = value << 8U | static_cast<unsigned char>(bytes_[place]);
        }
        return value;
    }
    [[nodiscard]] constexpr Number u8(std::uint64_t at) const { return number(at, 1, Order::Little); }
    [[nodiscard]] constexpr Number le16(std::uint64_t at) const { return number(at, 2, Order::Little); }
    [[nodiscard]] constexpr Number le32(std::uint64_t at) const { return number(at, 4, Order::Little); }
    [[nodiscard]] constexpr Number le64(std::uint64_t at) const { return number(at, 8, Order::Little); }
    [[nodiscard]] constexpr Number be16(std::uint64_t at) const { return number(at, 2, Order::Big); }
    [[nodiscard]] constexpr Number be24(std::uint64_t at) const { return number(at, 3, Order::Big); }
    [[nodiscard]] constexpr Number be32(std::uint64_t at) const { return number(at, 4, Order::Big); }
    [[nodiscard]] constexpr Number be64(std::uint64_t at) const { return number(at, 8, Order::Big); }

private:
    std::string_view bytes_;
};

/// Whether there is a number and it lies within the two ends.
[[nodiscard]] constexpr bool within(Number number, std::uint64_t low, std::uint64_t high) {
    return number && *number >= low && *number <= high;
}

[[nodiscard]] constexpr Number plus(Number a, Number b) {
    if (!a || !b)
        return std::nullopt;
    const auto first = std::min(*a, kLargestSize);
    return first + std::min(*b, kLargestSize - first);
}
[[nodiscard]] constexpr Number plus(Number a, Number b, std::convertible_to<Number> auto... more) {
    return plus(plus(a, b), more...);
}

[[nodiscard]] constexpr Number times(Number a, Number b) {
    if (!a || !b)
        return std::nullopt;
    if (*b != 0 && *a > kLargestSize / *b)
        return kLargestSize;
    return *a * *b;
}

/// The next multiple of a unit above 0.
[[nodiscard]] constexpr std::uint64_t roundedUp(std::uint64_t number, std::uint64_t unit) {
    const auto over = number % unit;
    return over == 0 ? number : *plus(number, unit - over);
}

}  // namespace quillon
