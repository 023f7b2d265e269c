// SPDX-License-Identifier: MIT
#include "testing/byte_patterns.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace quillon::test {

namespace {

std::string repeated(std::string_view piece, std::size_t size) {
    std::string out;
    while (out.size() < size) out += piece;
    out.resize(size);
    return out;
}

std::string randomBytes(std::mt19937& random, std::size_t size) {
    std::string out(size, '\0');
    for (char& c : out) c = static_cast<char>(random() & 0xFFU);
    return out;
}

TEST(FillPatternTest, TheShortestPieceIsThePattern) {
    EXPECT_EQ(fillPattern(std::string(512, '\xF6')), "\xF6");
    EXPECT_EQ(fillPattern(repeated("ABAB", 512)), "AB");
    EXPECT_EQ(fillPattern(repeated("BAD SECTOR", 512)), "BAD SECTOR") << "512 is no multiple of ten";
    EXPECT_EQ(fillPattern(repeated(std::string_view("\xDE\xAD\xBE\xEF", 4), 512)), "\xDE\xAD\xBE\xEF");
}

TEST(FillPatternTest, OneOtherByteIsNoFill) {
    for (const std::size_t at : {std::size_t{0}, std::size_t{255}, std::size_t{511}}) {
        auto bytes = repeated("AB", 512);
        bytes[at] = 'x';
        EXPECT_FALSE(fillPattern(bytes)) << at;
    }
}

TEST(FillPatternTest, APatternStandsAtLeastFourTimes) {
    EXPECT_TRUE(fillPattern(repeated("ABCD", 16)));
    EXPECT_FALSE(fillPattern(repeated("ABCD", 15)));
    EXPECT_FALSE(fillPattern("aaa"));
    EXPECT_FALSE(fillPattern(""));
}

TEST(FillPatternTest, APatternLongerThanAllMarkersIsNoFill) {
    std::mt19937 random(1);
    EXPECT_TRUE(fillPattern(repeated(randomBytes(random, kLongestFillPattern), 512)));
    EXPECT_FALSE(fillPattern(repeated(randomBytes(random, kLongestFillPattern + 1), 512)));
}

TEST(TextEncodingTest, EachEncodingIsTold) {
    EXPECT_EQ(textEncoding("Dear customer,\r\n\tyour files\r\n"), "ASCII");
    EXPECT_EQ(textEncoding("Gr\xC3\xBC\xC3\x9F Gott"), "UTF-8");
    EXPECT_EQ(textEncoding("\xEF\xBB\xBFplain"), "UTF-8");
    EXPECT_EQ(textEncoding("Gr\xFC\xDF Gott, Herr M\xFCller"), "Windows-1252");
    EXPECT_EQ(textEncoding(std::string_view("\xFF\xFEH\0e\0l\0l\0o\0 \0y\0o\0u\0", 20)), "UTF-16 (little-endian)");
    EXPECT_EQ(textEncoding(std::string_view("\0H\0e\0l\0l\0o\0 \0y\0o\0u", 18)), "UTF-16 (big-endian)");
}

TEST(TextEncodingTest, ACharacterThatTheEndCutsIsNoFault) {
    EXPECT_EQ(textEncoding("text and \xE2\x82"), "UTF-8");
    EXPECT_EQ(textEncoding("text and \xF0\x9F\x98"), "UTF-8");
}

TEST(TextEncodingTest, ControlCharactersAreNoText) {
    EXPECT_FALSE(textEncoding(std::string_view("MZ\0\0", 4)));
    EXPECT_FALSE(textEncoding("text\x01"));
    EXPECT_FALSE(textEncoding(""));
    EXPECT_FALSE(textEncoding("\xFF\xD8\xFF\xE0"));
}

TEST(NoiseTest, RandomBytesAreNoise) {
    std::mt19937 random(2);
    int missed = 0;
    for (int i = 0; i < 2000; ++i) missed += looksLikeNoise(randomBytes(random, 512)) ? 0 : 1;
    EXPECT_LE(missed, 2);
}

TEST(NoiseTest, DataWithAnyOrderIsNone) {
    std::string ramp;
    for (int i = 0; i < 512; ++i) ramp.push_back(static_cast<char>(i & 0xFF));
    EXPECT_FALSE(looksLikeNoise(ramp));
    EXPECT_FALSE(looksLikeNoise(repeated("The quick brown fox jumps over the lazy dog. ", 512)));
    EXPECT_FALSE(looksLikeNoise(std::string(512, '\0')));
    std::mt19937 random(3);
    auto samples = randomBytes(random, 512);  // sixteen-bit sound: every other byte is near zero
    for (std::size_t i = 1; i < samples.size(); i += 2) samples[i] = static_cast<char>(random() % 8);
    EXPECT_FALSE(looksLikeNoise(samples));
    auto half = randomBytes(random, 256) + std::string(256, '\0');
    EXPECT_FALSE(looksLikeNoise(half));
}

TEST(NoiseTest, AFewBytesTellNothing) {
    std::mt19937 random(4);
    EXPECT_FALSE(looksLikeNoise(randomBytes(random, 255)));
}

}  // namespace

}  // namespace quillon::test
