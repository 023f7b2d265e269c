// SPDX-License-Identifier: MIT
#include "archive/file_mask.h"

#include "platform/folders.h"
#include "text/list_text.h"
#include "text/unicode.h"
#include "text/wildcard.h"

namespace quillon {

namespace {

// The wildcard match knows more signs than a file mask has; in a set each of them stands for itself.
std::u16string escaped(std::u16string_view mask) {
    std::u16string pattern;
    for (const char16_t unit : mask) {
        if (unit == u'[' || unit == u'#')
            pattern.append({u'[', unit, u']'});
        else
            pattern.push_back(unit);
    }
    return pattern;
}

class FileMask {
public:
    explicit FileMask(std::string_view mask)
        : all_(mask == "*.*"), pattern_(WildcardPattern::compile(escaped(lowered(toListText(mask))))) {}

    bool matches(std::string_view name) const {
        return all_ || (pattern_ && pattern_->matches(lowered(toListText(name))));
    }

private:
    bool all_;
    std::optional<WildcardPattern> pattern_;
};

}  // namespace

bool matchesFileMask(std::string_view name, std::string_view mask) {
    return FileMask(mask).matches(name);
}

std::vector<std::string> listByMask(const NativePath& folder, std::string_view mask) {
    std::vector<std::string> found;
    const auto names = listFiles(folder);
    if (!names)
        return found;
    const FileMask fileMask(mask);
    for (const auto& name : *names) {
        if (fileMask.matches(name))
            found.push_back(name);
    }
    return found;
}

}  // namespace quillon
