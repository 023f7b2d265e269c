// SPDX-License-Identifier: MIT
#pragma once

// File attribute bits of a walked file: the real ones where the file system has them, otherwise bits made from what
// every file system says.

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/directory.h"

namespace quillon {

inline constexpr std::uint32_t kAttributeReadOnly = 1;
inline constexpr std::uint32_t kAttributeHidden = 2;
inline constexpr std::uint32_t kAttributeArchive = 32;
inline constexpr std::uint32_t kAttributeCompressed = 2048;
inline constexpr std::uint32_t kAttributeEncrypted = 16384;

/// Reads attributes for one walk. Each file is asked for its own real bits, as a volume that a server writes to may
/// have them for some files only; a volume that says it keeps no such attributes is not asked again.
class AttributeReader {
public:
    /// The bits of `name` in `folder`. Real bits come from the extended attributes of NTFS, of CIFS mounts and of
    /// volumes that a Samba server writes; elsewhere 32, plus 1 if nobody may write the file, plus 2 for a name that
    /// begins with a dot, plus 2048 if compressed and 16384 if encrypted.
    [[nodiscard]] std::uint32_t attributesOf(const Directory& folder, std::string_view name, const EntryInfo& info);

private:
    /// One bit for each extended attribute that may hold the bits of a volume's files.
    using Sources = std::uint32_t;
    struct Volume {
        std::uint64_t device;
        Sources sources;
    };
    [[nodiscard]] Volume& volumeOf(const Directory& folder, std::uint64_t device);

    std::vector<Volume> volumes_;
    std::size_t last_ = 0;  // the volume of the last file
};

/// The bits in the value of Samba's extended attribute: a text "0x20" or the packed record that newer servers write.
/// No value when it holds none. Exposed for its test.
[[nodiscard]] std::optional<std::uint32_t> parseSambaAttributes(std::string_view value);

}  // namespace quillon
