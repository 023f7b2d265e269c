// SPDX-License-Identifier: MIT
#pragma once

// An installation and a source for quillon-job under system calls that fail.

#include <filesystem>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "app/folder_structure.h"
#include "platform/whole_file.h"
#include "support/list_bytes.h"
#include "support/posix_files.h"
#include "support/strace.h"
#include "support/temp_folder.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon::test {

inline std::string program;  // quillon-job, quoted, from the command line

class JobFaults : public testing::Test {
protected:
    // An installation that tests headers, and a source of six files in three folders.
    JobFaults() {
        Installation installation(temp / "app");
        installation.settings.localPath.assign(pageFromPath(temp / "data"));
        installation.settings.zipPath.assign(pageFromPath(temp / "zip"));
        installation.settings.runHeaderTest = 1;
        std::filesystem::create_directory(temp / "app");
        installation.refreshPathVariables();
        EXPECT_TRUE(installation.saveSettingsRecord());
        EXPECT_TRUE(checkFolderStructure(installation));
        temp.write("data/Database/jpg.dat", "1,FFD8FF,H\r\n");
        for (const char* name : {"a.jpg", "b.jpg", "one/c.jpg", "one/d, e.jpg", "two/f.jpg", "two/g.jpg"})
            files_[name] = jpeg(name);
        for (const auto& [name, bytes] : files_) {
            const auto path = temp.write("source/" + name, bytes);
            setTimes(path, 1000000000, 1100000000);
        }
    }

    static std::string jpeg(const std::string& name) {
        std::string bytes = "\xFF\xD8\xFF\xE0" + name;
        bytes.resize(20000, name.front());
        return bytes;
    }

    [[nodiscard]] std::string path(const std::string& name) const { return "'" + (temp / name).native() + "'"; }
    [[nodiscard]] std::string jobWithEvidence(const std::string& more = "") const {
        return program + " --app " + path("app") + " --job 7 --yes --source " + path("source") + " " + more + " >" +
               path("out") + " 2>" + path("err");
    }
    // Faults are told by the numbers of their calls, and those of the evidence come as its thread likes.
    [[nodiscard]] std::string job(const std::string& more = "") const {
        return jobWithEvidence("--no-evidence " + more);
    }
    [[nodiscard]] std::string copyingJob() const { return job("--target " + path("target")); }

    // Path and report text of every row of the final list.
    [[nodiscard]] std::map<std::string, std::string> grades() const {
        std::map<std::string, std::string> rows;
        const std::u16string text = utf16Text(temp.read("data/7.csv"));
        std::size_t at = 0;
        for (auto end = text.find(u'\n'); end != text.npos; at = end + 1, end = text.find(u'\n', at)) {
            const auto fields = splitFields(std::u16string_view(text).substr(at, end - 1 - at));
            EXPECT_EQ(fields.size(), 5U);
            if (fields.size() == 5)
                rows[toNative(fields[0])] = readable(fields[4]);
        }
        return rows;
    }
    [[nodiscard]] std::string said() const { return temp.read("err"); }

    // Copies that stand under a final name, each checked against its source.
    [[nodiscard]] std::size_t wholeCopies() const {
        std::size_t found = 0;
        const NativePath root = (temp / "target").native() + (temp / "source").native();
        for (const auto& [name, bytes] : files_) {
            const auto copy = readWholeFile(root / name);
            if (!copy)
                continue;
            EXPECT_EQ(*copy, bytes) << name << " is cut";
            ++found;
        }
        return found;
    }

    TempFolder temp;
    std::map<std::string, std::string> files_;
};

}  // namespace quillon::test
