// SPDX-License-Identifier: MIT
// Heads put together field by field from the layouts of formats.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "testing/header_term.h"
#include "testing/second_opinion/check_sums.h"
#include "testing/second_opinion/second_opinion.h"

namespace quillon {

// How a failed test shows a doubt.
inline void PrintTo(const Doubt& doubt, std::ostream* out) {
    *out << doubtKindName(doubt.kind) << ", needs " << doubt.needed << ": " << doubt.sentence;
}

}  // namespace quillon

namespace quillon::test {

// 512 zero bytes, and what is put into them. Places count from 0.
class MadeHead {
public:
    MadeHead& text(std::size_t at, std::string_view bytes) {
        bytes_.replace(at, bytes.size(), bytes);
        return *this;
    }
    MadeHead& hex(std::size_t at, std::string_view digits) { return text(at, hexToText(digits)); }
    MadeHead& little(std::size_t at, std::size_t width, std::uint64_t value) {
        for (std::size_t i = 0; i < width; ++i) bytes_[at + i] = static_cast<char>(value >> 8U * i & 0xFFU);
        return *this;
    }
    MadeHead& big(std::size_t at, std::size_t width, std::uint64_t value) {
        for (std::size_t i = 0; i < width; ++i) bytes_[at + width - 1 - i] = static_cast<char>(value >> 8U * i & 0xFFU);
        return *this;
    }
    MadeHead& le16(std::size_t at, std::uint64_t value) { return little(at, 2, value); }
    MadeHead& le32(std::size_t at, std::uint64_t value) { return little(at, 4, value); }
    MadeHead& le64(std::size_t at, std::uint64_t value) { return little(at, 8, value); }
    MadeHead& be16(std::size_t at, std::uint64_t value) { return big(at, 2, value); }
    MadeHead& be32(std::size_t at, std::uint64_t value) { return big(at, 4, value); }
    MadeHead& be64(std::size_t at, std::uint64_t value) { return big(at, 8, value); }
    // CRC-32 of `count` bytes from `from` on, written at `at`.
    MadeHead& sumLittle(std::size_t at, std::size_t from, std::size_t count) { return le32(at, sumOf(from, count)); }
    MadeHead& sumBig(std::size_t at, std::size_t from, std::size_t count) { return be32(at, sumOf(from, count)); }

    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    [[nodiscard]] std::uint32_t sumOf(std::size_t from, std::size_t count) const {
        return crc32Of(std::string_view(bytes_).substr(from, count));
    }

    std::string bytes_ = std::string(kHeaderBytes, '\0');
};

inline Opinion opinionOn(const MadeHead& head, std::uint64_t size) {
    return secondOpinion(head.bytes(), size);
}

inline void expectKind(const MadeHead& head, std::uint64_t size, DoubtKind kind) {
    const auto doubt = opinionOn(head, size);
    ASSERT_TRUE(doubt) << "no doubt, expected " << doubtKindName(kind);
    EXPECT_EQ(doubtKindName(doubt->kind), doubtKindName(kind)) << doubt->sentence;
}

// Whole from `needed` bytes on; cut, and told so, with fewer.
inline void expectNeeds(const MadeHead& head, std::uint64_t needed, std::uint64_t slack = 0) {
    EXPECT_EQ(opinionOn(head, needed), std::nullopt);
    EXPECT_EQ(opinionOn(head, needed - slack), std::nullopt);
    const auto cut = opinionOn(head, needed - slack - 1);
    ASSERT_TRUE(cut) << "no doubt one byte below " << needed - slack;
    EXPECT_EQ(cut->kind, DoubtKind::Cut);
    EXPECT_EQ(cut->needed, needed) << cut->sentence;
}

}  // namespace quillon::test
