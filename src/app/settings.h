// SPDX-License-Identifier: MIT
#pragma once

// The settings of an installation: one binary record of 3091 bytes. The format is described in
// docs/formats/settings-record.md.

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/page_text.h"

namespace quillon {

inline constexpr std::size_t kSettingsBytes = 3091;
inline constexpr std::size_t kSettingsTextBytes = 512;
inline constexpr std::int32_t kDefaultAlertSourcePort = 12020;
inline constexpr std::int32_t kDefaultAlertListenPort = 12021;

/// A text field of the record: exactly N bytes, filled up with blanks; a field that was never assigned holds zero
/// bytes.
template <std::size_t N>
class FixedText {
public:
    /// The text without the zero bytes and without the blanks on the right.
    [[nodiscard]] PageText trimmed() const {
        std::string text(bytes_.data(), N);
        text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
        text.erase(text.find_last_not_of(' ') + 1);
        return PageText{std::move(text)};
    }
    /// Takes the first N bytes of the text and fills up with blanks.
    void assign(const PageText& text) {
        bytes_.fill(' ');
        text.bytes.copy(bytes_.data(), N);
    }
    [[nodiscard]] std::string_view raw() const { return {bytes_.data(), N}; }
    void setRaw(std::string_view bytes) { std::copy_n(bytes.begin(), N, bytes_.begin()); }

    friend bool operator==(const FixedText&, const FixedText&) = default;

private:
    std::array<char, N> bytes_{};
};

/// The record in memory, field by field in file order. Flags are 1 for yes.
struct AppSettings {
    std::int16_t runHeaderTest = 0;
    std::int16_t useSkipList = 0;
    FixedText<kSettingsTextBytes> localPath;       ///< local data root and file list folder
    FixedText<kSettingsTextBytes> zipPath;         ///< archive folder
    FixedText<kSettingsTextBytes> alertRecipient;  ///< computer for automatic alerts, or "Query"
    FixedText<kSettingsTextBytes> zipRecipient;    ///< computer for "file zipped" notifications, or "Query"
    FixedText<kSettingsTextBytes> reservedText;    ///< written back as it was loaded
    std::int16_t useCommonHeaders = 0;
    std::int16_t useSharedDb = 0;
    FixedText<kSettingsTextBytes> sharedPath;  ///< root of the shared database
    std::int32_t alertSourcePort = 0;          ///< 0 stored means 12020
    std::int32_t alertListenPort = 0;          ///< 0 stored means 12021
    FixedText<1> fileListSeparator;            ///< zero byte or blank means "-"
    std::int16_t reservedNumber = 0;

    friend bool operator==(const AppSettings&, const AppSettings&) = default;
};

/// The 3091 bytes of the record.
[[nodiscard]] std::string encodeSettings(const AppSettings& settings);

/// Reads a record. Bytes that a short file lacks are zero; bytes behind the record are ignored.
[[nodiscard]] AppSettings decodeSettings(std::string_view bytes);

}  // namespace quillon
