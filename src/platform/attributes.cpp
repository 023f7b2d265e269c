// SPDX-License-Identifier: MIT
#include "platform/attributes.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <span>
#include <string>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <fmt/format.h>

namespace quillon {

namespace {

enum class Form { BigEndian, LittleEndian, Samba };

// The kinds of file systems as `statfs` tells them, told apart by what they do with attribute bits.
enum class Kind { Fuse, Ntfs3, Share, Other };

struct AttributeSource {
    const char* name;
    Form form;
    bool (*standsOn)(Kind kind);
};

constexpr std::array<AttributeSource, 4> kSources = {{
    {"system.ntfs_attrib_be", Form::BigEndian, [](Kind kind) { return kind == Kind::Fuse; }},   // ntfs-3g
    {"system.ntfs_attrib", Form::LittleEndian, [](Kind kind) { return kind == Kind::Ntfs3; }},  // ntfs3
    {"user.cifs.dosattrib", Form::LittleEndian, [](Kind kind) { return kind == Kind::Share; }},
    // A volume that a Samba server writes: any file system.
    {"user.DOSATTRIB", Form::Samba, [](Kind kind) { return kind == Kind::Fuse || kind == Kind::Other; }},
}};

Kind kindOf(const Directory& folder) {
    constexpr std::uint32_t kFuse = 0x65735546;
    constexpr std::uint32_t kNtfs3 = 0x7366746E;
    constexpr std::uint32_t kCifs = 0xFF534D42;
    constexpr std::uint32_t kSmb2 = 0xFE534D42;
    struct statfs volume {};
    if (::fstatfs(folder.handle(), &volume) != 0)
        return Kind::Other;
    switch (static_cast<std::uint32_t>(volume.f_type)) {
        case kFuse:
            return Kind::Fuse;
        case kNtfs3:
            return Kind::Ntfs3;
        case kCifs:
        case kSmb2:
            return Kind::Share;
        default:
            return Kind::Other;
    }
}

std::uint32_t littleEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

struct Answer {
    std::optional<std::uint32_t> bits;
    bool volumeHasNone = false;  // no file of the volume has the attribute
};

// The value of an extended attribute of `name` in `folder`; a link is not followed. As the system's calls, -1 sets
// `errno`.
ssize_t readAttribute(const Directory& folder, const std::string& name, const char* attribute, std::span<char> value) {
    // Since Linux 6.13, at twice the speed; the C library has no name for it yet, and a sandbox may not know it.
    constexpr long kGetXattrAt = 464;
    struct {
        std::uint64_t value;
        std::uint32_t size;
        std::uint32_t flags;
    } arguments = {reinterpret_cast<std::uintptr_t>(value.data()), static_cast<std::uint32_t>(value.size()), 0};
    const long length = ::syscall(kGetXattrAt, folder.handle(), name.c_str(), AT_SYMLINK_NOFOLLOW, attribute,
                                  &arguments, sizeof arguments);
    if (length >= 0 || (errno != ENOSYS && errno != EPERM))
        return length;
    const std::string path = fmt::format("/proc/self/fd/{}/{}", folder.handle(), name);
    return ::lgetxattr(path.c_str(), attribute, value.data(), value.size());
}

Answer readFrom(const AttributeSource& source, const Directory& folder, const std::string& name) {
    std::array<char, 256> buffer;
    const auto length = readAttribute(folder, name, source.name, buffer);
    if (length <= 0)
        return {std::nullopt, length < 0 && errno == EOPNOTSUPP};
    const std::string_view value(buffer.data(), static_cast<std::size_t>(length));
    if (source.form == Form::Samba)
        return {parseSambaAttributes(value)};
    if (value.size() < 4)
        return {};
    return {source.form == Form::BigEndian ? bigEndian(value) : littleEndian(value)};
}

std::uint32_t madeAttributes(std::string_view name, const EntryInfo& info) {
    std::uint32_t bits = kAttributeArchive;
    if ((info.mode & 0222U) == 0)
        bits |= kAttributeReadOnly;
    if (!name.empty() && name.front() == '.')
        bits |= kAttributeHidden;
    if (info.compressed)
        bits |= kAttributeCompressed;
    if (info.encrypted)
        bits |= kAttributeEncrypted;
    return bits;
}

}  // namespace

std::optional<std::uint32_t> parseSambaAttributes(std::string_view value) {
    if (value.substr(0, 2) == "0x") {
        std::uint32_t bits = 0;
        const auto parsed = std::from_chars(value.data() + 2, value.data() + value.size(), bits, 16);
        if (parsed.ec != std::errc())
            return std::nullopt;
        return bits;
    }
    // Packed: empty text, version twice, which fields are valid (bit 0: the bits), then the bits.
    constexpr std::size_t validAt = 8;
    constexpr std::size_t bitsAt = 12;
    if (value.size() < bitsAt + 4 || value[0] != 0 || (littleEndian(value.substr(validAt)) & 1U) == 0)
        return std::nullopt;
    return littleEndian(value.substr(bitsAt));
}

AttributeReader::Volume& AttributeReader::volumeOf(const Directory& folder, std::uint64_t device) {
    if (last_ < volumes_.size() && volumes_[last_].device == device)
        return volumes_[last_];
    const auto known =
        std::find_if(volumes_.begin(), volumes_.end(), [device](const Volume& v) { return v.device == device; });
    last_ = static_cast<std::size_t>(known - volumes_.begin());
    if (known == volumes_.end()) {
        const Kind kind = kindOf(folder);
        Sources sources = 0;
        for (std::size_t i = 0; i < kSources.size(); ++i) sources |= kSources[i].standsOn(kind) ? 1U << i : 0U;
        volumes_.push_back({device, sources});
    }
    return volumes_[last_];
}

std::uint32_t AttributeReader::attributesOf(const Directory& folder, std::string_view name, const EntryInfo& info) {
    Volume& volume = volumeOf(folder, info.device);
    if (volume.sources == 0)
        return madeAttributes(name, info);
    const std::string file(name);
    for (std::size_t i = 0; i < kSources.size(); ++i) {
        const Sources source = 1U << i;
        if ((volume.sources & source) == 0)
            continue;
        const Answer answer = readFrom(kSources[i], folder, file);
        if (answer.bits)
            return *answer.bits;
        if (answer.volumeHasNone)
            volume.sources &= ~source;
    }
    return madeAttributes(name, info);
}

}  // namespace quillon
