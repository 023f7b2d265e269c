// SPDX-License-Identifier: MIT
#pragma once

// A job over an installation in a temporary folder: application folder `app`, local root `local`, shared root `share`,
// source `source`, target `target`.

#include <ctime>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "job/job.h"
#include "support/fake_surroundings.h"
#include "support/list_bytes.h"
#include "support/posix_files.h"
#include "support/temp_folder.h"

namespace quillon::test {

class JobFixture : public testing::Test {
protected:
    JobFixture() : installation(folder / "app"), job(installation, fake.surroundings), state(job.state) {
        for (const char* name :
             {"app", "local/Settings", "local/Database", "share/Settings", "share/Database", "source", "target"})
            std::filesystem::create_directories(folder / name);
        installation.settings.localPath.assign(pageFromPath(folder / "local"));
        installation.settings.sharedPath.assign(pageFromPath(folder / "share"));
        installation.refreshPathVariables();
        job.messages = ReportMessages::fallback();
        state.options.jobId = "1234";
        state.options.source = folder / "source";
    }

    /// A file of the source, dated 15 November 2026.
    std::string sourceFile(const std::string& name, std::string_view bytes = "") const {
        const auto path = folder.write("source/" + name, bytes);
        setTimes(path, 1794744000, 1794744000);
        return path.native();
    }

    void termFile(const std::string& name, std::string_view bytes) const {
        folder.write("local/Database/" + name + ".dat", bytes);
    }

    /// Writes the raw list; each line gets its end.
    void writeRawList(const std::vector<std::u16string>& lines) const { writeList("app/tFile.csv", lines); }
    void writeFinalList(const std::vector<std::u16string>& lines) const { writeList("local/1234.csv", lines); }

    /// The rows of a list that ends every row with CR LF; one row "<torn>" when it does not.
    [[nodiscard]] std::vector<std::u16string> rowsOf(const std::string& name) const {
        const std::u16string text = utf16Text(folder.read(name));
        std::vector<std::u16string> rows;
        std::size_t start = 0;
        for (auto end = text.find(u"\r\n"); end != text.npos; end = text.find(u"\r\n", start)) {
            rows.push_back(text.substr(start, end - start));
            start = end + 2;
        }
        if (start != text.size())
            rows.emplace_back(u"<torn>");
        return rows;
    }
    [[nodiscard]] std::vector<std::u16string> finalRows() const { return rowsOf("local/1234.csv"); }

    [[nodiscard]] bool exists(const std::string& name) const { return std::filesystem::exists(folder / name); }

    [[nodiscard]] std::vector<std::string> logTexts() const {
        std::vector<std::string> texts;
        for (const auto& row : state.log.rows()) texts.push_back(row.text);
        return texts;
    }

    TempFolder folder;
    FakeSurroundings fake;
    Installation installation;
    Job job;
    JobState& state;

private:
    void writeList(const std::string& name, const std::vector<std::u16string>& lines) const {
        std::u16string text;
        for (const auto& line : lines) text += line + u"\r\n";
        folder.write(name, utf16Bytes(text));
    }
};

}  // namespace quillon::test
