// SPDX-License-Identifier: MIT
// Files with rules that quillon-job cannot read: each is told, counted and costs the job nothing else.
#include "programs/job_faults.h"
#include "testing/rule_line.h"

namespace quillon::test {
namespace {

class UnreadableRules : public JobFaults {
protected:
    UnreadableRules() {
        Installation installation(temp / "app");
        EXPECT_TRUE(installation.loadSettingsRecord());
        installation.settings.useCommonHeaders = 1;
        installation.settings.useSkipList = 1;
        EXPECT_TRUE(installation.saveSettingsRecord());
        temp.write("data/Settings/CommonHeaders.dat", "0,never,T,x\r\n");
        temp.write("data/Settings/SkipList.dat", "*.never\r\n");
        temp.write("data/Settings/Errors.dat", "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n10\r\n");
    }
    void expectTold(const std::string& row) const {
        EXPECT_NE(said().find(row + "\n"), std::string::npos) << said();
        EXPECT_NE(said().find("1 files with rules could not be read"), std::string::npos) << said();
    }
};

TEST_F(UnreadableRules, AreToldAndCounted) {
    struct Row {
        const char* error;
        const char* words;
    };
    for (const auto& [error, words] : {Row{"EIO", "Input/output error"}, Row{"EACCES", "Permission denied"}}) {
        const std::string fault = std::string(" -e inject=openat:error=") + error;
        for (const char* file : {"data/Settings/CommonHeaders.dat", "data/Database/jpg.dat", "data/Settings/Errors.dat",
                                 "data/Database"}) {
            SCOPED_TRACE(file + fault);
            EXPECT_EQ(runShell(traced("-P " + path(file) + fault, job())), 3);
            expectTold(" cannot be read : " + (temp / file).native() + ": " + words);
        }
        EXPECT_EQ(runShell(traced("-f -P " + path("data/Settings/SkipList.dat") + fault, job())), 3);
        expectTold("The skip list cannot be read, or is larger than 4 MiB");
    }
}

// The first looks at the folder are those of the start; from one of the next on it gives nothing any more.
TEST_F(UnreadableRules, AreThoseOfAFolderThatGivesNoTime) {
    int status = 1;
    for (int look = 2; look < 20 && status == 1; ++look)
        status = runShell(traced(
            "-P " + path("data/Database") + " -e inject=fstat,newfstatat:error=EIO:when=" + std::to_string(look) + "+",
            job()));
    EXPECT_EQ(status, 3);
    expectTold(" cannot be read : " + (temp / "data/Database").native() + ": Input/output error");
}

TEST_F(UnreadableRules, AreThoseOfMoreThan4MiB) {
    for (const char* file : {"data/Settings/CommonHeaders.dat", "data/Database/jpg.dat", "data/Settings/Errors.dat"}) {
        SCOPED_TRACE(file);
        const std::string before = temp.read(file);
        temp.write(file, std::string(kRuleFileLimit + 1, '0'));
        EXPECT_EQ(runShell(job()), 3);
        expectTold(" cannot be read : " + (temp / file).native() + ": File too large");
        temp.write(file, before);
    }
    temp.write("data/Settings/SkipList.dat", std::string(kRuleFileLimit + 1, '0'));
    EXPECT_EQ(runShell(job()), 3);
    expectTold("The skip list cannot be read, or is larger than 4 MiB");
    EXPECT_EQ(grades().size(), 6U);
}

}  // namespace
}  // namespace quillon::test
