// SPDX-License-Identifier: MIT
#pragma once

// `quillon-job` as a function call, over an installation in a temporary folder: application folder `app`, local root
// `local`, source `source`, target `target`.

#include <chrono>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "app/installation.h"
#include "programs/job_command.h"
#include "support/temp_folder.h"

namespace quillon::test {

class CommandFixture : public testing::Test {
protected:
    CommandFixture() {
        for (const char* name : {"app", "source", "target"}) std::filesystem::create_directory(folder / name);
    }

    // An installation as a set-up leaves it, with one term file.
    void install() {
        for (const char* name : {"local/Database", "local/Settings", "zips"})
            std::filesystem::create_directories(folder / name);
        Installation installation(folder / "app");
        installation.settings.runHeaderTest = 1;
        installation.settings.useSkipList = 1;
        installation.settings.useCommonHeaders = 1;
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.zipPath.assign(pageFromPath(folder / "zips"));
        ASSERT_TRUE(installation.saveSettingsRecord());
        folder.write("local/Database/abc.dat", "1,MZ,T\r\n");
        folder.write("local/Settings/CommonHeaders.dat", "0,never to be seen,T,x\r\n");
    }
    void shareDatabase() {
        Installation installation(folder / "app");
        ASSERT_TRUE(installation.loadSettingsRecord());
        installation.settings.useSharedDb = 1;
        installation.settings.sharedPath.assign(pageFromPath(folder / "share"));
        ASSERT_TRUE(installation.saveSettingsRecord());
    }

    int command(const std::vector<std::string>& arguments) {
        out.str("");
        out.clear();
        err.str("");
        in.clear();
        return runJobCommand(arguments, {in, out, err, canAsk, false, interrupts, inputWaits});
    }
    int job(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {
            "--job", "1234", "--source", (folder / "source").native(), "--app", (folder / "app").native()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return command(arguments);
    }
    [[nodiscard]] bool told(const std::string& text) const { return err.str().find(text) != std::string::npos; }
    [[nodiscard]] nlohmann::json json() const { return nlohmann::json::parse(out.str()); }

    TempFolder folder;
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    bool canAsk = false;
    std::function<int()> interrupts = [] { return 0; };
    std::function<bool(std::chrono::milliseconds)> inputWaits = [](std::chrono::milliseconds) { return true; };
};

}  // namespace quillon::test
