// SPDX-License-Identifier: MIT
#include "platform/folders.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/disk_calls.h"
#include "platform/file_stamp.h"
#include "platform/system_error.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

bool statPath(const NativePath& path, struct stat& info) {
    if (path.empty() || path.native().find('\0') != std::string::npos) {
        errno = path.empty() ? ENOENT : EINVAL;
        return false;
    }
    return retried([&] { return ::stat(path.c_str(), &info); }) == 0;
}

bool isRegular(int folder, const dirent& entry) {
    if (entry.d_type == DT_REG)
        return true;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return false;
    struct stat info {};
    return ::fstatat(folder, entry.d_name, &info, 0) == 0 && S_ISREG(info.st_mode);
}

// Calls `take` for every entry but "." and "..".
template <typename Take>
Result<void> forEachEntry(const NativePath& folder, Take take) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(folder.c_str()), &::closedir);
    if (!stream)
        return failure(systemError(folder.native()));
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (entry == nullptr)
            break;
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            take(::dirfd(stream.get()), *entry);
    }
    if (errno != 0)
        return failure(systemError(folder.native()));
    return {};
}

}  // namespace

bool pathExists(const NativePath& path) {
    struct stat info {};
    return statPath(path, info);
}

bool isFolder(const NativePath& path) {
    struct stat info {};
    return statPath(path, info) && S_ISDIR(info.st_mode);
}

bool isRegularFile(const NativePath& path) {
    struct stat info {};
    return statPath(path, info) && S_ISREG(info.st_mode);
}

bool isLink(const NativePath& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0 && S_ISLNK(info.st_mode);
}

FileTime fileTimeNow() {
    constexpr std::int64_t second = 1'000'000'000;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
    return {nanoseconds / second, static_cast<std::uint32_t>(nanoseconds % second)};
}

Result<FileStamp> fileStamp(const NativePath& path) {
    struct stat info {};
    if (!statPath(path, info))
        return failure(systemError(path.native()));
    return stampFrom(info);
}

Result<std::uint64_t> fileSize(const NativePath& path) {
    return fileStamp(path).map([](const FileStamp& stamp) { return stamp.size; });
}

Result<FileTime> modificationTime(const NativePath& path) {
    return fileStamp(path).map([](const FileStamp& stamp) { return stamp.modified; });
}

// Both times are named: many file systems in user space pass over a request that leaves one out, and say nothing.
Result<void> setModificationTime(const NativePath& path, FileTime time) {
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0)
        return failure(systemError(path.native()));
    const struct timespec times[2] = {info.st_atim, {time.seconds, time.nanoseconds}};
    if (disk().setTimes(path.c_str(), times) != 0)
        return failure(systemError(path.native()));
    return {};
}

Result<void> createFolder(const NativePath& path) {
    if (disk().makeFolder(AT_FDCWD, path.c_str()) == 0 || (errno == EEXIST && isFolder(path)))
        return {};
    return failure(systemError(path.native()));
}

Result<std::vector<std::string>> listFiles(const NativePath& folder) {
    std::vector<std::string> names;
    const auto listed = forEachEntry(folder, [&names](int handle, const dirent& entry) {
        if (!isTemporaryName(entry.d_name) && isRegular(handle, entry))
            names.emplace_back(entry.d_name);
    });
    if (!listed)
        return failure(listed.error());
    std::sort(names.begin(), names.end());
    return names;
}

Result<std::vector<std::string>> listEntries(const NativePath& folder) {
    std::vector<std::string> names;
    const auto listed = forEachEntry(folder, [&names](int, const dirent& entry) { names.emplace_back(entry.d_name); });
    if (!listed)
        return failure(listed.error());
    return names;
}

Result<void> removeFile(const NativePath& path) {
    if (disk().unlink(AT_FDCWD, path.c_str()) != 0)
        return failure(systemError(path.native()));
    return {};
}

Result<void> createLink(const NativePath& target, const NativePath& link) {
    if (::symlink(target.c_str(), link.c_str()) != 0)
        return failure(systemError(link.native()));
    return {};
}

Result<void> renameFile(const NativePath& from, const NativePath& to) {
    if (disk().rename(AT_FDCWD, from.c_str(), to.c_str()) != 0)
        return failure(systemError(to.native()));
    return {};
}

bool isFileName(std::string_view name) {
    constexpr std::string_view forbidden("/\\\0", 3);
    return !name.empty() && name.size() <= 255 && name != "." && name != ".." &&
           name.find_first_of(forbidden) == name.npos;
}

Result<NativePath> childPath(const NativePath& folder, std::string_view name) {
    if (!isFileName(name))
        return failure(systemError(name, EINVAL));
    return folder / name;
}

Result<NativePath> absolutePath(const NativePath& path) {
    std::error_code error;
    NativePath whole = std::filesystem::absolute(path, error);
    if (error)
        return failure(systemError(path.native(), error.value()));
    return whole.lexically_normal();
}

Result<NativePath> pathFromRoot(const NativePath& path) {
    std::error_code error;
    const NativePath whole = std::filesystem::absolute(path, error);
    if (error)
        return failure(systemError(path.native(), error.value()));
    NativePath upToLastUp;
    NativePath rest;
    for (const auto& part : whole) {
        rest /= part;
        if (part == "..")
            upToLastUp /= std::exchange(rest, {});
    }
    if (upToLastUp.empty())
        return whole.lexically_normal();
    return resolvedPath(upToLastUp).map([&rest](const NativePath& real) { return (real / rest).lexically_normal(); });
}

Result<NativePath> resolvedPath(const NativePath& path) {
    std::error_code error;
    NativePath real = std::filesystem::weakly_canonical(path, error);
    if (error)
        return failure(systemError(path.native(), error.value()));
    return real;
}

NativePath realPath(const NativePath& path) {
    const NativePath real = resolvedPath(path).value_or(path.lexically_normal());
    return real.has_filename() ? real : real.parent_path();
}

bool liesIn(const NativePath& path, const NativePath& folder) {
    const auto mismatch = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return mismatch.first == folder.end();
}

NativePath programFolder() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error)
        return program.parent_path();
    // Without /proc: the path by which the program was started. One without a folder says nothing of its place.
    const auto* started = reinterpret_cast<const char*>(::getauxval(AT_EXECFN));
    if (started == nullptr || std::strchr(started, '/') == nullptr)
        return {};
    const auto real = std::filesystem::canonical(started, error);
    return error ? NativePath() : real.parent_path();
}

void raiseOpenFileLimit() {
    struct rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

std::uint64_t openFileLimit() {
    struct rlimit limit {};
    return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 ? limit.rlim_cur : 0;
}

}  // namespace quillon
