// SPDX-License-Identifier: MIT
#include "platform/medium_reader.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "platform/arriving_file.h"
#include "platform/disk_calls.h"
#include "platform/source_files.h"
#include "platform/system_error.h"
#include "text/list_text.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kPiece = 1024UL * 1024;
// O_DIRECT asks for places and lengths in whole blocks; no volume has larger ones.
constexpr std::size_t kBlock = 4096;

// As much as the file needs: what is asked for beyond its end the system fills with zeros, page by page.
std::size_t pieceFor(off_t size) {
    const auto blocks = (static_cast<std::uint64_t>(size) + kBlock - 1) / kBlock;
    return static_cast<std::size_t>(std::clamp<std::uint64_t>(blocks * kBlock, kBlock, kPiece));
}

tl::unexpected<CopyError> targetFailed(FileError error) {
    return tl::unexpected<CopyError>(CopyError{CopySide::Target, std::move(error), true});
}

// Where source and copy are first not the same; none where the source gives no answer, or the same bytes now.
std::optional<std::uint64_t> firstDifference(const ArrivingFile& copy, std::string_view source) {
    auto from = SourceFiles().open(source);
    auto to = MediumReader::open(copy);
    if (!from || !to)
        return std::nullopt;
    std::string mine(kPiece, '\0');
    for (std::uint64_t place = 0;;) {
        const auto theirs = to->next();
        if (!theirs)
            return std::nullopt;
        mine.resize(std::max<std::size_t>(theirs->size(), 1));
        const auto count = from->read(std::as_writable_bytes(std::span(mine)));
        if (!count)
            return std::nullopt;
        const auto end = theirs->begin() + static_cast<std::ptrdiff_t>(std::min(*count, theirs->size()));
        const auto [other, own] = std::mismatch(theirs->begin(), end, mine.begin());
        place += static_cast<std::uint64_t>(other - theirs->begin());
        if (other != end || *count != theirs->size())
            return place;
        if (theirs->empty())
            return std::nullopt;
    }
}

}  // namespace

void MediumReader::Free::operator()(char* buffer) const {
    std::free(buffer);
}

MediumReader::MediumReader(std::string path, std::size_t piece)
    : path_(std::move(path)), piece_(piece), buffer_(static_cast<char*>(std::aligned_alloc(kBlock, piece))) {
    if (!buffer_)
        throw std::bad_alloc();
}

MediumReader::MediumReader(MediumReader&& other) noexcept
    : path_(std::move(other.path_)),
      piece_(other.piece_),
      buffer_(std::move(other.buffer_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      direct_(other.direct_),
      ended_(other.ended_) {
}

MediumReader::~MediumReader() {
    if (descriptor_ >= 0)
        passOver(disk().close(descriptor_), "nothing was written");
}

Result<MediumReader> MediumReader::begin(int descriptor, const std::string& path) {
    if (descriptor < 0)
        return failure(systemError(path));
    struct stat info {};
    const bool isThere = ::fstat(descriptor, &info) == 0 && ::lseek(descriptor, 0, SEEK_SET) >= 0;
    const int problem = errno;
    MediumReader reader(path, pieceFor(isThere ? info.st_size : 0));
    reader.descriptor_ = descriptor;
    if (!isThere)
        return failure(systemError(path, problem));
    if (!S_ISREG(info.st_mode))
        return failure(ErrorKind::PermissionDenied, readable(path) + ": this is no regular file");
    reader.direct_ = ::fcntl(descriptor, F_SETFL, O_DIRECT) == 0;
    if (!reader.direct_)
        reader.giveUpPages();
    return reader;
}

void MediumReader::giveUpPages() const {
    passOver(::posix_fadvise(descriptor_, 0, 0, POSIX_FADV_DONTNEED), "a volume may keep all in memory");
}

Result<MediumReader> MediumReader::open(const NativePath& path) {
    const int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    return begin(retried([&] { return disk().open(AT_FDCWD, path.c_str(), flags, 0); }), path.native());
}

Result<MediumReader> MediumReader::open(const ArrivingFile& file) {
    return begin(::fcntl(file.handle(), F_DUPFD_CLOEXEC, 0), file.nativePath());
}

Result<std::string_view> MediumReader::next() {
    if (ended_)
        return std::string_view();
    auto count = retried([this] { return disk().read(descriptor_, buffer_.get(), piece_); });
    if (count < 0 && errno == EINVAL && std::exchange(direct_, false)) {
        // It opens so and cannot read so.
        passOver(::fcntl(descriptor_, F_SETFL, 0), "the read tells");
        giveUpPages();
        count = retried([this] { return disk().read(descriptor_, buffer_.get(), piece_); });
    }
    if (count < 0)
        return failure(systemError(path_));
    // Behind an odd length no whole block is left, and a direct read would not be allowed.
    ended_ = count == 0 || (direct_ && static_cast<std::size_t>(count) % kBlock != 0);
    return std::string_view(buffer_.get(), static_cast<std::size_t>(count));
}

tl::expected<Sha256Digest, CopyError> hashOfMedium(MediumReader reader,
                                                   const std::function<bool(std::uint64_t)>& progress) {
    Sha256 hash;
    while (true) {
        const auto bytes = reader.next();
        if (!bytes)
            return targetFailed(bytes.error());
        if (bytes->empty())
            return hash.finish();
        hash.add(*bytes);
        if (!progress(bytes->size()))
            return tl::unexpected<CopyError>(CopyError::cancelled());
    }
}

tl::expected<void, CopyError> compareWithMedium(const ArrivingFile& copy, const Sha256Digest& hash,
                                                std::string_view source) {
    auto reader = MediumReader::open(copy);
    if (!reader)
        return targetFailed(reader.error());
    const auto found = hashOfMedium(*std::move(reader), [](std::uint64_t) { return true; });
    if (!found)
        return tl::unexpected<CopyError>(found.error());
    if (*found == hash)
        return {};
    const auto place = firstDifference(copy, source);
    const std::string where =
        place ? fmt::format(" at byte {}", grouped(static_cast<std::int64_t>(*place))) : std::string();
    CopyError error{CopySide::Target, {}, true, true};
    error.error.cause = "what was read back is not what was written" + where;
    error.error.text = readable(copy.nativePath()) + ": " + error.error.cause;
    return tl::unexpected<CopyError>(std::move(error));
}

}  // namespace quillon
