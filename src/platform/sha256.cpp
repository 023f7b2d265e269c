// SPDX-License-Identifier: MIT
#include "platform/sha256.h"

#include <algorithm>
#include <new>

#include <openssl/evp.h>

namespace quillon {

namespace {

// The library fails where memory is short, and for nothing else that is asked of it here.
void need(bool done) {
    if (!done)
        throw std::bad_alloc();
}

}  // namespace

void Sha256::Free::operator()(evp_md_ctx_st* context) const {
    EVP_MD_CTX_free(context);
}

Sha256::Sha256() : context_(EVP_MD_CTX_new()) {
    need(context_ != nullptr);
    begin();
}

void Sha256::begin() {
    need(EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1);
}

void Sha256::add(std::string_view bytes) {
    need(EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1);
}

void Sha256::addZeros(std::uint64_t count) {
    static constexpr std::array<char, 64UL * 1024> kZeros{};
    while (count > 0) {
        const auto size = std::min<std::uint64_t>(count, kZeros.size());
        add({kZeros.data(), size});
        count -= size;
    }
}

Sha256Digest Sha256::finish() {
    Sha256Digest digest{};
    need(EVP_DigestFinal_ex(context_.get(), digest.data(), nullptr) == 1);
    begin();
    return digest;
}

std::string hexText(const Sha256Digest& digest) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    text.reserve(2 * digest.size());
    for (const std::uint8_t byte : digest) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

}  // namespace quillon
