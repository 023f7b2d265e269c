// SPDX-License-Identifier: MIT
#include "platform/start_program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/system_error.h"

namespace quillon {

namespace {

// Owns the list of what the child does with its standard streams.
class ChildStreams {
public:
    ChildStreams() {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ~ChildStreams() { ::posix_spawn_file_actions_destroy(&actions_); }
    ChildStreams(const ChildStreams&) = delete;
    ChildStreams& operator=(const ChildStreams&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

}  // namespace

Result<void> BackgroundPrograms::start(const std::vector<std::string>& arguments) {
    if (arguments.empty())
        return failure(ErrorKind::InvalidArgument, "no program is named");
    std::vector<std::string> texts = arguments;
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    const ChildStreams streams;
    pid_t child = 0;
    const int code = ::posix_spawnp(&child, pointers[0], streams.get(), nullptr, pointers.data(), environ);
    if (code != 0)
        return failure(systemError(arguments[0], code));
    children_.push_back(child);
    return {};
}

std::size_t BackgroundPrograms::running() {
    std::erase_if(children_, [](int child) { return ::waitpid(child, nullptr, WNOHANG) != 0; });
    return children_.size();
}

}  // namespace quillon
