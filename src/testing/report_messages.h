// SPDX-License-Identifier: MIT
#pragma once

// The ten report messages. Their texts are the grades: rows of a list hold the text itself. docs/formats/rule-lists.md.

#include <array>
#include <string>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/surroundings.h"

namespace quillon {

/// In the order of "Errors.dat".
enum class Message {
    Good,
    Corrupt,
    NoExtension,
    Unknown,
    Encrypted,
    AccessError,
    TooSmall,
    ZeroBytes,
    InvalidName,
    CommonHeader
};

inline constexpr std::size_t kMessageCount = 10;

/// Texts as they stand in lists.
class ReportMessages {
public:
    /// At first all texts are empty.
    [[nodiscard]] const std::u16string& operator[](Message message) const {
        return texts_[static_cast<std::size_t>(message)];
    }
    [[nodiscard]] std::u16string& operator[](Message message) { return texts_[static_cast<std::size_t>(message)]; }
    [[nodiscard]] const std::array<std::u16string, kMessageCount>& all() const { return texts_; }

    /// The texts for a file that cannot be read or is too short.
    [[nodiscard]] static ReportMessages fallback();

    friend bool operator==(const ReportMessages&, const ReportMessages&) = default;

private:
    std::array<std::u16string, kMessageCount> texts_;
};

/// Loads the messages from the local "Errors.dat". With sharing on the shared file first replaces the local one, or the
/// local one fills the share. Neither there: a box, and `messages` stay as they were. Any failure, also a file of fewer
/// than ten lines, gives all ten fallback texts without a word.
void loadReportMessages(const Installation& installation, Dialogs& dialogs, KeptFiles& kept, ReportMessages& messages);

}  // namespace quillon
