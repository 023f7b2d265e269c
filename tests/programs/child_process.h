// SPDX-License-Identifier: MIT
#pragma once

// A program as its own process: what it says on standard error is read as it comes, standard output goes to a file.

#include <array>
#include <csignal>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace quillon::test {

class ChildProcess {
public:
    ~ChildProcess() {
        if (pipe_ >= 0)
            ::close(pipe_);
    }

    /// `words` are the path of the program and its arguments.
    void start(std::vector<std::string> words, const std::string& output = "/dev/null") {
        said.clear();
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe(ends.data()), 0);
        if (unheard_)
            ::close(ends[0]);
        id = ::fork();
        if (id == 0) {
            std::vector<char*> arguments;
            arguments.reserve(words.size() + 1);
            for (auto& word : words) arguments.push_back(word.data());
            arguments.push_back(nullptr);
            ::dup2(::open("/dev/null", O_RDONLY), 0);
            ::dup2(::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), 1);
            ::dup2(ends[1], 2);
            ::close(ends[0]);
            ::close(ends[1]);
            ::execv(arguments[0], arguments.data());
            ::_exit(99);
        }
        ::close(ends[1]);
        pipe_ = unheard_ ? ::open("/dev/null", O_RDONLY) : ends[0];
    }

    /// The same for a program whose standard error has no reader any more.
    void startUnheard(const std::vector<std::string>& words, const std::string& output) {
        const auto before = ::signal(SIGPIPE, SIG_DFL);
        unheard_ = true;
        start(words, output);
        unheard_ = false;
        ::signal(SIGPIPE, before);
    }

    /// The process has ended, and somebody else has waited for it.
    void forget() {
        ::close(pipe_);
        pipe_ = -1;
    }

    /// Reads standard error until it holds `text`, or to its end.
    bool readUntil(const std::string& text) {
        std::array<char, 4096> buffer;
        while (said.find(text) == std::string::npos) {
            const auto count = ::read(pipe_, buffer.data(), buffer.size());
            if (count <= 0)
                return false;
            said.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return true;
    }

    /// Waits for the end; gives the exit status, or the signal below 0.
    int finish() {
        readUntil("\x01 nothing ever says this");
        ::close(pipe_);
        pipe_ = -1;
        int status = 0;
        EXPECT_EQ(::waitpid(id, &status, 0), id);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    std::string said;
    pid_t id = 0;

private:
    int pipe_ = -1;
    bool unheard_ = false;
};

}  // namespace quillon::test
