// SPDX-License-Identifier: MIT
#include "platform/whole_file.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "platform/disk_calls.h"
#include "platform/folders.h"
#include "platform/system_error.h"
#include "platform/temporary_name.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr std::string_view kTemporaryPrefix = ".quillon-save-";
constexpr int kRenameTries = 3;
// With waits that double up to the longest one, about four seconds in all.
constexpr int kBusyTries = 1000;
constexpr std::chrono::milliseconds kLongestWait{4};

struct Target {
    NativePath path;  // behind all links
    NativePath folder;
    unsigned mode = 0666;  // of an existing target; else what the process's mask leaves
    bool exists = false;
};

Target describeTarget(const NativePath& path) {
    Target target;
    std::error_code error;
    target.path = std::filesystem::is_symlink(path, error) ? std::filesystem::weakly_canonical(path, error) : path;
    if (error)
        target.path = path;
    target.folder = target.path.parent_path().empty() ? NativePath(".") : target.path.parent_path();
    struct stat info {};
    if (::stat(target.path.c_str(), &info) == 0) {
        target.exists = true;
        target.mode = info.st_mode & 07777U;
    }
    return target;
}

bool sameVolume(const NativePath& a, const NativePath& b) {
    struct stat first {};
    struct stat second {};
    return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 && first.st_dev == second.st_dev;
}

Result<File> createTemporary(const Target& target, TemporaryPlace place) {
    const NativePath above = target.folder / "..";
    if (place == TemporaryPlace::AboveFolder && sameVolume(above, target.folder)) {
        auto file = File::createNew(above / temporaryName());
        if (file)
            return file;
        // Only a folder that does not let us write sends the temporary file elsewhere; a full disk is full there too.
        if (file.error().kind != ErrorKind::PermissionDenied)
            return file;
    }
    return File::createNew(target.folder / temporaryName());
}

Result<void> takeMode(const File& file, const Target& target) {
    if (target.exists && disk().setMode(file.path().c_str(), target.mode) != 0 && errno != EPERM && errno != ENOTSUP)
        return failure(systemError(file.path().native()));
    return {};
}

Result<void> fill(File& file, std::string_view bytes, const Target& target) {
    return takeMode(file, target)
        .and_then([&] { return file.write(bytes); })
        .and_then([&] { return file.sync(); })
        .and_then([&] { return file.close(); });
}

// Over the old bytes and not into an emptied file: the room that they take is not given away to others meanwhile, so
// that on a full disk they can always be put back.
Result<void> putInto(const NativePath& path, std::string_view bytes) {
    return File::openForChanging(path).and_then([bytes](File file) {
        return file.write(bytes)
            .and_then([&] { return file.truncate(bytes.size()); })
            .and_then([&] { return file.sync(); })
            .and_then([&] { return file.close(); });
    });
}

// A share may let a file be written but not replaced; the bytes then go into the file that is there. Only where its old
// bytes are at hand, since a failure on the way has to put them back. Where that fails too, the temporary file stays,
// which is the only one that is whole.
Result<void> writeInPlace(NativePath& temporary, const Target& target, std::string_view bytes, Result<void> renamed) {
    const auto old = readWholeFile(target.path);
    if (!old)
        return renamed;
    auto written = putInto(target.path, bytes);
    if (!written && !putInto(target.path, *old))
        temporary.clear();
    return written;
}

// A share does not let a file be replaced while another computer reads it or replaces it, too. That is over soon.
bool isBusy(int number) {
    return number == EBUSY || number == ETXTBSY || number == EEXIST;
}

// The number of the error that the last try ended with; 0 when the file has its name.
int renameOver(const NativePath& temporary, const NativePath& target) {
    std::chrono::milliseconds wait{1};
    for (int tries = 1; disk().rename(AT_FDCWD, temporary.c_str(), target.c_str()) != 0; ++tries) {
        const int number = errno;
        if (tries >= (isBusy(number) ? kBusyTries : kRenameTries))
            return number;
        if (isBusy(number)) {
            disk().wait(wait);
            wait = std::min(2 * wait, kLongestWait);
        }
    }
    return 0;
}

// To write into a file that is being read gives its reader a mixture, so a file that stays busy is left alone; and
// where the share has failed altogether it would only put the old bytes at risk. `temporary` is emptied when there is
// nothing to be removed under this name.
Result<void> replaceTarget(NativePath& temporary, const Target& target, std::string_view bytes) {
    const int number = renameOver(temporary, target.path);
    if (number == 0) {
        temporary.clear();
        syncFolder(target.folder);
        return {};
    }
    Result<void> renamed = failure(systemError(target.path.native(), number));
    // Without its temporary file a save may be one that somebody has ended.
    if (number == EIO || number == ENOENT || isBusy(number) || !target.exists || isFolder(target.path))
        return renamed;
    return writeInPlace(temporary, target, bytes, std::move(renamed));
}

// Tells this process from all others, on this computer and others, that ever saved.
std::string processName() {
    // The time of day tells this process from one of the same number that died before it.
    struct timespec now {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return fmt::format("{}{}-{:x}{:08x}", ownTemporaryPrefix(), ::getpid(), now.tv_sec, now.tv_nsec);
}

// Who made a temporary name.
struct NameMaker {
    std::string_view computer;  // with the prefix of such names
    std::string_view process;
};

NameMaker makerOf(std::string_view temporaryName) {
    std::string_view rest = temporaryName;
    const auto cutLast = [&rest] {
        const auto at = rest.rfind('-');
        const std::string_view last = at == rest.npos ? std::string_view() : rest.substr(at + 1);
        rest = rest.substr(0, at == rest.npos ? 0 : at);
        return last;
    };
    passOver(cutLast(), "which of its files");
    passOver(cutLast(), "its first moment");
    const std::string_view process = cutLast();
    return {rest, process};
}

// The number of the process of this computer that made the name; 0 for any other name.
pid_t ownerOf(std::string_view temporaryName) {
    if (!isTemporaryName(temporaryName))  // most names of a folder are none, and the host's name takes a call
        return 0;
    const NameMaker maker = makerOf(temporaryName);
    pid_t number = 0;
    const auto [end, error] = std::from_chars(maker.process.begin(), maker.process.end(), number);
    const bool ours = std::string(maker.computer) + "-" == ownTemporaryPrefix();
    return ours && error == std::errc() && end == maker.process.end() && number > 0 ? number : 0;
}

}  // namespace

FileError saveError(const NativePath& path, FileError error) {
    error.text = readable(path.native()) + " cannot be saved: " + (error.cause.empty() ? error.text : error.cause);
    return error;
}

std::string computerOfTemporary(std::string_view temporaryName) {
    const std::string_view computer = makerOf(temporaryName).computer;
    return isTemporaryName(computer) ? std::string(computer.substr(kTemporaryPrefix.size())) : std::string();
}

std::string ownTemporaryPrefix() {
    std::array<char, 256> host{};
    ::gethostname(host.data(), host.size() - 1);
    std::string name = host.data();
    name.resize(std::min<std::size_t>(name.size(), 64));
    std::replace(name.begin(), name.end(), '/', '_');
    return std::string(kTemporaryPrefix) + name + "-";
}

bool isTemporaryName(std::string_view name) {
    return name.substr(0, kTemporaryPrefix.size()) == kTemporaryPrefix;
}

bool isOfGoneProcess(std::string_view temporaryName) {
    const pid_t owner = ownerOf(temporaryName);
    return owner != 0 && ::kill(owner, 0) != 0 && errno == ESRCH;
}

bool isSaveLitter(const NativePath& file) {
    constexpr std::int64_t kDay = 24LL * 60 * 60;
    if (!isOfGoneProcess(file.filename().native()))
        return false;
    const auto modified = modificationTime(file);
    return modified && modified->seconds + kDay < fileTimeNow().seconds && isRegularFile(file);
}

std::string temporaryName() {
    static const std::string process = processName();
    static std::atomic<unsigned> counter{0};
    return fmt::format("{}-{}", process, counter++);
}

Result<void> syncFile(const NativePath& path) {
    return File::openForReading(path).and_then(
        [](File file) { return file.sync().and_then([&file] { return file.close(); }); });
}

void syncFolder(const NativePath& folder) {
    const int descriptor = disk().open(AT_FDCWD, folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (descriptor < 0)
        return;
    passOver(disk().sync(descriptor), "not every medium can");
    passOver(disk().close(descriptor), "only its entries were asked for");
}

Result<std::string> readWholeFile(const NativePath& path, std::size_t limit) {
    auto file = File::openForReading(path);
    if (!file)
        return failure(file.error());
    std::string bytes;
    std::array<std::byte, 65536> buffer;  // nearly every file at one look: a share may be written to between two
    while (true) {
        const auto count = file->read(buffer);
        if (!count)
            return failure(count.error());
        bytes.append(reinterpret_cast<const char*>(buffer.data()), *count);
        if (bytes.size() > limit)
            return failure(systemError(path.native(), EFBIG));
        if (*count < buffer.size())
            return bytes;
    }
}

namespace {

// `makeTemporary` gives the temporary file of a target.
template <typename MakeTemporary>
Result<void> saveBy(const NativePath& path, std::string_view bytes, MakeTemporary makeTemporary) {
    if (path.empty() || path.native().find('\0') != std::string::npos)
        return failure(systemError(path.native(), EINVAL));
    const Target target = describeTarget(path);
    auto temporary = makeTemporary(target);
    if (!temporary)
        return failure(saveError(path, temporary.error()));
    NativePath name = temporary->path();
    auto saved = fill(*temporary, bytes, target).and_then([&] { return replaceTarget(name, target, bytes); });
    if (!name.empty())
        passOver(disk().unlink(AT_FDCWD, name.c_str()), "a name that no listing gives");
    if (!saved)
        return failure(saveError(path, saved.error()));
    return {};
}

}  // namespace

Result<void> saveWholeFile(const NativePath& path, std::string_view bytes, TemporaryPlace place) {
    return saveBy(path, bytes, [place](const Target& target) { return createTemporary(target, place); });
}

Result<void> saveWholeFileThrough(const NativePath& temporaryFolder, const NativePath& path, std::string_view bytes) {
    return saveBy(path, bytes, [&temporaryFolder](const Target& target) {
        if (!isFolder(temporaryFolder))
            return Result<File>(failure(systemError(temporaryFolder.native(), ENOENT)));
        if (sameVolume(temporaryFolder, target.folder)) {
            auto file = File::createNew(temporaryFolder / temporaryName());
            if (file || file.error().kind == ErrorKind::NotFound)
                return file;
        }
        return createTemporary(target, TemporaryPlace::AboveFolder);
    });
}

Replacement::Replacement(File file, NativePath target)
    : file_(std::move(file)), temporary_(file_.path()), target_(std::move(target)) {
}

Replacement::Replacement(Replacement&& other) noexcept
    : file_(std::move(other.file_)),
      temporary_(std::exchange(other.temporary_, {})),
      target_(std::move(other.target_)) {
}

Replacement::~Replacement() {
    if (!temporary_.empty())
        passOver(disk().unlink(AT_FDCWD, temporary_.c_str()), "a name that no listing gives");
}

Result<Replacement> Replacement::begin(const NativePath& target) {
    const Target described = describeTarget(target);
    auto file = createTemporary(described, TemporaryPlace::Beside);
    if (!file)
        return failure(file.error());
    Replacement replacement(std::move(*file), described.path);
    if (auto taken = takeMode(replacement.file_, described); !taken)
        return failure(taken.error());
    return replacement;
}

Result<void> Replacement::arrive() {
    if (const int number = renameOver(temporary_, target_); number != 0)
        return failure(systemError(target_.native(), number));
    temporary_.clear();
    syncFolder(target_.parent_path().empty() ? NativePath(".") : target_.parent_path());
    return {};
}

Result<void> appendToFile(const NativePath& path, std::string_view bytes) {
    return File::openForAppending(describeTarget(path).path).and_then([bytes](File file) -> Result<void> {
        const auto before = file.size();
        if (!before)
            return failure(before.error());
        auto written = file.write(bytes);
        if (written)
            return file.close();
        passOver(file.truncate(*before), "the failed write is what is reported; a cut row would join the next one");
        return written;
    });
}

}  // namespace quillon
