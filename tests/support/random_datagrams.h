// SPDX-License-Identifier: MIT
#pragma once

// Datagrams that nobody meant: pieces of the alert format in any order, and bytes between them.

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace quillon::test {

/// How many a test sends: `usual`, or what QUILLON_RANDOM_DATAGRAMS says; the whole run takes 1000000.
inline int randomDatagramCount(int usual) {
    const char* text = std::getenv("QUILLON_RANDOM_DATAGRAMS");
    return text != nullptr ? std::atoi(text) : usual;
}

inline std::string randomDatagram(std::mt19937& random) {
    static const std::vector<std::string> pieces{"\xFF", "\xFF", "\xFF", "Acknowledged", " 1",
                                                 "1",    "0",    "LAB7", "\r\n"};
    std::string bytes;
    const auto count = random() % 9;
    for (unsigned i = 0; i < count; ++i) {
        if (random() % 4 == 0)
            bytes += static_cast<char>(random() % 256);
        else
            bytes += pieces[random() % pieces.size()];
    }
    return bytes;
}

/// Whether a wait takes these bytes for an answer: the third of three or more fields is the word, whatever the others
/// hold. Told from the bytes alone.
inline bool isAnswer(const std::string& bytes) {
    const auto first = bytes.find('\xFF');
    const auto second = first == std::string::npos ? first : bytes.find('\xFF', first + 1);
    if (second == std::string::npos)
        return false;
    const auto end = bytes.find('\xFF', second + 1);
    return bytes.substr(second + 1, end == std::string::npos ? end : end - second - 1) == "Acknowledged";
}

}  // namespace quillon::test
