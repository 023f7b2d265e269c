// SPDX-License-Identifier: MIT
#include "platform/file_extents.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>

#include <fcntl.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/system_error.h"

namespace quillon {

namespace {

constexpr std::uint32_t kExtentsAtOnce = 256;

// The system's record, and room for the extents that it puts behind it.
class Question {
public:
    [[nodiscard]] fiemap* from(std::uint64_t next, std::uint32_t most = kExtentsAtOnce) {
        std::memset(room_.data(), 0, sizeof(fiemap));
        auto* const head = reinterpret_cast<fiemap*>(room_.data());
        head->fm_start = next;
        head->fm_length = FIEMAP_MAX_OFFSET - next;
        head->fm_extent_count = most;
        return head;
    }
    [[nodiscard]] std::size_t count() const {
        const auto* const head = reinterpret_cast<const fiemap*>(room_.data());
        return std::min<std::size_t>(head->fm_mapped_extents, kExtentsAtOnce);
    }
    [[nodiscard]] fiemap_extent extent(std::size_t place) const {
        fiemap_extent one{};
        std::memcpy(&one, room_.data() + sizeof(fiemap) + place * sizeof one, sizeof one);
        return one;
    }

private:
    alignas(fiemap) std::array<std::byte, sizeof(fiemap) + kExtentsAtOnce * sizeof(fiemap_extent)> room_{};
};

ExtentKind kindOf(std::uint32_t flags) {
    if ((flags & (FIEMAP_EXTENT_ENCODED | FIEMAP_EXTENT_DATA_ENCRYPTED)) != 0)
        return ExtentKind::Encoded;
    if ((flags & (FIEMAP_EXTENT_DATA_INLINE | FIEMAP_EXTENT_DATA_TAIL)) != 0)
        return ExtentKind::Inline;
    if ((flags & (FIEMAP_EXTENT_UNKNOWN | FIEMAP_EXTENT_DELALLOC)) != 0)
        return ExtentKind::Unknown;
    return (flags & FIEMAP_EXTENT_UNWRITTEN) != 0 ? ExtentKind::Unwritten : ExtentKind::Data;
}

// The descriptor of a file that is looked at, closed at the end.
class Looked {
public:
    explicit Looked(int descriptor) : descriptor_(descriptor) {}
    ~Looked() { ::close(descriptor_); }
    Looked(const Looked&) = delete;
    Looked& operator=(const Looked&) = delete;
    [[nodiscard]] int handle() const { return descriptor_; }

private:
    int descriptor_;
};

// None: the file system tells no extents. FIEMAP_FLAG_SYNC is never set: a dying disk is not written to.
Result<std::optional<std::vector<FileExtent>>> extentsOf(int descriptor, std::string_view nativePath) {
    std::vector<FileExtent> all;
    Question question;
    std::uint64_t next = 0;
    while (true) {
        if (retried([&] { return ::ioctl(descriptor, FS_IOC_FIEMAP, question.from(next)); }) != 0) {
            if (errno == EOPNOTSUPP || errno == ENOTTY)
                return std::nullopt;
            return failure(systemError(nativePath));
        }
        const std::size_t count = question.count();
        for (std::size_t i = 0; i < count; ++i) {
            const fiemap_extent one = question.extent(i);
            all.push_back({one.fe_logical, one.fe_physical, one.fe_length, kindOf(one.fe_flags)});
            if ((one.fe_flags & FIEMAP_EXTENT_LAST) != 0)
                return all;
        }
        if (count == 0 || all.back().logical + all.back().length <= next)
            return all;
        next = all.back().logical + all.back().length;
    }
}

Result<std::vector<FileExtent>> blocksOf(int descriptor, std::uint64_t size, std::string_view nativePath) {
    int blockBytes = 0;
    if (::ioctl(descriptor, FIGETBSZ, &blockBytes) != 0 || blockBytes <= 0)
        return failure(systemError(nativePath));
    return extentsByBlocks(size, static_cast<std::uint32_t>(blockBytes),
                           [&](std::uint32_t block) -> Result<std::uint32_t> {
                               int number = static_cast<int>(block);
                               if (retried([&] { return ::ioctl(descriptor, FIBMAP, &number); }) == 0)
                                   return static_cast<std::uint32_t>(number);
                               auto error = systemError(nativePath);
                               if (errno == ERANGE)
                                   error.text += " (the number of a block is too large for the system to tell)";
                               return failure(error);
                           });
}

}  // namespace

Result<std::vector<FileExtent>> extentsByBlocks(std::uint64_t size, std::uint32_t blockBytes, const BlockOf& blockOf) {
    const std::uint64_t blocks = size / blockBytes + (size % blockBytes == 0 ? 0 : 1);
    if (blocks > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max()))
        return failure(ErrorKind::InvalidArgument, "the file has more blocks than the system can tell places of");
    std::vector<FileExtent> all;
    for (std::uint64_t block = 0; block < blocks; ++block) {
        const auto found = blockOf(static_cast<std::uint32_t>(block));
        if (!found)
            return failure(found.error());
        const ExtentKind kind = *found == 0 ? ExtentKind::Unknown : ExtentKind::Data;
        const FileExtent one{block * blockBytes, std::uint64_t{*found} * blockBytes, blockBytes, kind};
        const bool goesOn = !all.empty() && all.back().kind == kind &&
                            (kind == ExtentKind::Unknown || all.back().physical + all.back().length == one.physical);
        if (goesOn)
            all.back().length += blockBytes;
        else
            all.push_back(one);
    }
    return all;
}

Result<int> SystemPlaces::open(std::string_view nativePath) {
    const auto slash = nativePath.rfind('/');
    const auto folder = slash == nativePath.npos ? std::string_view(".") : nativePath.substr(0, slash + 1);
    if (!folder_.isOpen() || folder != folderPath_) {
        auto opened = Directory::openToLookUp(NativePath(folder));
        if (!opened)
            return failure(opened.error());
        folder_ = std::move(*opened);
        folderPath_ = folder;
    }
    const std::string name(nativePath.substr(slash == nativePath.npos ? 0 : slash + 1));
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    const auto openWith = [&](int flags) {
        return retried([&] { return ::openat(folder_.handle(), name.c_str(), flags); });
    };
    int descriptor = openWith(kFlags | O_NOATIME);
    if (descriptor < 0 && errno == EPERM)  // somebody else's file
        descriptor = openWith(kFlags);
    if (descriptor < 0)
        return failure(systemError(nativePath));
    return descriptor;
}

std::optional<std::uint64_t> SystemPlaces::firstPlaceOf(std::string_view nativePath) {
    const auto opened = open(nativePath);
    if (!opened)
        return std::nullopt;
    const Looked file(*opened);
    Question question;
    if (::ioctl(file.handle(), FS_IOC_FIEMAP, question.from(0, 1)) != 0 || question.count() == 0)
        return std::nullopt;
    const fiemap_extent first = question.extent(0);
    return kindOf(first.fe_flags) == ExtentKind::Unknown ? std::nullopt : std::optional(first.fe_physical);
}

Result<FilePlaces> SystemPlaces::placesOf(std::string_view nativePath) {
    const auto opened = open(nativePath);
    if (!opened)
        return failure(opened.error());
    const Looked file(*opened);
    struct stat info {};
    if (::fstat(file.handle(), &info) != 0)
        return failure(systemError(nativePath));
    if (!S_ISREG(info.st_mode))
        return failure(systemError(nativePath, EACCES));
    FilePlaces places{static_cast<std::uint64_t>(info.st_size), info.st_dev, {}};
    auto extents = extentsOf(file.handle(), nativePath);
    if (!extents)
        return failure(extents.error());
    if (*extents) {
        places.extents = std::move(**extents);
        return places;
    }
    auto blocks = blocksOf(file.handle(), places.size, nativePath);
    if (!blocks)
        return failure(blocks.error());
    places.extents = std::move(*blocks);
    return places;
}

}  // namespace quillon
