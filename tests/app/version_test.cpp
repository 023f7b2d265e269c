// SPDX-License-Identifier: MIT
// The version that the screens show is the one that the build names.
#include "app/version.h"

#include <fstream>
#include <string>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace quillon {
namespace {

// The first heading of a release: "## 1.0.0 - 2026-11-21". What is not released has none of its own.
std::string newestRelease() {
    std::ifstream changelog(QUILLON_CHANGELOG);
    for (std::string line; std::getline(changelog, line);) {
        if (line.starts_with("## ") && line.find(" - ") != std::string::npos)
            return line.substr(3, line.find(" - ") - 3);
    }
    return "no heading";
}

TEST(Version, IsThatOfTheNewestReleaseInTheChangelog) {
    const auto [major, minor, revision] = programVersion();
    EXPECT_EQ(fmt::format("{}.{}.{}", major, minor, revision), newestRelease());
}

}  // namespace
}  // namespace quillon
