// SPDX-License-Identifier: MIT
#pragma once

// File lists: one row per file of a job. Lists are streams: they are never held in memory. docs/formats/file-list.md.
//
// A list is a file of the installation like its settings, and whoever reads one needs no job: so reader and writer
// stand here, below everything that judges, copies or shows what a list names.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/result.h"
#include "text/list_row.h"

namespace quillon {

/// How a list's bytes are text. The program writes Utf16.
enum class ListEncoding {
    Utf16,          ///< UTF-16 little-endian without a byte-order mark
    Utf16WithMark,  ///< the same behind a byte-order mark
    Page,           ///< the 8-bit page
};

class ListReader {
public:
    /// Opens a list. Whoever has written it knows its encoding; without one it is found from the content.
    [[nodiscard]] static Result<ListReader> open(const NativePath& path,
                                                 std::optional<ListEncoding> known = std::nullopt);

    /// Makes `row` the next one. A line ends in LF or CR LF, the last one needs no end; one longer than a million
    /// characters comes in pieces. False at the end of the list or when it cannot be read further: `row` stays.
    [[nodiscard]] bool next(ListRow& row);

    /// Why reading ended before the end of the list, if it did.
    [[nodiscard]] const std::optional<FileError>& error() const { return error_; }
    [[nodiscard]] ListEncoding encoding() const { return encoding_; }

private:
    explicit ListReader(File file) : file_(std::move(file)) {}
    void begin(std::optional<ListEncoding> known);
    bool fill();
    void decode(std::size_t bytes);
    [[nodiscard]] std::optional<std::u16string_view> nextLine();

    File file_;
    ListEncoding encoding_ = ListEncoding::Utf16;
    std::vector<char> raw_;
    std::size_t undecoded_ = 0;  // bytes of raw_ that were read and not decoded yet
    std::u16string text_;
    std::size_t at_ = 0;
    bool ended_ = false;
    std::optional<FileError> error_;
};

class ListWriter {
public:
    /// Creates the list anew, empty; for Utf16WithMark it begins with the mark.
    [[nodiscard]] static Result<ListWriter> create(const NativePath& path, ListEncoding encoding = ListEncoding::Utf16);

    /// Writes into an empty file that is open already.
    [[nodiscard]] static Result<ListWriter> into(File file, ListEncoding encoding);

    /// Appends a row and its line end with one write. A row that cannot be written whole is taken back, so that the
    /// rows before and after it stay readable; as long as that fails, no further row is written.
    [[nodiscard]] Result<void> write(const ListRow& row);

    [[nodiscard]] NativePath path() const { return file_.path(); }

    /// Brings the rows to the medium.
    [[nodiscard]] Result<void> sync() { return file_.sync(); }
    [[nodiscard]] Result<void> close() { return file_.close(); }

private:
    ListWriter(File file, ListEncoding encoding) : file_(std::move(file)), encoding_(encoding) {}

    File file_;
    ListEncoding encoding_;
    std::u16string line_;
    std::uint64_t length_ = 0;
    bool torn_ = false;  // a part of a failed row could not be taken back yet
};

}  // namespace quillon
