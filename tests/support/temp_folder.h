// SPDX-License-Identifier: MIT
// A fresh folder below the system's temporary folder, removed with all that is in it when the object goes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillon::test {

class TempFolder {
public:
    // Throws std::system_error when no folder can be made: a test cannot go on without one.
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

    // The path of `name` below the folder; nothing is created.
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

    // Writes a file of exactly these bytes, with the folders that lead to it, and gives its path. Replaces an old file.
    std::filesystem::path write(std::string_view name, std::string_view bytes) const;

    // All bytes of a file; adds a test failure and gives an empty text when the file cannot be read.
    std::string read(std::string_view name) const;

private:
    std::filesystem::path path_;
};

}  // namespace quillon::test
