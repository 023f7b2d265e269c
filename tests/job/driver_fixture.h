// SPDX-License-Identifier: MIT
#pragma once

// A job driver whose screen writes down what happens.

#include <functional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "job/job_driver.h"
#include "job/job_fixture.h"

namespace quillon::test {

using Trace = std::vector<std::string>;

// Writes down what happens, with the state of the screen at that moment.
class DriverTest : public JobFixture, protected JobHost, protected JobLogListener {
protected:
    DriverTest() {
        installation.settings.useCommonHeaders = 1;
        state.options.checkFileQuality = true;
        state.controls.runEnabled = true;
        folder.write("local/Settings/CommonHeaders.dat", "0,never,T,x\r\n");
        state.log.setListener(this);
    }

    JobEnd run() { return JobDriver(job, *this, nullptr).run(); }

    void pickSource() override {
        trace.emplace_back("pick source");
        if (onPickSource)
            onPickSource();
    }
    void focusTargetPicker() override { trace.emplace_back("focus target"); }
    void updateToolbar() override { trace.push_back("toolbar " + screen()); }
    void logRowAdded(const LogRow& row) override { trace.push_back(row.text + "|" + screen()); }

    // Run, Stop, View, Zip, frames, menus, timer as letters when they are on, and the status line.
    std::string screen() const {
        const JobControls& c = state.controls;
        const auto letter = [](bool on, char l) { return on ? l : '-'; };
        return fmt::format("{}{}{}{}{}{}{} {}", letter(c.runEnabled, 'R'), letter(c.stopEnabled, 'S'),
                           letter(c.viewEnabled, 'V'), letter(c.zipEnabled, 'Z'), letter(c.framesEnabled, 'F'),
                           letter(c.menusEnabled, 'M'), letter(state.timerRunning, 'T'), state.texts.status);
    }

    void expectOverwrite(BoxAnswer answer) {
        fake.dialogs.expectBox("Overwrite file",
                               "You are about to overwrite the existing file (" + (folder / "local/1234.csv").native() +
                                   "), are you sure you want to do this",
                               answer, std::nullopt, BoxButtons::YesNo);
    }
    void expectDenied() {
        fake.dialogs.expectBox("Permission Denied", "Unable to create the file " + (folder / "app/tFile.csv").native() +
                                                        " it may be open in another application");
    }

    Trace trace;
    std::function<void()> onPickSource;
};

}  // namespace quillon::test
