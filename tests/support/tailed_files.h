// SPDX-License-Identifier: MIT
#pragma once

// Whole files of formats whose last mark is known. What lies between head and mark has no meaning; where the last
// thousand bytes are missing, only the end tells.

#include <string>
#include <string_view>
#include <vector>

namespace quillon::test {

struct TailedFile {
    std::string extension;
    std::string bytes;
    std::string start;  ///< of a term file: the first bytes as hexadecimal digits
};

/// JPEG, PNG, GIF, PDF, zip and MP4.
[[nodiscard]] inline std::vector<TailedFile> tailedFiles() {
    using namespace std::string_literals;
    const std::string body(5000, 'x');
    const auto le32 = [](std::size_t value) {
        std::string bytes;
        for (unsigned shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<char>(value >> shift & 0xFFU));
        return bytes;
    };
    const auto be32 = [&](std::size_t value) {
        const std::string bytes = le32(value);
        return std::string(bytes.rbegin(), bytes.rend());
    };
    const auto box = [&](std::string_view kind, const std::string& inside) {
        return be32(inside.size() + 8) + std::string(kind) + inside;
    };
    const auto member = [&](std::size_t length) {
        return "PK\3\4\x14\0\0\0\0\0\0\0\0\0\0\0\0\0"s + le32(length) + le32(length) + "\5\0\0\0a.bin"s +
               std::string(length, 'x');
    };
    const std::string members = member(600) + member(5000);
    const std::string entry = "PK\1\2"s + std::string(24, '\0') + "\5\0"s + std::string(16, '\0') + "a.bin";
    const std::string record = "PK\5\6\0\0\0\0\2\0\2\0"s + le32(2 * entry.size()) + le32(members.size()) + "\0\0"s;
    const std::string picture = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x10\0\0\0\x10\x08\x02\0\0\0\x90\x91\x68\x36"s;
    const auto chunk = [&](std::size_t length) {
        return be32(length) + "IDAT" + std::string(length, 'x') + std::string(4, '\0');
    };
    return {
        {"jpg", "\xFF\xD8\xFF\xDA\0\x08\x01\x01\0\0\x3F\0"s + body + "\xFF\xD9", "FFD8FF"},
        {"png", picture + chunk(1000) + chunk(4000) + "\0\0\0\0IEND\xAE\x42\x60\x82"s, "89504E47"},
        {"gif", "GIF89a\x10\0\x10\0\0\0\0"s + body + "\0;"s, "474946"},
        {"pdf", "%PDF-1.4\n1 0 obj\n" + body + "\nendobj\nstartxref\n9\n%%EOF\n", "25504446"},
        {"zip", members + entry + entry + record, "504B0304"},
        {"mp4", box("ftyp", "isom" + std::string(12, '\0')) + box("moov", std::string(900, 'm')) + box("mdat", body),
         "0000001866747970"},
    };
}

}  // namespace quillon::test
