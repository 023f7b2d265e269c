// SPDX-License-Identifier: MIT
#pragma once

// The manual update in a temporary installation, with short words for what its tests do again and again.

#include <string>

#include <gtest/gtest.h>

#include "editors/editor_folders.h"
#include "editors/manual_update.h"

namespace quillon::test {

class ManualUpdateTest : public testing::Test {
protected:
    ManualUpdate::Focus add(const std::string& position, const std::string& term, bool hexadecimal = false) {
        editor.fields = {position, term, hexadecimal};
        return editor.addOrUpdate();
    }
    [[nodiscard]] std::string listed() const { return termFileBytes(editor.rows()); }
    ManualUpdate::Opened open(const NativePath& file) {
        folders.dialogs.expectFiles("open a file to view headers", {file});
        return editor.openSample();
    }
    ManualUpdate::Opened openRefused(const NativePath& file, const char* title, const char* text) {
        folders.dialogs.expectFiles("open a file to view headers", {file});
        expectWarning(title, text);
        return editor.openSample();
    }
    void expectWarning(const char* title, const char* text) {
        folders.dialogs.expectBox(title, text, BoxAnswer::Ok, BoxStyle::Warning, BoxButtons::Ok);
    }
    void expectEqualTerm(BoxAnswer answer) {
        folders.dialogs.expectBox("Term Exists",
                                  "A similar term exists for this extension. Do you still want to add this term?",
                                  answer, BoxStyle::Warning, BoxButtons::YesNo);
    }

    EditorFolders folders;
    ManualUpdate editor{folders.installation, folders.dialogs, folders.kept};
};

}  // namespace quillon::test
