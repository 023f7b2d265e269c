// SPDX-License-Identifier: MIT
#pragma once

// An installation with local root, settings folder and share in a temporary folder; sharing is off at first.

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "app/installation.h"
#include "app/kept_files.h"
#include "support/fake_surroundings.h"
#include "support/temp_folder.h"

namespace quillon::test {

class ListFolders : public testing::Test {
protected:
    ListFolders() : installation(folder / "app"), kept(installation, fake.clock) {
        for (const char* name : {"app", "local/Settings", "local/Database", "share/Settings", "share/Database"})
            std::filesystem::create_directories(folder / name);
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.sharedPath.assign(pageFromPath(folder / "share"));
        installation.refreshPathVariables();
    }

    void share() {
        installation.settings.useSharedDb = 1;
        installation.refreshPathVariables();
    }
    [[nodiscard]] bool exists(const std::string& name) const { return std::filesystem::exists(folder / name); }
    /// Where a file of the local root is kept at the time of the clock.
    [[nodiscard]] static std::string keptName(const std::string& name) {
        return "local/Kept/2026-11-15 10.20.30/" + name;
    }

    TempFolder folder;
    FakeSurroundings fake;
    Installation installation;
    KeptFiles kept;
};

}  // namespace quillon::test
