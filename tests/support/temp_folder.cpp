// SPDX-License-Identifier: MIT
// Temporary folders for tests. The removal restores permissions first, since tests make folders unreadable.
#include "support/temp_folder.h"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

#include <gtest/gtest.h>

namespace quillon::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    std::string pattern = (fs::temp_directory_path() / "quillon-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    path_ = pattern;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    if (!ignored) {
        return;
    }
    for (fs::recursive_directory_iterator entry(path_, fs::directory_options::skip_permission_denied, ignored), end;
         entry != end; entry.increment(ignored)) {
        if (entry->is_directory(ignored) && !entry->is_symlink(ignored)) {
            fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
        }
    }
    fs::remove_all(path_, ignored);
}

fs::path TempFolder::write(std::string_view name, std::string_view bytes) const {
    fs::path target = path_ / name;
    fs::create_directories(target.parent_path());
    std::ofstream stream(target, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(stream.flush().good()) << target;
    return target;
}

std::string TempFolder::read(std::string_view name) const {
    std::ifstream stream(path_ / name, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << path_ / name;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace quillon::test
