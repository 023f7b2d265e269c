// SPDX-License-Identifier: MIT
#include "answers/right_names.h"

#include <algorithm>
#include <set>
#include <utility>

#include "app/installation.h"
#include "testing/common_list.h"
#include "testing/term_file.h"
#include "testing/term_index.h"
#include "text/unicode.h"

namespace quillon {

namespace {

constexpr std::string_view kNamed = "as of ";

// Of the one extension that the evidence names; empty where it names several, or a format in words.
std::string namedIn(const EvidenceRow& file) {
    if (file.reason != Reason::OtherFormat || !file.detail.starts_with(kNamed))
        return {};
    const std::string extension = file.detail.substr(kNamed.size());
    return extension.find_first_of(" ,/") == extension.npos ? extension : "";
}

// Good files are what their extension says, and of bad ones most reasons say that they are nothing.
bool mayBeProvenByHead(const EvidenceRow& file) {
    if (file.extension.empty() || file.reason == Reason::OtherFormat || file.grade == Grade::CommonHeader)
        return true;
    return !file.reason && (file.grade == Grade::Corrupt || file.grade == Grade::Unknown);
}

// "Word document (docx)": word, document, docx.
std::set<std::u16string> wordsOf(std::u16string_view text) {
    std::set<std::u16string> words;
    std::u16string word;
    for (const char16_t letter : lowered(std::u16string(text)) + u" ") {
        if ((letter >= u'a' && letter <= u'z') || (letter >= u'0' && letter <= u'9'))
            word += letter;
        else if (!word.empty())
            words.insert(std::exchange(word, {}));
    }
    return words;
}

}  // namespace

struct RightNames::Rules {
    explicit Rules(const NativePath& database) : index(TermIndex::ofFolder(database)), terms(database) {
        passOver(common.load(database.parent_path() / "Settings" / kCommonHeadersFileName),
                 "without them a head proves less");
    }

    // The one extension among the words of the first common header that fits, by whose own terms the head is good.
    [[nodiscard]] std::string commonOne(const HeaderBytes& folded) {
        const auto fits = [&folded](const auto& record) { return record.match(folded) == MatchResult::Yes; };
        for (const CommonRecord& record : common.records()) {
            if (!record.description || !fits(record.term))
                continue;
            std::set<std::string> proven;
            for (const auto& word : wordsOf(*record.description)) {
                const SharedTerms own = terms.find(word);
                if (own != nullptr && std::ranges::any_of(*own, fits))
                    proven.insert(utf16ToUtf8(word));
            }
            return proven.size() == 1 ? *proven.begin() : "";
        }
        return {};
    }

    TermIndex index;
    TermFiles terms;
    CommonList common;
};

RightNames::RightNames(NativePath database) : database_(std::move(database)) {
}
RightNames::RightNames(RightNames&& other) noexcept = default;
RightNames::~RightNames() = default;

std::string RightNames::extensionOf(const EvidenceRow& file, const std::string& path) {
    std::string extension = namedIn(file);
    if (extension.empty() && mayBeProvenByHead(file))
        extension = byHead(path);
    return extension == file.extension ? "" : extension;
}

// A file that cannot be opened keeps its name.
std::string RightNames::byHead(const std::string& path) {
    HeaderBytes head;
    head.fill(' ');
    const auto read = files_.readHead(path, head);
    if (!read || *read == 0)
        return {};
    if (!rules_)
        rules_ = std::make_unique<Rules>(database_);
    foldHeader(head);
    const auto match = rules_->index.find(head);
    return match.extensions.size() == 1 ? match.extensions.front() : rules_->commonOne(head);
}

}  // namespace quillon
