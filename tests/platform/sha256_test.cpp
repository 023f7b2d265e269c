// SPDX-License-Identifier: MIT
#include "platform/sha256.h"

#include <gtest/gtest.h>

namespace quillon {
namespace {

constexpr const char* kEmpty = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
constexpr const char* kAbc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

TEST(Sha256, GivesTheDigestsOfTheStandard) {
    Sha256 hash;
    EXPECT_EQ(hexText(hash.finish()), kEmpty);
    hash.add("a");
    hash.add("bc");
    EXPECT_EQ(hexText(hash.finish()), kAbc);
    EXPECT_EQ(hexText(hash.finish()), kEmpty) << "it begins anew";
}

TEST(Sha256, ZerosCountAsTheyRead) {
    Sha256 zeros;
    zeros.addZeros(200'001);
    Sha256 bytes;
    bytes.add(std::string(200'001, '\0'));
    EXPECT_EQ(zeros.finish(), bytes.finish());
}

}  // namespace
}  // namespace quillon
