// SPDX-License-Identifier: MIT
#include "support/strace.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include <sys/wait.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

// GCC and Clang tell of their sanitizers in two ways.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define QUILLON_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define QUILLON_SANITIZED
#endif
#endif

namespace quillon::test {

int runShell(const std::string& command) {
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool canTrace() {
#ifdef QUILLON_SANITIZED
    std::cout << "Skipped: a sanitizer makes system calls of its own, which cannot be told from the program's\n";
    return false;
#endif
    if (runShell("strace -qq -o /dev/null -e inject=getcwd:error=EIO true >/dev/null 2>&1") == 0)
        return true;
    std::cout << "Skipped: strace is missing or may not trace here\n";
    return false;
}

std::string changingCalls() {
    return "write,pwrite64,writev,fsync,fdatasync,rename,renameat,renameat2,ftruncate,chmod,fchmod,fchmodat,unlink,"
           "unlinkat,linkat,utimensat,copy_file_range,sendfile,mkdir,mkdirat";
}

std::string traced(const std::string& options, const std::string& program) {
    return "exec strace -qq -o /dev/null " + options + " " + program;
}

std::vector<std::string> everyFault(const std::map<std::string, int>& counts, int more) {
    std::vector<std::string> faults;
    for (const auto& [call, count] : counts) {
        for (int i = 1; i <= count + more; ++i) {
            const std::string at = ":when=" + std::to_string(i);
            for (const auto& how : {":signal=KILL" + at, ":error=ENOSPC" + at, ":error=EIO" + at + "+"})
                faults.push_back(fmt::format("-e inject={}{}", call, how));
        }
    }
    return faults;
}

std::map<std::string, int> countCalls(const std::string& calls, const std::string& program, const std::string& log) {
    EXPECT_EQ(runShell("exec strace -qq -o '" + log + "' -e signal=none -e trace=" + calls + " " + program), 0);
    std::map<std::string, int> counts;
    std::ifstream stream(log);
    for (std::string line; std::getline(stream, line);) {
        const std::string call = line.substr(0, line.find('('));
        if (!call.starts_with("syscall_"))  // one that strace is too old to know, and shows whatever was asked for
            ++counts[call];
    }
    std::remove(log.c_str());
    return counts;
}

int runTracingTests(int count, char* arguments[], std::string& program) {
    testing::InitGoogleTest(&count, arguments);
    if (count != 2) {
        std::cerr << "Usage: " << arguments[0] << " PROGRAM\n";
        return 2;
    }
    program = "'" + std::string(arguments[1]) + "'";
    constexpr int skipped = 77;
    return canTrace() ? RUN_ALL_TESTS() : skipped;
}

}  // namespace quillon::test
