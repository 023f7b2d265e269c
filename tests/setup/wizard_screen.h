// SPDX-License-Identifier: MIT
#pragma once

// A wizard over an application folder with a default database, a recording screen and scripted sockets.

#include <memory>
#include <string>
#include <vector>

#include "archive/zip_bytes.h"
#include "platform/folders.h"
#include "setup/wizard.h"
#include "support/fake_surroundings.h"
#include "support/recording_screen.h"
#include "support/scripted_network.h"
#include "support/scripted_socket.h"
#include "support/temp_folder.h"

namespace quillon::test {

class WizardScreen {
public:
    WizardScreen() {
        std::filesystem::create_directory(folder / "app");
        writeZip(folder / "app/db.zip", {{"Database/jpg.dat", "jpg terms"}, {"Settings/skiplist.dat", "*.tmp"}});
    }

    /// Settings as an earlier set-up left them, saved and in memory.
    void saveSettings(const std::string& sharedPath = "") {
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
        if (!sharedPath.empty())
            installation.settings.sharedPath.assign(pageFromPath(folder / sharedPath));
        installation.refreshPathVariables();
        ASSERT_TRUE(installation.saveSettingsRecord().has_value());
    }
    [[nodiscard]] AppSettings saved() const { return decodeSettings(folder.read("app/settings.dat")); }
    [[nodiscard]] bool exists(const std::string& name) const { return pathExists(folder / name); }
    [[nodiscard]] std::string path(const std::string& name) const { return (folder / name).string(); }
    [[nodiscard]] SetupWizardState& state() { return wizard.state; }

    void browse(const std::string& title, const std::string& name) { fake.dialogs.expectFolder(title, folder / name); }
    void browseLocal(const std::string& name) {
        browse("Select folder for local database..", name);
        wizard.browseLocalPath();
    }
    void browseArchive(const std::string& name) {
        browse("Select folder to store Archives ..", name);
        wizard.browseArchivePath();
    }
    void browseShared(const std::string& name) {
        browse("Select folder for Shared database..", name);
        wizard.browseSharedPath();
    }

    TempFolder folder;
    FakeSurroundings fake;
    Installation installation{folder / "app"};
    std::vector<std::string> journal;
    ScriptedSocket server{"wServer", journal};
    ScriptedSocket client{"wClient", journal};
    AlertExchange alerts{AlertScreen::SetupWizard,    server, client, installation, fake.surroundings,
                         [] { return std::string(); }};
    std::shared_ptr<NetworkProvider> network =
        std::make_shared<ScriptedNetwork>(std::vector<std::string>{"DESK2", "DESK3"});
    RecordingScreen screen;
    std::vector<std::string> warnings;  // rows of the job log
    SetupWizard wizard{installation, fake.surroundings,
                       alerts,       network,
                       screen,       [this](const std::string& text) { warnings.push_back(text); }};
};

}  // namespace quillon::test
