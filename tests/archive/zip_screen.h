// SPDX-License-Identifier: MIT
#pragma once

// An installation with lists, a scripted alert sender and a screen that records, for tests of the zip run.

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "archive/zip_file_lists.h"
#include "platform/folders.h"
#include "support/fake_surroundings.h"
#include "support/recording_screen.h"
#include "support/temp_folder.h"

namespace quillon::test {

/// Answers what the test says and records what was sent.
class ScriptedAlerts final : public AlertSender {
public:
    bool sendAlert(const std::string& target, std::int16_t ackRequest, std::string& subject, const std::string& body,
                   std::int16_t alertFlag) override {
        sent.push_back({target, subject, body, ackRequest, alertFlag, state, closings > 0});
        if (onSend)
            onSend();
        state = answer ? AckState::Acknowledged : AckState::None;
        return answer;
    }
    void closeSockets() override { ++closings; }
    AckState ackState() const override { return state; }
    void setAckState(AckState newState) override { state = newState; }
    void turnWhilePending() override { ++waits; }
    std::string silenceCause() const override { return cause; }
    bool isThisComputer(const std::string& target) const override { return target == "LAB7"; }

    struct Sent {
        std::string target;
        std::string subject;
        std::string body;
        std::int16_t ackRequest;
        std::int16_t alertFlag;
        AckState stateBefore;
        bool closedBefore;
    };
    std::vector<Sent> sent;
    std::function<void()> onSend;
    bool answer = true;
    std::string cause;
    int waits = 0;
    int closings = 0;
    AckState state = AckState::None;
};

/// Local root "local", archive folder "zips", lists of job 1234.
class ZipScreen {
public:
    ZipScreen() {
        std::filesystem::create_directory(folder / "app");
        std::filesystem::create_directory(folder / "zips");
        folder.write("local/1234-Partition 1.csv", "rows of partition 1");
        folder.write("local/1234-Partition 2.csv", "rows of partition 2");
        std::filesystem::create_directory(folder / "local/Settings");
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
        installation.settings.zipRecipient.assign(PageText{"Query"});
        installation.refreshPathVariables();
    }

    /// As the main window opens the screen.
    void open() { lists.load(job); }
    [[nodiscard]] std::string path(const std::string& name) const { return (folder / name).string(); }
    [[nodiscard]] bool exists(const std::string& name) const { return pathExists(folder / name); }
    [[nodiscard]] std::string kept(const std::string& name) const { return "local/Kept/2026-11-15 10.20.30/" + name; }
    [[nodiscard]] std::string logText() const { return folder.read("local/Settings/Messaging logs/logs.dat"); }
    void expectComplete(const std::string& text = "Zip Processing complete") {
        fake.dialogs.expectBox("Process complete", text, BoxAnswer::Ok, BoxStyle::Warning);
    }
    void expectOverwriteQuestion(BoxAnswer answer) { expectOverwriteQuestion(answer, path("zips/1234.zip")); }
    void expectOverwriteQuestion(BoxAnswer answer, const std::string& archive) {
        fake.dialogs.expectBox("Overwrite file",
                               "The file " + archive +
                                   " already exists! Overwriting this zip-file may result with no history of the job. "
                                   "Are you sure you want to overwrite the file " +
                                   archive + " ?",
                               answer, BoxStyle::Question, BoxButtons::YesNo);
    }

    TempFolder folder;
    FakeSurroundings fake;
    Installation installation{folder / "app"};
    ScriptedAlerts alerts;
    RecordingScreen screen;
    ZipHandover job{"1234-Partition 1", "-"};
    std::vector<std::string> warnings;  // rows of the job log
    ZipFileLists lists{installation, fake.surroundings, alerts, screen,
                       [this](const std::string& text) { warnings.push_back(text); }};
};

}  // namespace quillon::test
