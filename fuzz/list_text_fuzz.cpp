// SPDX-License-Identifier: MIT
// Any bytes as a native name and as list text: names come back, rows are never split, shown texts are UTF-8.
#include <algorithm>

#include "input.h"
#include "text/list_text.h"
#include "text/page_text.h"
#include "text/unicode.h"

namespace {

using namespace quillon;

bool isUtf8WithoutControls(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto character = nextUtf8(text, i);
        if (!character || *character < 0x20)
            return false;
    }
    return true;
}

void tryName(const std::string& name) {
    const std::u16string list = toListText(name);
    fuzz::require(toNative(list) == name, "a name comes back");
    const bool splits =
        std::any_of(list.begin(), list.end(), [](char16_t c) { return c == u',' || c == u'\\' || c < 0x20; });
    fuzz::require(!splits, "a name does not split its row");
    fuzz::require(isUtf8WithoutControls(readable(std::string_view(name))), "a shown name is plain UTF-8");
}

void tryList(const std::u16string& list) {
    const std::string name = toNative(list);
    fuzz::require(toNative(toListText(name)) == name, "what a list names comes back");
    fuzz::require(isUtf8WithoutControls(readable(std::u16string_view(list))), "a shown path is plain UTF-8");
    const auto file = fileNameOf(list);
    const auto parent = parentOf(list);
    fuzz::require(parent.empty() ? file.size() <= list.size() : parent.size() + 1 + file.size() == list.size(),
                  "folder and name are the path");
    fuzz::require(file.size() >= extensionOf(list).size(), "the extension is a part of the name");
    fuzz::require(toUtf16(toPage(list)).size() <= list.size(), "page text has one byte for a character");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = quillon::fuzz::bytesOf(data, size);
    std::string name = bytes;
    name.erase(std::remove(name.begin(), name.end(), '\0'), name.end());
    tryName(name);
    tryList(quillon::fuzz::unitsOf(bytes));
    return 0;
}
