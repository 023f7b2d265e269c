// SPDX-License-Identifier: MIT
#pragma once

// A job driver whose screen writes down what happens.

#include <functional>
#include <string>
#include <vector>

#include <fmt/format.h>

#include "job/job_board.h"
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
        state.mayRun = true;
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
    void logRowAdded(const LogRow& row) override {
        trace.push_back(row.text + "|" + screen());
        if (onRow)
            onRow(row);
    }

    // Run, Stop, View, Zip, frames, menus, timer as letters when they are on, and the status line.
    std::string screen() const {
        const JobBoard board = boardOf(state);
        const auto letter = [](bool on, char l) { return on ? l : '-'; };
        return fmt::format("{}{}{}{}{}{}{} {}", letter(board.run, 'R'), letter(board.stop, 'S'),
                           letter(board.view, 'V'), letter(board.zip, 'Z'), letter(board.frames, 'F'),
                           letter(board.menus, 'M'), letter(board.timer, 'T'), state.texts.status);
    }

    // Does it at the first turn of the loop at which that is so. How many turns there are before depends on how busy
    // the machine is: waits turn the loop, too.
    void atTurnWhen(std::function<bool()> isSo, std::function<void()> act) {
        fake.loop.onTurn = [isSo = std::move(isSo), act = std::move(act), done = false](int) mutable {
            if (done || !isSo())
                return;
            done = true;
            act();
        };
    }
    void stopWhen(std::function<bool()> isSo) {
        atTurnWhen(std::move(isSo), [this] { job.passContext().stop(); });
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
    std::function<void(const LogRow&)> onRow;
};

}  // namespace quillon::test
