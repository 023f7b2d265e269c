// SPDX-License-Identifier: MIT
#pragma once

// Writes a long text in pieces of some size. For the sources of this folder only.

#include <string>
#include <string_view>

#include "platform/file.h"

namespace quillon {

class PieceWriter {
public:
    explicit PieceWriter(File file) : file_(std::move(file)) {}

    [[nodiscard]] Result<void> put(std::string_view text) {
        waiting_ += text;
        return waiting_.size() < kPieceBytes ? Result<void>() : flush();
    }
    /// Everything is on the medium then.
    [[nodiscard]] Result<void> finish() {
        return flush().and_then([this] { return file_.sync(); }).and_then([this] { return file_.close(); });
    }

private:
    static constexpr std::size_t kPieceBytes = std::size_t{1} << 16U;

    [[nodiscard]] Result<void> flush() {
        auto written = file_.write(std::string_view(waiting_));
        waiting_.clear();
        return written;
    }

    File file_;
    std::string waiting_;
};

}  // namespace quillon
