// SPDX-License-Identifier: MIT
#pragma once

// Files of a job by their paths, in little room: each folder and extension is held once, and a file takes some 60 bytes
// and its name. For the sources of this folder only.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "answers/job_answers.h"
#include "text/text_map.h"

namespace quillon {

/// Texts by number, each held once. Quick for the text that was asked for last.
class TextNumbers {
public:
    TextNumbers() = default;
    TextNumbers(const TextNumbers&) = delete;
    TextNumbers& operator=(const TextNumbers&) = delete;

    [[nodiscard]] std::uint32_t add(std::string_view text);
    [[nodiscard]] std::optional<std::uint32_t> find(std::string_view text) const;
    [[nodiscard]] const std::string& text(std::uint32_t number) const { return *texts_[number]; }

private:
    TextMap<char, std::uint32_t> numbers_;
    std::vector<const std::string*> texts_;  // the keys
    mutable std::uint32_t last_ = 0;
};

class FileTable {
public:
    struct File {
        std::int64_t id = 0;
        std::int64_t size = 0;
        std::size_t nameAt = 0;
        std::uint32_t nameBytes = 0;
        std::uint32_t folder = 0;
        std::uint32_t extension = 0;
        std::optional<Grade> grade = {};
    };

    /// Adds the file under this folder, in place of one with the same path. Gives its number, from 0.
    std::size_t put(std::string_view folder, const BriefFile& file);
    [[nodiscard]] std::optional<std::size_t> find(std::string_view folder, std::string_view name) const;
    void clear();

    [[nodiscard]] std::size_t size() const { return files_.size(); }
    [[nodiscard]] const File& operator[](std::size_t number) const { return files_[number]; }
    [[nodiscard]] std::string_view name(std::size_t number) const;
    [[nodiscard]] const std::string& extension(std::size_t number) const;
    [[nodiscard]] std::string path(std::size_t number) const;

private:
    [[nodiscard]] std::size_t slotFor(std::uint32_t folder, std::string_view name) const;
    void grow();

    TextNumbers folders_;
    TextNumbers extensions_;
    std::string names_;
    std::vector<File> files_;
    std::vector<std::size_t> slots_;  // a number plus 1, or 0; a power of two of them, half of them empty
};

}  // namespace quillon
