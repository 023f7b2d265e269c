// SPDX-License-Identifier: MIT
#pragma once

// File lists: one row per file of a job, comma-separated list text. Lists are streams: they are never held in memory.
// docs/formats/file-list.md.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// How a list's bytes are text. The program writes Utf16.
enum class ListEncoding {
    Utf16,          ///< UTF-16 little-endian without a byte-order mark
    Utf16WithMark,  ///< the same behind a byte-order mark
    Page,           ///< the 8-bit page
};

/// Columns of a row, counted from 0.
inline constexpr std::size_t kPathColumn = 0;
inline constexpr std::size_t kResultColumn = 4;
inline constexpr std::size_t kTestedColumns = 5;

class ListReader {
public:
    /// Opens a list and finds its encoding from its content.
    [[nodiscard]] static Result<ListReader> open(const NativePath& path);

    /// The next line without its end (LF, or CR LF), good until the next call; no value at the end of the list or when
    /// it cannot be read further. The last line needs no end. A line longer than a million characters comes in pieces.
    [[nodiscard]] std::optional<std::u16string_view> next();

    /// Why reading ended before the end of the list, if it did.
    [[nodiscard]] const std::optional<FileError>& error() const { return error_; }
    [[nodiscard]] ListEncoding encoding() const { return encoding_; }

private:
    explicit ListReader(File file) : file_(std::move(file)) {}
    void detectEncoding();
    bool fill();
    void decode(std::size_t bytes);

    File file_;
    ListEncoding encoding_ = ListEncoding::Utf16;
    std::vector<char> raw_;
    std::size_t rawKept_ = 0;  // bytes of raw_ that were read and not decoded yet
    std::u16string text_;
    std::size_t at_ = 0;
    bool ended_ = false;
    std::optional<FileError> error_;
};

class ListWriter {
public:
    /// Creates the list anew, empty; for Utf16WithMark it begins with the mark.
    [[nodiscard]] static Result<ListWriter> create(const NativePath& path, ListEncoding encoding = ListEncoding::Utf16);

    /// Appends a row, whose line end is part of `row`, with one write. A row that cannot be written whole is taken
    /// back, so that the rows before and after it stay readable; as long as that fails, no further row is written.
    [[nodiscard]] Result<void> write(std::u16string_view row);

    [[nodiscard]] Result<void> close() { return file_.close(); }

private:
    ListWriter(File file, ListEncoding encoding) : file_(std::move(file)), encoding_(encoding) {}

    File file_;
    ListEncoding encoding_;
    std::uint64_t length_ = 0;
    bool torn_ = false;  // a part of a failed row could not be taken back yet
};

}  // namespace quillon
