// SPDX-License-Identifier: MIT
#include "platform/copy_transfer.h"

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "platform/disk_calls.h"
#include "platform/system_error.h"
#include "text/numbers.h"

namespace quillon {

namespace {

constexpr std::size_t kReadChunk = 256UL * 1024;
// One copy_file_range call moves at most this much: a screen stands still meanwhile, and a system that has much to
// write back lets the caller wait in it.
constexpr std::size_t kRangeChunk = 1024UL * 1024;
// What the system reads at least, so that a gap is not smaller.
constexpr std::size_t kBlock = 4096;
// So many blocks have to come behind a gap before larger pieces are tried again.
constexpr unsigned kGoodBlocks = 64;

// A hole takes no blocks. One that does not show here is too small to be worth a look.
bool mayHaveHoles(const struct stat& info) {
    return info.st_blocks * 512 < info.st_size;
}

// What a medium says that cannot give a sector; anything else is no matter of a place in the file.
bool isOfTheMedium(int number) {
    return number == EIO || number == ENODATA || number == EILSEQ || number == EREMOTEIO;
}

}  // namespace

std::string CopyError::text() const {
    switch (side) {
        case CopySide::Source:
            return "source: " + error.text;
        case CopySide::Target:
            return "target: " + error.text;
        case CopySide::Cancelled:
            break;
    }
    return "cancelled";
}

tl::unexpected<CopyError> CopyTransfer::failed(CopySide side) const {
    FileError error = systemError(side == CopySide::Source ? ends_.sourcePath : ends_.targetPath);
    error.text += fmt::format(" at byte {}", grouped(at_));
    return tl::unexpected<CopyError>(CopyError{side, std::move(error)});
}

tl::expected<CopyFacts, CopyError> CopyTransfer::run(const struct stat& info) {
    size_ = info.st_size;
    if (!progress_(0, static_cast<std::uint64_t>(size_)))
        return tl::unexpected<CopyError>(CopyError::cancelled());
    // The two calls of a small file are cheaper than one that moves pages; and bytes are hashed where they can be seen.
    useRange_ = !manner_.hash && static_cast<std::size_t>(size_) >= kReadChunk;
    if (manner_.hash)
        hash_.emplace();
    if (watch_ != nullptr)
        watch_->begin();
    const auto copied = mayHaveHoles(info) ? copyData() : copyPiece(0, -1);
    if (!copied)
        return tl::unexpected<CopyError>(copied.error());
    if (!gaps_.empty()) {
        if (const auto ended = finish(); !ended)  // the file may end in one
            return tl::unexpected<CopyError>(ended.error());
    }
    CopyFacts facts{static_cast<std::uint64_t>(end_), std::nullopt, std::move(gaps_), 0, {}, {}};
    if (hash_)
        facts.hash = hash_->finish();
    if (watch_ != nullptr)
        facts.unread = watch_->end();
    return facts;
}

// Piece by piece, so that holes stay holes.
CopyTransfer::Done CopyTransfer::copyData() {
    off_t at = 0;
    while (true) {
        // A file system without holes gives the file as one piece of data.
        const off_t data = ::lseek(ends_.source, at, SEEK_DATA);
        if (data < 0 && errno == ENXIO)
            break;
        if (data < 0)
            return goTo(at).and_then([&] { return copyPiece(at, -1); }).and_then([&] { return finish(); });
        const off_t hole = ::lseek(ends_.source, data, SEEK_HOLE);
        if (auto copied = goTo(data).and_then([&] { return copyPiece(data, hole < 0 ? -1 : hole); }); !copied)
            return copied;
        if (hole < 0)
            return finish();
        at = hole;
    }
    // No more data: what is left, if anything, is a hole. A file that was cut meanwhile ends where it ends now.
    struct stat now {};
    if (::fstat(ends_.source, &now) != 0)
        return failed(CopySide::Source);
    end_ = std::max(end_, now.st_size);
    return finish();
}

// The end of the file may lie in a hole; cutting to the length makes it so in the target.
CopyTransfer::Done CopyTransfer::finish() {
    if (disk().truncate(ends_.target, end_) != 0)
        return failed(CopySide::Target);
    hashZerosUpTo(end_);
    return {};
}

CopyTransfer::Done CopyTransfer::goTo(off_t place) {
    if (::lseek(ends_.source, place, SEEK_SET) < 0)
        return failed(CopySide::Source);
    if (::lseek(ends_.target, place, SEEK_SET) < 0)
        return failed(CopySide::Target);
    hashZerosUpTo(place);
    return {};
}

void CopyTransfer::hashZerosUpTo(off_t place) {
    if (!hash_ || place <= hashed_)
        return;
    const auto hole = static_cast<std::uint64_t>(place - hashed_);
    hash_->addZeros(hole);
    if (watch_ != nullptr)
        watch_->addHole(hole);
    hashed_ = place;
}

// What was hashed so far ends where the gap begins.
void CopyTransfer::hashGap(std::size_t length) {
    if (!hash_)
        return;
    hash_->addZeros(length);
    if (watch_ != nullptr)
        watch_->addUnread(length);
    hashed_ += static_cast<off_t>(length);
}

// Copies from `from`, where both files stand, to `to`, or to the end of the source when `to` is -1.
CopyTransfer::Done CopyTransfer::copyPiece(off_t from, off_t to) {
    at_ = from;
    while (to < 0 || at_ < to) {
        const std::size_t wanted =
            to < 0 ? kRangeChunk : static_cast<std::size_t>(std::min<off_t>(to - at_, kRangeChunk));
        const auto moved = useRange_ ? moveByRange(wanted) : moveByBuffer(wanted);
        if (!moved)
            return tl::unexpected<CopyError>(moved.error());
        if (*moved == 0)
            break;
        at_ += static_cast<off_t>(*moved);
        end_ = std::max(end_, at_);
        if (!progress_(static_cast<std::uint64_t>(at_), static_cast<std::uint64_t>(size_)))
            return tl::unexpected<CopyError>(CopyError::cancelled());
        const bool wasCut = goodBlocksToGo_ > 0;
        if (at_ == size_ && !wasCut && *moved < std::min(wanted, kReadChunk))  // there was no more to be had
            break;
    }
    return {};
}

CopyTransfer::Moved CopyTransfer::moveByRange(std::size_t wanted) {
    const auto moved = retried([&] { return disk().copyRange(ends_.source, ends_.target, wanted); });
    if (moved > 0)
        return static_cast<std::size_t>(moved);
    // Whatever the reason - other volumes, no such call, a read error - reading and writing tells which side it was.
    useRange_ = false;
    return moveByBuffer(wanted);
}

CopyTransfer::Moved CopyTransfer::moveByBuffer(std::size_t wanted) {
    if (goodBlocksToGo_ > 0)
        return moveBlock(wanted);
    buffer_.resize(kReadChunk);
    const std::size_t size = std::min(wanted, buffer_.size());
    const auto count = retried([&] { return disk().read(ends_.source, buffer_.data(), size); });
    if (count < 0 && manner_.salvage && isOfTheMedium(errno)) {
        goodBlocksToGo_ = kGoodBlocks;
        return moveBlock(wanted);
    }
    if (count < 0)
        return failed(CopySide::Source);
    return put(static_cast<std::size_t>(count));
}

// One block, so that no more is given up than what cannot be read.
CopyTransfer::Moved CopyTransfer::moveBlock(std::size_t wanted) {
    const off_t place = ::lseek(ends_.source, 0, SEEK_CUR);
    if (place < 0)
        return failed(CopySide::Source);
    const std::size_t size = std::min(wanted, kBlock - static_cast<std::size_t>(place) % kBlock);
    const auto count = retried([&] { return disk().read(ends_.source, buffer_.data(), size); });
    if (count >= 0) {
        --goodBlocksToGo_;
        return put(static_cast<std::size_t>(count));
    }
    if (!isOfTheMedium(errno))
        return failed(CopySide::Source);
    if (place >= size_)  // there is nothing left to be missed
        return 0;
    goodBlocksToGo_ = kGoodBlocks;
    return leaveGap(place, static_cast<std::size_t>(std::min<off_t>(static_cast<off_t>(size), size_ - place)));
}

CopyTransfer::Moved CopyTransfer::leaveGap(off_t place, std::size_t length) {
    append(gaps_, {static_cast<std::uint64_t>(place), static_cast<std::uint64_t>(place) + length});
    hashGap(length);
    return goTo(place + static_cast<off_t>(length)).map([length] { return length; });
}

// Writes what was read.
CopyTransfer::Moved CopyTransfer::put(std::size_t count) {
    for (std::size_t done = 0; done < count;) {
        const auto written = retried([&] { return disk().write(ends_.target, buffer_.data() + done, count - done); });
        if (written < 0)
            return failed(CopySide::Target);
        done += static_cast<std::size_t>(written);
    }
    if (hash_) {
        hash_->add({buffer_.data(), count});
        if (watch_ != nullptr)
            watch_->add({buffer_.data(), count});
        hashed_ += static_cast<off_t>(count);
    }
    return count;
}

}  // namespace quillon
