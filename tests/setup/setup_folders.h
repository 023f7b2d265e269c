// SPDX-License-Identifier: MIT
#pragma once

// An installation in a temporary folder: app, local root, archive folder and share, with Kept files by a clock that
// stands still.

#include <filesystem>
#include <string>
#include <vector>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/progress_host.h"
#include "support/fake_surroundings.h"
#include "support/temp_folder.h"

namespace quillon::test {

/// Records what is shown of a pass.
class RecordingProgress final : public ProgressHost {
public:
    void progressRange(std::int64_t maximum) override { maxima.push_back(maximum); }
    void progressValue(std::int64_t value) override { values.push_back(value); }
    void currentFile(const std::string& text) override { texts.push_back(text); }

    std::vector<std::int64_t> maxima;
    std::vector<std::int64_t> values;
    std::vector<std::string> texts;
};

class SetupFolders {
public:
    SetupFolders() : installation(folder / "app"), kept(installation, fake.clock) {
        std::filesystem::create_directory(folder / "app");
        for (const char* name : {"local/Database", "local/Settings", "share/Database", "share/Settings", "zips"})
            std::filesystem::create_directories(folder / name);
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
        installation.settings.sharedPath.assign(pageFromPath(folder / "share"));
        installation.settings.useSharedDb = 1;
        installation.refreshPathVariables();
    }

    /// Where the file of the local root went at the time of the clock.
    [[nodiscard]] std::string keptName(const std::string& name) const {
        return "local/Kept/2026-11-15 10.20.30/" + name;
    }

    TempFolder folder;
    FakeSurroundings fake;
    Installation installation;
    KeptFiles kept;
    RecordingProgress progress;
};

}  // namespace quillon::test
