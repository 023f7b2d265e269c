// SPDX-License-Identifier: MIT
#pragma once

// A retest of two files of one extension, one of which the database has just learned.

#include <csignal>

#include <sys/resource.h>

#include "viewer/viewer_fixture.h"

namespace quillon::test {

inline constexpr const char* kFailed =
    "Unable to perfor the function. Please make sure that the file is not in use in another application.";

class RetestTest : public ViewerTest {
protected:
    /// Two corrupt files of .qlx, the first of which holds the term that the database learns; and one good .pdf row.
    void openWithTerm() {
        good_ = makeFile("good.qlx", "QLX!");
        bad_ = makeFile("bad.qlx", "nope");
        filterCorrupt(listRow(good_, u"Header Corrupt") + listRow(u"/s/a.pdf", u"Header OK") +
                      listRow(bad_, u"Header Corrupt"));
        folders.folder.write("local/Database/qlx.dat", "1,QLX!,T\r\n");
        viewer.selectRow(0);
    }
    void expectFailure() {
        folders.fake.dialogs.expectBox("Error", kFailed, BoxAnswer::Ok, BoxStyle::Plain, BoxButtons::Ok);
    }
    [[nodiscard]] NativePath copy() const { return folders.folder / "app/tFile.csv"; }

    std::u16string good_;
    std::u16string bad_;
};

// No file may grow beyond this many bytes while the object lives, as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(std::size_t bytes) {
        old_ = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, old_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before_{};
    void (*old_)(int) = nullptr;
};

}  // namespace quillon::test
