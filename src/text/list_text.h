// SPDX-License-Identifier: MIT
#pragma once

// List text: what stands in file lists, UTF-16 code units. Native paths are bytes of any kind; a list row is split at
// commas and line ends and reads ">" as a comma. So a byte that a row cannot carry as itself - a byte that is not valid
// UTF-8, ">", "\" and the control characters 01 to 1F - becomes the lone code unit U+DC00 + byte, which valid UTF-8
// never yields; then "," becomes ">". Every name round-trips, and ordinary names look exactly as anyone expects.
//
//   a,b.txt        -> a>b.txt            caf\xC3\xA9  -> café
//   new\nline.txt  -> new\uDC0Aline.txt  bad\xFF      -> bad\uDCFF

#include <string>
#include <string_view>

namespace quillon {

/// The list form of a native path or of a piece of one.
[[nodiscard]] std::u16string toListText(std::string_view nativePath);

/// Appends the list form of a native path; allocates nothing when `out` has room.
void appendListText(std::u16string& out, std::string_view nativePath);

/// The native bytes of a path in list form: the reverse of `toListText`.
[[nodiscard]] std::string toNative(std::u16string_view listPath);

/// The same into a string that is kept; old contents are replaced.
void toNative(std::u16string_view listPath, std::string& out);

/// A native name folded to lower case, for comparing and for data files whose names are kept in lower case. Bytes that
/// are no text stay as they are.
[[nodiscard]] std::string foldedName(std::string_view nativeName);

/// A path in list form with every ">" turned back into ",". Escaped bytes stay escaped.
[[nodiscard]] std::u16string withCommas(std::u16string_view listPath);

/// What a person reads: native bytes or list text as UTF-8 in which an unprintable or invalid byte shows as U+FFFD, and
/// a character that has no picture or turns the text around it as its number: "invoice<U+202E>fdp.exe".
[[nodiscard]] std::string readable(std::string_view nativePath);
[[nodiscard]] std::string readable(std::u16string_view listPath);

/// True for a character without a picture, and one that turns the text around it.
[[nodiscard]] bool isHidden(char32_t character);

/// The file name's extension: what follows the last "." of the last component, without the dot, in its own case. Both
/// "/" and "\" end a component, so that a list made on another system shows its extensions. No dot: empty.
[[nodiscard]] std::u16string_view extensionOf(std::u16string_view path);

/// All before the last separator; empty without one.
[[nodiscard]] std::u16string_view parentOf(std::u16string_view path);

/// What follows the last separator.
[[nodiscard]] std::u16string_view fileNameOf(std::u16string_view path);

}  // namespace quillon
