// SPDX-License-Identifier: MIT
#pragma once

// The one error idiom: what can fail returns a Result, a value or a FileError.

#include <string>
#include <utility>

#include <tl/expected.hpp>

namespace quillon {

/// The failures that the passes tell apart. Each has the number that screens and handlers know it by.
enum class ErrorKind {
    InvalidArgument,   ///< 5: a position or argument out of its range
    Subscript,         ///< 9: a row with fewer fields than its reader needs
    BadName,           ///< 52: a name that cannot be one
    NotFound,          ///< 53: no such file
    PermissionDenied,  ///< 70: access refused, also by a read-only medium or another program's lock
    PathAccess,        ///< 75: any other failure of a path, a medium or a device
    AddressInUse,      ///< 10048: the port belongs to another program
};

[[nodiscard]] constexpr int errorNumber(ErrorKind kind) {
    switch (kind) {
        case ErrorKind::InvalidArgument:
            return 5;
        case ErrorKind::Subscript:
            return 9;
        case ErrorKind::BadName:
            return 52;
        case ErrorKind::NotFound:
            return 53;
        case ErrorKind::PermissionDenied:
            return 70;
        case ErrorKind::PathAccess:
            return 75;
        case ErrorKind::AddressInUse:
            return 10048;
    }
    return 75;
}

/// Why something failed. `text` is UTF-8 for a person: the system's words, with the path where there is one.
struct FileError {
    ErrorKind kind = ErrorKind::PathAccess;
    std::string text;
    std::string cause = {};  ///< the system's words alone; empty where it is not the system that failed

    [[nodiscard]] int number() const { return errorNumber(kind); }
};

template <typename T>
using Result = tl::expected<T, FileError>;

[[nodiscard]] inline tl::unexpected<FileError> failure(ErrorKind kind, std::string text) {
    return tl::unexpected<FileError>(FileError{kind, std::move(text)});
}
[[nodiscard]] inline tl::unexpected<FileError> failure(FileError error) {
    return tl::unexpected<FileError>(std::move(error));
}

/// Marks a failure, or an answer that may tell of one, that is passed over by design. `why` is for the reader of the
/// call and is not used.
template <typename T>
void passOver(const T& /*answer*/, const char* /*why*/) {
}

}  // namespace quillon
