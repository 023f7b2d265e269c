// SPDX-License-Identifier: MIT
// Shows a folder as a file system that fails at a chosen moment, as a full, dying or unplugged disk does: a FUSE
// pass-through for reading and writing.
//
//   quillon_bench_faulty_files FOLDER MOUNT_POINT [OPTION VALUE]...
//
//   --call NAME       what fails: read, write, create, flush, fsync, link, rename
//   --after N         when so many bytes were read or written, or behind so many of the other calls
//   --error NUMBER    of the system; 5, an I/O error, where it is not given
//   --times N         so many calls fail; 0: all from then on
//   --broken PATH --at BYTE      every read of the file PATH (below FOLDER) that touches this byte fails
//   --gone N          behind N calls of any kind the server ends, as a disk that is pulled out
//   --flush-wait MS   nothing fails, but each flush of a file or folder to the medium takes so long
//
// One thread serves, so that the moment is the same for the same calls; where flushes wait there are two hundred, and
// at the end it tells how many flushes there were. It runs in the foreground until it is unmounted.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>

#include "passed_folder.h"

namespace {

struct Mount {
    int root = -1;
    std::string call;
    std::int64_t after = 0;
    int error = EIO;
    std::int64_t times = 1;
    std::string broken;
    off_t at = 0;
    std::int64_t gone = -1;
    std::chrono::milliseconds flushWait{0};

    std::atomic<int> flushes = 0;
    std::int64_t done = 0;    // of the call that fails
    std::int64_t failed = 0;  // calls
    std::int64_t calls = 0;
};

// Counts a call of any kind.
Mount& mounted() {
    Mount& mount = *static_cast<Mount*>(fuse_get_context()->private_data);
    if (mount.gone >= 0 && mount.calls++ >= mount.gone)
        std::_Exit(0);
    return mount;
}

// The number of the error that this call is to give; 0 for none. `amount`: bytes, or 1.
int faultOf(Mount& mount, std::string_view call, std::int64_t amount) {
    if (mount.call != call)
        return 0;
    if (mount.done + amount <= mount.after) {
        mount.done += amount;
        return 0;
    }
    if (mount.times > 0 && mount.failed >= mount.times)
        return 0;
    ++mount.failed;
    return mount.error;
}

// The path below the folder; "." for the folder itself.
const char* below(const char* path) {
    return path[1] == '\0' ? "." : path + 1;
}

int resultOf(long given) {
    return given < 0 ? -errno : static_cast<int>(given);
}

int handleOf(const fuse_file_info* file) {
    return static_cast<int>(file->fh);
}

void* begin(fuse_conn_info* /*connection*/, fuse_config* config) {
    config->entry_timeout = config->attr_timeout = 0;
    config->hard_remove = 1;
    return fuse_get_context()->private_data;
}

int getattr(const char* path, struct stat* info, fuse_file_info* file) {
    const Mount& mount = mounted();
    return resultOf(file != nullptr ? ::fstat(handleOf(file), info)
                                    : ::fstatat(mount.root, below(path), info, AT_SYMLINK_NOFOLLOW));
}

int makeFolder(const char* path, mode_t mode) {
    return resultOf(::mkdirat(mounted().root, below(path), mode));
}

int removeFile(const char* path) {
    return resultOf(::unlinkat(mounted().root, below(path), 0));
}

int removeFolder(const char* path) {
    return resultOf(::unlinkat(mounted().root, below(path), AT_REMOVEDIR));
}

int renameFile(const char* from, const char* to, unsigned flags) {
    Mount& mount = mounted();
    if (const int fault = faultOf(mount, "rename", 1))
        return -fault;
    return resultOf(::renameat2(mount.root, below(from), mount.root, below(to), flags));
}

int linkFile(const char* from, const char* to) {
    Mount& mount = mounted();
    if (const int fault = faultOf(mount, "link", 1))
        return -fault;
    return resultOf(::linkat(mount.root, below(from), mount.root, below(to), 0));
}

int setMode(const char* path, mode_t mode, fuse_file_info* /*file*/) {
    return resultOf(::fchmodat(mounted().root, below(path), mode, 0));
}

int setOwner(const char* path, uid_t user, gid_t group, fuse_file_info* /*file*/) {
    return resultOf(::fchownat(mounted().root, below(path), user, group, AT_SYMLINK_NOFOLLOW));
}

int setTimes(const char* path, const timespec times[2], fuse_file_info* /*file*/) {
    return resultOf(::utimensat(mounted().root, below(path), times, AT_SYMLINK_NOFOLLOW));
}

int cut(const char* path, off_t length, fuse_file_info* file) {
    const Mount& mount = mounted();
    if (file != nullptr)
        return resultOf(::ftruncate(handleOf(file), length));
    const int descriptor = ::openat(mount.root, below(path), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
    const int result = descriptor < 0 ? -errno : resultOf(::ftruncate(descriptor, length));
    ::close(descriptor);
    return result;
}

int openPath(const char* path, fuse_file_info* file, int flags, mode_t mode) {
    const int descriptor = ::openat(mounted().root, below(path), flags | O_NOFOLLOW | O_CLOEXEC, mode);
    if (descriptor < 0)
        return -errno;
    file->fh = static_cast<std::uint64_t>(descriptor);
    return 0;
}

int openFile(const char* path, fuse_file_info* file) {
    return openPath(path, file, file->flags & (O_ACCMODE | O_TRUNC), 0);
}

int createFile(const char* path, mode_t mode, fuse_file_info* file) {
    if (const int fault = faultOf(mounted(), "create", 1))
        return -fault;
    return openPath(path, file, (file->flags & (O_ACCMODE | O_EXCL)) | O_CREAT, mode);
}

int openFolder(const char* path, fuse_file_info* file) {
    return openPath(path, file, O_RDONLY | O_DIRECTORY, 0);
}

int closeIt(const char* /*path*/, fuse_file_info* file) {
    return resultOf(::close(handleOf(file)));
}

int flush(const char* /*path*/, fuse_file_info* /*file*/) {
    return -faultOf(mounted(), "flush", 1);
}

int sync(const char* /*path*/, int /*dataOnly*/, fuse_file_info* file) {
    Mount& mount = mounted();
    if (const int fault = faultOf(mount, "fsync", 1))
        return -fault;
    ++mount.flushes;
    // The wait takes the place of the disk's own time.
    if (mount.flushWait.count() > 0) {
        std::this_thread::sleep_for(mount.flushWait);
        return 0;
    }
    return resultOf(::fsync(handleOf(file)));
}

int readFile(const char* path, char* bytes, std::size_t size, off_t from, fuse_file_info* file) {
    Mount& mount = mounted();
    if (mount.broken == path && from <= mount.at && mount.at < from + static_cast<off_t>(size))
        return -EIO;
    if (const int fault = faultOf(mount, "read", static_cast<std::int64_t>(size)))
        return -fault;
    return resultOf(::pread(handleOf(file), bytes, size, from));
}

int writeFile(const char* /*path*/, const char* bytes, std::size_t size, off_t from, fuse_file_info* file) {
    if (const int fault = faultOf(mounted(), "write", static_cast<std::int64_t>(size)))
        return -fault;
    return resultOf(::pwrite(handleOf(file), bytes, size, from));
}

int readFolder(const char* /*path*/, void* names, fuse_fill_dir_t add, off_t /*from*/, fuse_file_info* file,
               fuse_readdir_flags /*flags*/) {
    mounted();
    return addEntries(handleOf(file), names, add);
}

int tellVolume(const char* /*path*/, struct statvfs* volume) {
    return resultOf(::fstatvfs(mounted().root, volume));
}

[[noreturn]] void usage() {
    std::fputs("usage: quillon_bench_faulty_files FOLDER MOUNT_POINT [OPTION VALUE]...\n", stderr);
    std::exit(2);
}

void take(Mount& mount, std::string_view name, const char* value) {
    const auto number = static_cast<std::int64_t>(std::atoll(value));
    if (name == "--call")
        mount.call = value;
    else if (name == "--after")
        mount.after = number;
    else if (name == "--error")
        mount.error = static_cast<int>(number);
    else if (name == "--times")
        mount.times = number;
    else if (name == "--broken")
        mount.broken = value;
    else if (name == "--at")
        mount.at = number;
    else if (name == "--gone")
        mount.gone = number;
    else if (name == "--flush-wait")
        mount.flushWait = std::chrono::milliseconds(number);
    else
        usage();
}

fuse_operations operations() {
    fuse_operations all{};
    all.init = begin;
    all.getattr = getattr;
    all.mkdir = makeFolder;
    all.unlink = removeFile;
    all.rmdir = removeFolder;
    all.rename = renameFile;
    all.link = linkFile;
    all.chmod = setMode;
    all.chown = setOwner;
    all.utimens = setTimes;
    all.truncate = cut;
    all.open = openFile;
    all.create = createFile;
    all.read = readFile;
    all.write = writeFile;
    all.flush = flush;
    all.release = closeIt;
    all.fsync = sync;
    all.opendir = openFolder;
    all.readdir = readFolder;
    all.releasedir = closeIt;
    all.statfs = tellVolume;
    return all;
}

int serve(Mount& mount, char* program, const char* point) {
    fuse_operations calls = operations();
    if (mount.flushWait.count() == 0)
        return serveAt(point, program, "-ofsname=faulty", calls, mount,
                       [](fuse* filesystem) { return fuse_loop(filesystem); });
    calls.fsyncdir = sync;
    const int served = serveAt(point, program, "-ofsname=faulty", calls, mount, serveByThreads);
    std::printf("%d flushes\n", mount.flushes.load());
    return served;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc < 3 || argc % 2 == 0)
        usage();
    ::umask(0);
    Mount mount;
    for (int i = 3; i + 1 < argc; i += 2) take(mount, argv[i], argv[i + 1]);
    mount.root = ::open(argv[1], O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (mount.root < 0) {
        std::perror(argv[1]);
        return 1;
    }
    return serve(mount, argv[0], argv[2]);
}
