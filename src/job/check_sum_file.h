// SPDX-License-Identifier: MIT
#pragma once

// A list of check sums that grows with copies and takes its place when they have ended. What an older list of the name
// tells of other files stays in it. docs/formats/manifest.md.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/sha256.h"
#include "platform/whole_file.h"
#include "text/check_sum_line.h"

namespace quillon {

/// Reads a list of check sums line by line.
class CheckSumReader {
public:
    /// NotFound: there is none.
    [[nodiscard]] static Result<CheckSumReader> open(const NativePath& path);

    /// The next check sum; none at the end. Lines that are none are passed over.
    [[nodiscard]] Result<std::optional<CheckSum>> next();
    /// Goes to the next line, whatever it is; false at the end.
    [[nodiscard]] Result<bool> nextLine();
    /// Without its end; holds until the next one.
    [[nodiscard]] std::string_view line() const { return line_; }
    /// Lines that were neither a check sum nor a remark nor empty.
    [[nodiscard]] std::int64_t unread() const { return unread_; }
    [[nodiscard]] Result<std::uint64_t> bytes() const { return file_.size(); }

private:
    explicit CheckSumReader(File file) : file_(std::move(file)) {}

    File file_;
    std::string text_;
    std::size_t at_ = 0;
    std::string line_;
    std::int64_t unread_ = 0;
};

class CheckSumFile {
public:
    /// `paths`: where it is to stand, each with the same bytes. Those of an older list at the first of them that
    /// another copy does not replace stay.
    [[nodiscard]] static Result<CheckSumFile> begin(std::vector<NativePath> paths);

    /// A file, by its name below the folder of the list (bytes).
    [[nodiscard]] Result<void> add(std::string_view name, const Sha256Digest& digest);
    /// A remark, which readers of check sums pass over; one line of text.
    [[nodiscard]] Result<void> remark(std::string_view text);
    /// What an older list says of this file no longer holds.
    void drop(std::string_view name);
    /// True when this list, and none before it, tells of the file.
    [[nodiscard]] bool isNamed(std::string_view name) const;

    /// Gives the lists their names; one without a line is not made, and an older one of the name goes.
    [[nodiscard]] Result<void> finish();

private:
    struct Place {
        NativePath path;
        Replacement replacement;
        File file;
    };
    explicit CheckSumFile(std::vector<Place> places) : places_(std::move(places)) {}

    [[nodiscard]] Result<void> put(std::string_view line);
    [[nodiscard]] Result<void> flush();
    [[nodiscard]] Result<void> keepOthers();

    std::vector<Place> places_;
    std::string buffer_;
    bool any_ = false;
    std::unordered_set<std::uint64_t> named_;  // digests of names
};

}  // namespace quillon
