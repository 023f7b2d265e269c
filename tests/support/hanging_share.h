// SPDX-License-Identifier: MIT
#pragma once

// A folder that answers nothing, as a share whose server has been cut off: a file system that is mounted and never
// served. Needs the right to mount.

#include <filesystem>
#include <memory>

namespace quillon::test {

class HangingShare {
public:
    /// Null, with the reason on standard output, where the machine does not allow it. The folder must exist.
    [[nodiscard]] static std::unique_ptr<HangingShare> mount(const std::filesystem::path& folder);
    /// Ends what still hangs, and unmounts: the empty folder below comes out.
    ~HangingShare();
    HangingShare(const HangingShare&) = delete;
    HangingShare& operator=(const HangingShare&) = delete;

    /// Every call that hangs fails, and so does every later one.
    void goAway();

private:
    HangingShare(std::filesystem::path folder, int server) : folder_(std::move(folder)), server_(server) {}

    std::filesystem::path folder_;
    int server_;
};

}  // namespace quillon::test
