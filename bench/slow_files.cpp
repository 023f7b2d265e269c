// SPDX-License-Identifier: MIT
// Shows a folder as a file system whose calls take their time, as a cold disk, a share or a dying drive does: a FUSE
// pass-through for reading alone. Each kind of call has a wait of its own. Two hundred threads serve, up to 256
// requests are under way, and the kernel keeps names and attributes for 60 s, so that a call is waited for when it is
// made the first time.
//
//   quillon_bench_slow_files FOLDER MOUNT_POINT [OPTION VALUE]...
//
//   --wait MICROSECONDS       of every call
//   --getattr, --opendir, --readdir, --open, --read, --getxattr MICROSECONDS      of this call alone
//   --every N --pause MILLISECONDS      each N-th call of any kind takes so long instead
//   --hang PATH --seconds S   whatever asks for the file or folder PATH (below FOLDER) takes S seconds
//   --broken PATH             a read of the file or folder fails with an I/O error
//
// It runs in the foreground until it is unmounted.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>

#include "passed_folder.h"

namespace {

using std::chrono::microseconds;

enum Call { kGetattr, kOpendir, kReaddir, kOpen, kRead, kGetxattr, kCalls };
constexpr std::array<std::string_view, kCalls> kCallNames = {"--getattr", "--opendir", "--readdir",
                                                             "--open",    "--read",    "--getxattr"};

struct Options {
    std::string folder;
    std::array<microseconds, kCalls> waits{};
    unsigned every = 0;
    microseconds pause{};
    std::string hangs;
    microseconds hang{};
    std::string broken;
};

struct Mount {
    Options options;
    int root = -1;
    std::atomic<unsigned> calls = 0;
};

Mount& mounted() {
    return *static_cast<Mount*>(fuse_get_context()->private_data);
}

// Takes the time that the call has to take.
Mount& answer(Call call, const char* path) {
    Mount& mount = mounted();
    const Options& options = mount.options;
    microseconds wait = options.waits[call];
    if (options.every > 0 && ++mount.calls % options.every == 0)
        wait = options.pause;
    if (!options.hangs.empty() && options.hangs == path)
        wait = options.hang;
    if (wait.count() > 0)
        std::this_thread::sleep_for(wait);
    return mount;
}

// The path below the folder; "." for the folder itself.
const char* below(const char* path) {
    return path[1] == '\0' ? "." : path + 1;
}

int resultOf(long given) {
    return given < 0 ? -errno : static_cast<int>(given);
}

void* begin(fuse_conn_info* connection, fuse_config* config) {
    connection->max_background = 256;
    connection->want &= ~static_cast<unsigned>(FUSE_CAP_READDIRPLUS);
    config->entry_timeout = config->attr_timeout = 60;
    config->nullpath_ok = 0;
    return fuse_get_context()->private_data;
}

int getattr(const char* path, struct stat* info, fuse_file_info* /*file*/) {
    return resultOf(::fstatat(answer(kGetattr, path).root, below(path), info, AT_SYMLINK_NOFOLLOW));
}

int readlink(const char* path, char* target, std::size_t size) {
    const long count = ::readlinkat(mounted().root, below(path), target, size - 1);
    target[std::max(count, 0L)] = '\0';
    return count < 0 ? -errno : 0;
}

int openPath(Call call, const char* path, fuse_file_info* file, int flags) {
    const int descriptor = ::openat(answer(call, path).root, below(path), flags | O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0)
        return -errno;
    file->fh = static_cast<std::uint64_t>(descriptor);
    return 0;
}

int openFile(const char* path, fuse_file_info* file) {
    return openPath(kOpen, path, file, 0);
}

int openFolder(const char* path, fuse_file_info* file) {
    return openPath(kOpendir, path, file, O_DIRECTORY);
}

int closeIt(const char* /*path*/, fuse_file_info* file) {
    return resultOf(::close(static_cast<int>(file->fh)));
}

bool isBroken(const Mount& mount, const char* path) {
    return !mount.options.broken.empty() && mount.options.broken == path;
}

int readFile(const char* path, char* bytes, std::size_t size, off_t from, fuse_file_info* file) {
    if (isBroken(answer(kRead, path), path))
        return -EIO;
    return resultOf(::pread(static_cast<int>(file->fh), bytes, size, from));
}

int readFolder(const char* path, void* names, fuse_fill_dir_t add, off_t /*from*/, fuse_file_info* file,
               fuse_readdir_flags /*flags*/) {
    if (isBroken(answer(kReaddir, path), path))
        return -EIO;
    return addEntries(static_cast<int>(file->fh), names, add);
}

int getAttribute(const char* path, const char* name, char* value, std::size_t size) {
    const Mount& mount = answer(kGetxattr, path);
    const std::string whole = mount.options.folder + path;
    return resultOf(::lgetxattr(whole.c_str(), name, value, size));
}

[[noreturn]] void usage() {
    std::fputs("usage: quillon_bench_slow_files FOLDER MOUNT_POINT [OPTION VALUE]...\n", stderr);
    std::exit(2);
}

bool takeWait(Options& options, std::string_view name, microseconds value) {
    const auto call = std::find(kCallNames.begin(), kCallNames.end(), name);
    if (call != kCallNames.end())
        options.waits[static_cast<std::size_t>(call - kCallNames.begin())] = value;
    else if (name == "--wait")
        options.waits.fill(value);
    return call != kCallNames.end() || name == "--wait";
}

void take(Options& options, std::string_view name, const char* value) {
    const long number = std::atol(value);
    if (takeWait(options, name, microseconds(number)))
        return;
    if (name == "--every")
        options.every = static_cast<unsigned>(number);
    else if (name == "--pause")
        options.pause = std::chrono::milliseconds(number);
    else if (name == "--hang")
        options.hangs = value;
    else if (name == "--seconds")
        options.hang = std::chrono::seconds(number);
    else if (name == "--broken")
        options.broken = value;
    else
        usage();
}

int serve(Mount& mount, char* program, const char* point, bool withAttributes) {
    fuse_operations operations{};
    operations.init = begin;
    operations.getattr = getattr;
    operations.readlink = readlink;
    operations.open = openFile;
    operations.read = readFile;
    operations.release = closeIt;
    operations.opendir = openFolder;
    operations.readdir = readFolder;
    operations.releasedir = closeIt;
    operations.getxattr = withAttributes ? getAttribute : nullptr;
    return serveAt(point, program, "-oro,fsname=slow", operations, mount, serveByThreads);
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 3 || argc % 2 == 0)
        usage();
    Mount mount;
    mount.options.folder = argv[1];
    for (int i = 3; i + 1 < argc; i += 2) take(mount.options, argv[i], argv[i + 1]);
    mount.root = ::open(argv[1], O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (mount.root < 0) {
        std::perror(argv[1]);
        return 1;
    }
    // Without attributes the kernel asks for the first and for no further one.
    return serve(mount, argv[0], argv[2], mount.options.waits[kGetxattr].count() > 0);
}
