// SPDX-License-Identifier: MIT
#include "support/posix_files.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <vector>

#include <fcntl.h>
#include <grp.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace quillon::test {

namespace fs = std::filesystem;

struct stat statOf(const fs::path& path) {
    struct stat info {};
    EXPECT_EQ(::lstat(path.c_str(), &info), 0) << path;
    return info;
}

void setTimes(const fs::path& path, long accessed, long modified, long nanoseconds) {
    const struct timespec times[2] = {{accessed, nanoseconds}, {modified, nanoseconds}};
    EXPECT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << path;
}

void flipBit(const fs::path& path, long place) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    file.seekg(place);
    const int byte = file.get();
    file.seekp(place);
    file.put(static_cast<char>(byte ^ 1));
    EXPECT_TRUE(file.flush().good()) << path;
}

void makeFifo(const fs::path& path) {
    EXPECT_EQ(::mkfifo(path.c_str(), 0666), 0) << path;
}

bool makeSocket(const fs::path& path) {
    struct sockaddr_un address {};
    address.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof(address.sun_path))
        return false;
    std::strcpy(address.sun_path, path.c_str());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool bound = ::bind(socket, reinterpret_cast<const struct sockaddr*>(&address), sizeof(address)) == 0;
    ::close(socket);
    return bound;
}

bool asOrdinaryUser(const fs::path& folder, const std::function<bool()>& act) {
    if (::geteuid() != 0)
        return act();
    fs::permissions(folder, fs::perms::group_all | fs::perms::others_all, fs::perm_options::add);
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr unsigned nobody = 65534;
        const bool changed = ::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
        ::_exit(changed && act() ? 0 : 1);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool volumeKeepsAccessTimes(const fs::path& folder) {
    const fs::path probe = folder / "access-time-probe";
    std::ofstream(probe) << "x";
    setTimes(probe, 1000000000, 1100000000);
    std::ifstream(probe).get();
    const bool moved = statOf(probe).st_atim.tv_sec != 1000000000;
    fs::remove(probe);
    return moved;
}

namespace {

// A handle on the folder of a path of any length; the folders are made on the way when asked.
int openPieces(const fs::path& folder, bool make) {
    int at = ::open("/", O_PATH | O_DIRECTORY);
    for (const auto& piece : folder.relative_path()) {
        if (make)
            ::mkdirat(at, piece.c_str(), 0755);
        const int next = ::openat(at, piece.c_str(), O_PATH | O_DIRECTORY);
        EXPECT_GE(next, 0) << piece;
        ::close(at);
        at = next;
    }
    return at;
}

}  // namespace

fs::path makeDeepFolder(const fs::path& start) {
    fs::path folder = start;
    while (folder.native().size() < 5000) folder /= std::string(200, 'd');
    ::close(openPieces(folder, true));
    return folder;
}

void writeDeep(const fs::path& path, const std::string& bytes) {
    const int folder = openPieces(path.parent_path(), false);
    const int file = ::openat(folder, path.filename().c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    EXPECT_EQ(::write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    ::close(file);
    ::close(folder);
}

std::string readDeep(const fs::path& path) {
    const int folder = openPieces(path.parent_path(), false);
    const int file = ::openat(folder, path.filename().c_str(), O_RDONLY);
    EXPECT_GE(file, 0) << path.filename();
    std::string bytes(65536, '\0');
    const auto count = ::read(file, bytes.data(), bytes.size());
    ::close(file);
    ::close(folder);
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

std::string namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().native());
    std::sort(names.begin(), names.end());
    std::string all;
    for (const auto& name : names) all += (all.empty() ? "" : " ") + name;
    return all;
}

}  // namespace quillon::test
