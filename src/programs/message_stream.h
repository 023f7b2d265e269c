// SPDX-License-Identifier: MIT
#pragma once

// The error stream of a command that outlives its reader: what cannot be written is lost and counted, and the next line
// is tried again.

#include <cstdint>
#include <functional>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace quillon {

class MessageStream final : public std::ostream {
public:
    /// Is given whole lines, and what is flushed before a line ends; false when they could not be written.
    using Write = std::function<bool(std::string_view)>;
    explicit MessageStream(Write write) : std::ostream(nullptr), buffer_(std::move(write)) { rdbuf(&buffer_); }

    /// Writes that failed so far.
    [[nodiscard]] std::int32_t lost() const { return buffer_.lost; }

private:
    class Buffer final : public std::streambuf {
    public:
        explicit Buffer(Write write) : write_(std::move(write)) {}
        std::int32_t lost = 0;

    private:
        int_type overflow(int_type letter) override;
        std::streamsize xsputn(const char* text, std::streamsize count) override;
        int sync() override;

        Write write_;
        std::string line_;
    };

    Buffer buffer_;
};

}  // namespace quillon
