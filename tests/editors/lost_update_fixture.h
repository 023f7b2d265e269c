// SPDX-License-Identifier: MIT
#pragma once

// Two workstations that teach one extension: this one by its editor, the other one by what it writes to the share.

#include <string>

#include "editors/extension_editor_fixture.h"

namespace quillon::test {

inline constexpr const char* kLocalTerms = "local/Database/qlx.dat";
inline constexpr const char* kSharedTerms = "share/Database/qlx.dat";

class LostUpdateTest : public ExtensionEditorTest {
protected:
    LostUpdateTest() {
        folders.share(true);
        handover.job = "J1";
    }

    void openShared(const std::string& terms) {
        folders.folder.write(kSharedTerms, terms);
        openTerms(terms);
    }
    void add(const std::string& term) {
        enter("1", term);
        editor.addOrUpdate();
    }
    void theyWrite(const std::string& terms) { folders.folder.write(kSharedTerms, terms); }
    void expectBoth(const std::string& terms) {
        EXPECT_EQ(folders.bytesOf(kSharedTerms), terms);
        EXPECT_EQ(folders.bytesOf(kLocalTerms), terms);
    }
};

}  // namespace quillon::test
