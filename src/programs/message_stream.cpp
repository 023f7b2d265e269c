// SPDX-License-Identifier: MIT
#include "programs/message_stream.h"

#include <utility>

namespace quillon {

std::streambuf::int_type MessageStream::Buffer::overflow(int_type letter) {
    if (traits_type::eq_int_type(letter, traits_type::eof()))
        return traits_type::not_eof(letter);
    const char one = traits_type::to_char_type(letter);
    xsputn(&one, 1);
    return letter;
}

std::streamsize MessageStream::Buffer::xsputn(const char* text, std::streamsize count) {
    line_.append(text, static_cast<std::size_t>(count));
    if (count > 0 && line_.back() == '\n')
        sync();
    return count;
}

// The stream itself stays good: a reader that has gone is no failure of who speaks.
int MessageStream::Buffer::sync() {
    const std::string text = std::exchange(line_, {});
    if (!text.empty() && !write_(text))
        ++lost;
    return 0;
}

}  // namespace quillon
