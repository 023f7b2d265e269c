// SPDX-License-Identifier: MIT
#pragma once

// SHA-256 of bytes that come in pieces, by the processor's own instructions where it has them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace quillon {

using Sha256Digest = std::array<std::uint8_t, 32>;

class Sha256 {
public:
    Sha256();

    void add(std::string_view bytes);
    /// So many bytes of value 0, as a hole of a file reads.
    void addZeros(std::uint64_t count);
    /// Of all that was added; begins anew.
    [[nodiscard]] Sha256Digest finish();

private:
    struct Free {
        void operator()(evp_md_ctx_st* context) const;
    };
    void begin();

    std::unique_ptr<evp_md_ctx_st, Free> context_;
};

/// 64 digits in lower case.
[[nodiscard]] std::string hexText(const Sha256Digest& digest);

}  // namespace quillon
