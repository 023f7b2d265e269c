// SPDX-License-Identifier: MIT
#include "testing/second_opinion/check_sums.h"

#include <array>
#include <bit>

namespace quillon {

namespace {

using Table = std::array<std::uint32_t, 256>;

constexpr Table reflectedTable(std::uint32_t polynomial) {
    Table table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? value >> 1U ^ polynomial : value >> 1U;
        table[i] = value;
    }
    return table;
}

constexpr Table plainTable(std::uint32_t polynomial) {
    Table table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i << 24U;
        for (int bit = 0; bit < 8; ++bit) value = (value & 0x80000000U) != 0 ? value << 1U ^ polynomial : value << 1U;
        table[i] = value;
    }
    return table;
}

constexpr Table kCrc32 = reflectedTable(0xEDB88320U);
constexpr Table kOgg = plainTable(0x04C11DB7U);

constexpr std::uint32_t reflected(const Table& table, std::string_view bytes, std::uint32_t sum) {
    for (const char c : bytes) sum = sum >> 8U ^ table[(sum ^ static_cast<unsigned char>(c)) & 0xFFU];
    return sum;
}

constexpr std::uint32_t byteAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

}  // namespace

std::uint32_t crc32Of(std::string_view bytes) {
    return ~reflected(kCrc32, bytes, 0xFFFFFFFFU);
}

std::uint32_t oggSumOf(std::string_view page) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < page.size(); ++i) {
        const std::uint32_t byte = i >= 22 && i < 26 ? 0 : byteAt(page, i);
        sum = sum << 8U ^ kOgg[sum >> 24U ^ byte];
    }
    return sum;
}

std::uint32_t shortXxHashOf(std::string_view bytes) {
    constexpr std::uint32_t prime1 = 2654435761U;
    constexpr std::uint32_t prime2 = 2246822519U;
    constexpr std::uint32_t prime3 = 3266489917U;
    constexpr std::uint32_t prime4 = 668265263U;
    constexpr std::uint32_t prime5 = 374761393U;
    std::uint32_t hash = prime5 + static_cast<std::uint32_t>(bytes.size());
    std::size_t at = 0;
    for (; at + 4 <= bytes.size(); at += 4) {
        const auto word = byteAt(bytes, at) | byteAt(bytes, at + 1) << 8U | byteAt(bytes, at + 2) << 16U |
                          byteAt(bytes, at + 3) << 24U;
        hash = std::rotl(hash + word * prime3, 17) * prime4;
    }
    for (; at < bytes.size(); ++at) hash = std::rotl(hash + byteAt(bytes, at) * prime5, 11) * prime1;
    hash = (hash ^ hash >> 15U) * prime2;
    hash = (hash ^ hash >> 13U) * prime3;
    return hash ^ hash >> 16U;
}

}  // namespace quillon
