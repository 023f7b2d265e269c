// SPDX-License-Identifier: MIT
#pragma once

// An installation in a temporary folder: application folder `app`, local root `local`, archives `zip`, shared root
// `shared`. Nothing but the application folder exists at first.

#include <string>

#include <gtest/gtest.h>

#include "app/installation.h"
#include "support/temp_folder.h"

namespace quillon::test {

class AppFixture : public testing::Test {
protected:
    AppFixture() : installation(temp / "app") { std::filesystem::create_directory(temp / "app"); }

    /// Settings whose paths lie in the temporary folder, in memory alone.
    void usePaths(bool shared = false) {
        installation.settings.localPath.assign(pageFromPath(temp / "local"));
        installation.settings.zipPath.assign(pageFromPath(temp / "zip"));
        installation.settings.sharedPath.assign(pageFromPath(temp / "shared"));
        installation.settings.useSharedDb = shared ? 1 : 0;
        installation.refreshPathVariables();
    }

    /// The same on disk.
    void savePaths(bool shared = false) {
        usePaths(shared);
        ASSERT_TRUE(installation.saveSettingsRecord());
    }

    [[nodiscard]] bool exists(const std::string& name) const { return std::filesystem::exists(temp / name); }
    void makeFolder(const std::string& name) const { std::filesystem::create_directories(temp / name); }

    TempFolder temp;
    Installation installation;
};

}  // namespace quillon::test
