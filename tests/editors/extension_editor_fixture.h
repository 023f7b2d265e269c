// SPDX-License-Identifier: MIT
#pragma once

// The Extension Editor in a temporary installation, with short words for what its tests do again and again.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "editors/editor_folders.h"
#include "editors/extension_editor.h"
#include "job/job.h"
#include "support/recording_screen.h"
#include "text/list_text.h"

namespace quillon::test {

class ExtensionEditorTest : public testing::Test {
protected:
    ExtensionEditorTest() { job.messages = ReportMessages::fallback(); }

    /// A file below source/, told to the editor at the next `open`.
    std::string addFile(const std::string& name, const std::string& bytes, const std::u16string& problem = {}) {
        std::string path = folders.folder.write("source/" + name, bytes).native();
        handover.files.push_back({toListText(path), problem});
        return path;
    }
    /// A file of 600 bytes.
    std::string addHead(const std::string& name, const std::string& head) {
        return addFile(name, head + std::string(600 - head.size(), 'x'));
    }
    void open(int category = 1) {
        handover.category = category;
        handover.extension = u"qlx";
        editor.load(handover);
    }
    /// Opens over these lines of the local term file.
    void openTerms(const std::string& lines) {
        folders.folder.write("local/Database/qlx.dat", lines);
        open();
    }
    [[nodiscard]] std::string listed() const { return termFileBytes(editor.state.rows); }
    void enter(const std::string& position, const std::string& term, int type = kTextType) {
        editor.state.position = position;
        editor.state.term = term;
        editor.state.type = type;
    }
    void expectWarning(const char* title, const char* text) {
        folders.dialogs.expectBox(title, text, BoxAnswer::Ok, BoxStyle::Warning, BoxButtons::Ok);
    }
    void expectQuestion(const char* title, const std::string& text, BoxAnswer answer) {
        folders.dialogs.expectBox(title, text, answer, BoxStyle::Question, BoxButtons::YesNo);
    }
    void expectResult(const std::string& good, const std::string& bad, BoxAnswer answer) {
        expectQuestion("Add term",
                       "Search results :\r\n\r\nGood files : " + good + "\r\nBad files : " + bad +
                           "\r\n\r\n Do you want to add the term ?",
                       answer);
    }

    EditorFolders folders;
    Job job{folders.installation, folders.fake.surroundings};
    RecordingScreen host;
    int clipboardCleared = 0;
    ExtensionEditor editor{folders.installation,          folders.dialogs, folders.kept, job.messages, host,
                           [this] { ++clipboardCleared; }};
    EditorHandover handover;
};

}  // namespace quillon::test
