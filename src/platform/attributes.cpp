// SPDX-License-Identifier: MIT
#include "platform/attributes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include <sys/xattr.h>

#include <fmt/format.h>

namespace quillon {

namespace {

enum class Form { BigEndian, LittleEndian, Samba };

struct AttributeSource {
    const char* name;
    Form form;
};

constexpr std::array<AttributeSource, 4> kSources = {{
    {"system.ntfs_attrib_be", Form::BigEndian},   // ntfs-3g
    {"system.ntfs_attrib", Form::LittleEndian},   // ntfs3
    {"user.cifs.dosattrib", Form::LittleEndian},  // a mounted share
    {"user.DOSATTRIB", Form::Samba},              // a volume that a Samba server writes
}};

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

std::optional<std::uint32_t> readFrom(const AttributeSource& source, const Directory& folder, std::string_view name) {
    const std::string path = fmt::format("/proc/self/fd/{}/{}", folder.handle(), name);
    std::array<char, 256> buffer;
    const auto length = ::lgetxattr(path.c_str(), source.name, buffer.data(), buffer.size());
    if (length <= 0)
        return std::nullopt;
    const std::string_view value(buffer.data(), static_cast<std::size_t>(length));
    if (source.form == Form::Samba)
        return parseSambaAttributes(value);
    if (value.size() < 4)
        return std::nullopt;
    return source.form == Form::BigEndian ? bigEndian(value) : littleEndian(value);
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

int AttributeReader::sourceOf(const Directory& folder, std::string_view name, std::uint64_t device) {
    if (known_ && device == lastDevice_)
        return lastSource_;
    auto volume =
        std::find_if(volumes_.begin(), volumes_.end(), [device](const Volume& v) { return v.device == device; });
    if (volume == volumes_.end()) {
        int source = -1;
        for (std::size_t i = 0; i < kSources.size() && source < 0; ++i) {
            if (readFrom(kSources[i], folder, name))
                source = static_cast<int>(i);
        }
        volume = volumes_.insert(volumes_.end(), Volume{device, source});
    }
    known_ = true;
    lastDevice_ = device;
    lastSource_ = volume->source;
    return lastSource_;
}

std::uint32_t AttributeReader::attributesOf(const Directory& folder, std::string_view name, const EntryInfo& info) {
    const int source = sourceOf(folder, name, info.device);
    if (source >= 0) {
        if (const auto bits = readFrom(kSources[static_cast<std::size_t>(source)], folder, name))
            return *bits;
    }
    return madeAttributes(name, info);
}

}  // namespace quillon
