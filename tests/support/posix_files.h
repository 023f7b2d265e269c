// SPDX-License-Identifier: MIT
#pragma once

// What tests of the system doors need of the system itself: other kinds of files, times, and another user.

#include <filesystem>
#include <functional>
#include <string>

#include <sys/stat.h>

namespace quillon::test {

[[nodiscard]] struct stat statOf(const std::filesystem::path& path);

/// Sets both times, in seconds since 1970 with a fixed part of a second.
void setTimes(const std::filesystem::path& path, long accessed, long modified, long nanoseconds = 123456700);

/// Turns the lowest bit of one byte of a file.
void flipBit(const std::filesystem::path& path, long place);

void makeFifo(const std::filesystem::path& path);
/// A socket that stays behind when its maker is gone. False when the path is too long for one.
[[nodiscard]] bool makeSocket(const std::filesystem::path& path);

/// True when `act` says so, run by a user without privileges: in a child process when this one is root. The folder is
/// opened to that user first.
[[nodiscard]] bool asOrdinaryUser(const std::filesystem::path& folder, const std::function<bool()>& act);

/// Whether reading a file moves its access time on the volume of this folder.
[[nodiscard]] bool volumeKeepsAccessTimes(const std::filesystem::path& folder);

/// A folder below `start` whose path is longer than the system takes in one call, made from folder handles.
[[nodiscard]] std::filesystem::path makeDeepFolder(const std::filesystem::path& start);
/// Writes and reads a file of such a folder.
void writeDeep(const std::filesystem::path& path, const std::string& bytes);
[[nodiscard]] std::string readDeep(const std::filesystem::path& path);

/// The entries of a folder, sorted.
[[nodiscard]] std::string namesIn(const std::filesystem::path& folder);

}  // namespace quillon::test
