// SPDX-License-Identifier: MIT
// One press of "Zip" over the lists of a folder, for tests that make its system calls fail. Every question is answered
// with Yes. Exit status 0: no error was told; 1: one was.
//
//   quillon_zip_fault_probe FOLDER     lists in FOLDER/local, archive folder FOLDER/zips, job 1234
#include <cstdio>

#include "archive/zip_file_lists.h"

namespace quillon {
namespace {

class YesDialogs final : public Dialogs {
public:
    BoxAnswer show(const MessageBox& box) override {
        if (box.title == "Error")
            failed = true;
        return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Yes;
    }
    std::optional<std::string> input(const std::string& /*title*/, const std::string& /*prompt*/,
                                     const std::string& /*initial*/) override {
        return std::nullopt;
    }
    std::optional<NativePath> pickFolder(const std::string& /*title*/, const NativePath& /*start*/) override {
        return std::nullopt;
    }
    std::vector<NativePath> pickFiles(const FilePick& /*pick*/) override { return {}; }

    bool failed = false;
};

class NoLoop final : public EventLoop {
public:
    void turn() override {}
};

class NoAlerts final : public AlertSender {
public:
    bool sendAlert(const std::string& /*target*/, std::int16_t /*ackRequest*/, std::string& /*subject*/,
                   const std::string& /*body*/, std::int16_t /*alertFlag*/) override {
        return false;
    }
    void closeSockets() override {}
    AckState ackState() const override { return AckState::None; }
    void setAckState(AckState /*state*/) override {}
    void turnWhilePending() override {}
    bool isThisComputer(const std::string& /*target*/) const override { return false; }
};

class NoScreen final : public ScreenHost {
public:
    void showState() override {}
    void beep() override {}
    void focus(const char* /*control*/) override {}
};

int zipFolder(const NativePath& folder) {
    Installation installation(folder / "app");
    installation.settings.localPath.assign(pageFromPath(folder / "local"));
    installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
    installation.settings.zipRecipient.assign(PageText{"Query"});
    installation.refreshPathVariables();
    const SystemClock clock;
    const DateTexts dates("C");
    YesDialogs dialogs;
    NoLoop loop;
    const Surroundings surroundings{clock, dates, dialogs, loop, "LAB7"};
    NoAlerts alerts;
    NoScreen screen;
    ZipFileLists lists(installation, surroundings, alerts, screen);
    lists.load({"1234-1", "-"});
    lists.zip();
    return dialogs.failed ? 1 : 0;
}

}  // namespace
}  // namespace quillon

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: quillon_zip_fault_probe FOLDER\n", stderr);
        return 2;
    }
    return quillon::zipFolder(argv[1]);
}
