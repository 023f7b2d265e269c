// SPDX-License-Identifier: MIT
#pragma once

// The viewer over a list in a temporary installation, with short words for what its tests do again and again.

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "job/job.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "setup/setup_folders.h"
#include "support/list_bytes.h"
#include "support/recording_screen.h"
#include "text/list_text.h"
#include "viewer/list_viewer.h"

namespace quillon::test {

/// One row of a list as the testing pass writes it.
inline std::u16string listRow(std::u16string_view path, std::u16string_view result,
                              std::u16string_view size = u" 600") {
    std::u16string row(path);
    row.append(u",15/11/2026,").append(size).append(u", 32;Ab9x,").append(result).append(u"\r\n");
    return row;
}

inline constexpr const char* kErrorLines =
    "Header OK\r\nHeader Corrupt\r\nNo Extension\r\nUnknown or ambiguous file type\r\nFile encrypted\r\nAccess "
    "error\r\nFile too small to test (<512 bytes)\r\nFile is zero bytes\r\nInvalid File Name\r\nAppears to be of file "
    "type: \r\n";

class ViewerTest : public testing::Test {
protected:
    ViewerTest() {
        folders.installation.settings.useSharedDb = 0;
        folders.installation.refreshPathVariables();
        folders.folder.write("local/Settings/Errors.dat", kErrorLines);
        job.messages = ReportMessages::fallback();
        job.state.options.jobId = "J1";
    }

    void writeList(std::u16string_view rows) { folders.folder.write("local/J1.csv", utf16Bytes(rows)); }
    [[nodiscard]] std::u16string listNow() const { return utf16Text(folders.folder.read("local/J1.csv")); }

    /// Opens the viewer and chooses the category of this text.
    void open(std::u16string_view category) {
        viewer.load();
        choose(category);
    }
    void choose(std::u16string_view category) {
        const auto& all = viewer.state.categories;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i] == category)
                return viewer.chooseCategory(static_cast<int>(i));
        }
        FAIL() << "no such category";
    }
    /// The list filtered by the corrupt grade.
    void filterCorrupt(std::u16string_view rows) {
        writeList(rows);
        open(u"Header Corrupt");
        viewer.filter();
    }
    [[nodiscard]] std::vector<std::u16string> paths() const {
        std::vector<std::u16string> all;
        all.reserve(static_cast<std::size_t>(viewer.state.rows.shown()));
        for (int row = 0; row < viewer.state.rows.shown(); ++row)
            all.emplace_back(viewer.state.rows.path(viewer.state.rows.idAt(row)));
        return all;
    }
    /// A file of 600 bytes in source/, and its path as a list has it.
    std::u16string makeFile(const std::string& name, const std::string& head) {
        const auto path = folders.folder.write("source/" + name, head + std::string(600 - head.size(), 'x'));
        return path.u16string();
    }
    void expectWarning(const char* title, const std::string& text) {
        folders.fake.dialogs.expectBox(title, text, BoxAnswer::Ok, BoxStyle::Warning, BoxButtons::Ok);
    }

    SetupFolders folders;
    Job job{folders.installation, folders.fake.surroundings};
    RecordingScreen host;
    ListViewer viewer{viewedJob(job), host};
};

}  // namespace quillon::test
