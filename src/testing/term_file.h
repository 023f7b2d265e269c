// SPDX-License-Identifier: MIT
#pragma once

// Term files as the editors read and write them, and as the header test holds them. docs/formats/term-file.md.

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/directory.h"
#include "platform/folders.h"
#include "testing/header_term.h"
#include "text/page_text.h"
#include "text/text_map.h"

namespace quillon {

/// One record as it stands in the file.
struct HeaderTerm {
    PageText offset;
    PageText term;
    PageText type;

    friend bool operator==(const HeaderTerm&, const HeaderTerm&) = default;
};

/// The place of an extension's term file: the extension is folded to lower case; a file that stands in the folder under
/// another case is the one meant. BadName when the extension cannot be part of a file name in that folder.
[[nodiscard]] Result<NativePath> termFilePath(const NativePath& databaseFolder, std::string_view extension);

/// The editors' reading: fields 0, 1 and 2 of every line; lines of fewer than two fields are left out, a missing third
/// field is empty.
[[nodiscard]] Result<std::vector<HeaderTerm>> loadTermFile(const NativePath& path);
[[nodiscard]] std::vector<HeaderTerm> parseTermFile(std::string_view bytes);

/// What the editors write: "offset,term,type" a line, CR LF behind each.
[[nodiscard]] std::string termFileBytes(const std::vector<HeaderTerm>& rows);

/// The editors' writing: the whole file. No rows give an empty file, which still marks the extension as known.
[[nodiscard]] Result<void> saveTermFile(const NativePath& path, const std::vector<HeaderTerm>& rows);

/// The term files of one database folder, compiled and kept. Each look-up asks the file system once whether the file is
/// still the same, so that an edit takes effect at the next file tested.
class TermFiles {
public:
    /// How often a term file is looked for: at each test, as somebody may edit it meanwhile, or once for all, where all
    /// files are to be judged by the same rules.
    enum class Looks { AtEachTest, Once };

    /// `onProblem` hears what could not be read of the folder or of a term file: an extension whose terms are out of
    /// reach would otherwise look like one without. Of a name it hears once, of a file that is opened in vain once for
    /// each state of it.
    explicit TermFiles(NativePath databaseFolder, std::function<void(const FileError&)> onProblem = {},
                       Looks looks = Looks::AtEachTest)
        : folder_(std::move(databaseFolder)), onProblem_(std::move(onProblem)), looks_(looks) {}

    /// The terms of an extension, in any case; null when there is no term file for it. A term file that exists and
    /// cannot be read has no terms.
    [[nodiscard]] SharedTerms find(std::u16string_view extension);

    /// Whether there was a term file when the extension was last looked up; an extension that never was is looked up.
    [[nodiscard]] bool mayHave(std::u16string_view extension);

private:
    struct Entry {
        std::string foldedName;  // of the term file: the extension in lower case and ".dat"
        std::string name;        // as it stands in the folder
        bool exists = false;
        bool mayBeStale = true;  // it changed so shortly before it was read that it may have changed again unseen
        FileStamp stamp;
        std::optional<FileStamp> toldAt;
        SharedTerms terms;
    };

    void checkFolder();
    [[nodiscard]] bool refresh(Entry& entry);
    void locate(Entry& entry);
    void tellUnreadable(Entry& entry, const FileError& why);
    void tell(const FileError& why) const;
    void listFolder();
    void tellOnce(const std::string& name, const FileError& why);

    NativePath folder_;
    std::function<void(const FileError&)> onProblem_;
    Looks looks_;
    Directory handle_;  // looking up in a handle is quicker than along a path
    unsigned lookUps_ = 0;
    TextMap<char16_t, Entry> entries_;
    // What the folder held when its time was last seen to change: names by their lower-case form.
    std::unordered_map<std::string, std::string> names_;
    std::optional<FileStamp> listedAt_;
    bool listingMayBeStale_ = true;
    std::set<std::string> toldNames_;  // of what was told once
};

}  // namespace quillon
