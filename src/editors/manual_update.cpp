// SPDX-License-Identifier: MIT
#include "editors/manual_update.h"

#include <algorithm>

#include "editors/hex_input.h"
#include "platform/folders.h"
#include "platform/source_files.h"
#include "platform/whole_file.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

NativePath ManualUpdate::termFileIn(const NativePath& folder) const {
    if (folder.empty())
        return {};
    return termFilePath(folder, extension_).value_or(NativePath{});
}

void ManualUpdate::setExtension(std::string_view text) {
    extension_ = text;
    rows_.clear();
    current_ = -1;
    const Paths& paths = installation_.paths();
    const bool shared = paths.useSharedDb && pathExists(paths.sharedDatabase);
    const NativePath file = termFileIn(shared ? paths.sharedDatabase : paths.localDatabase);
    if (!file.empty())
        rows_ = loadTermFile(file).value_or(std::vector<HeaderTerm>{});
    std::vector<NativePath> copies{termFileIn(paths.localDatabase)};
    if (paths.useSharedDb)
        copies.push_back(termFileIn(paths.sharedDatabase));
    copies_.loaded(termFileBytes(rows_), copies);
}

bool ManualUpdate::acceptsSample(const NativePath& path) {
    if (fileSize(path).value_or(0) < kHeaderBytes) {
        dialogs_.warn("File too small", "File needs to be at least 512 bytes");
        return false;
    }
    if (path.native().find('.') == std::string::npos) {
        dialogs_.warn("No Extension", "File does not have any extension");
        return false;
    }
    return true;
}

ManualUpdate::Opened ManualUpdate::openSample() {
    const auto chosen = dialogs_.pickFiles({"open a file to view headers", "All Files(*.*)|*.*", "/", {}, false});
    if (chosen.empty() || !pathExists(chosen.front()) || !acceptsSample(chosen.front()))
        return Opened::Nothing;
    // The person chose the file, so a link to it is as good; what it leads to is opened as any file of a source.
    const auto real = resolvedPath(chosen.front());
    HeaderBytes head;
    if (!real || !SourceFiles().readHead(real->native(), head))
        return Opened::Failed;
    sample_.assign(head.begin(), head.end());
    passOver(saveWholeFile(installation_.appFolder() / kSampleDumpName, sample_),
             "the dump is for other programs; the bytes are shown from memory");
    const std::string& whole = chosen.front().native();
    setExtension(whole.substr(whole.rfind('.') + 1));
    return Opened::Shown;
}

void ManualUpdate::chooseType(bool hexadecimal) {
    fields.hexadecimal = hexadecimal;
    if (hexadecimal)
        fields.term = withoutBlanksInCapitals(fields.term);
}

bool ManualUpdate::checkFields(Focus& focus) {
    const auto refuse = [this, &focus](Focus where, const char* text) {
        dialogs_.warn("Error", text);
        focus = where;
        return false;
    };
    if (extension_.empty())
        return refuse(Focus::Extension, "Please enter a Extension type.");
    if (fields.position.empty())
        return refuse(Focus::Position, "Please enter a start position for the term.");
    if (fields.term.empty())
        return refuse(Focus::Term, "Please enter a search term.");
    focus = Focus::Term;
    return !fields.hexadecimal || acceptHexTerm(fields.term, dialogs_);
}

// True when no row holds the term or the person wants it all the same. The position and the type do not count.
bool ManualUpdate::confirmEqualTerm() {
    const PageText term = lowered(toPage(fields.term));
    const auto equal =
        std::find_if(rows_.begin(), rows_.end(), [&term](const HeaderTerm& row) { return lowered(row.term) == term; });
    if (equal == rows_.end())
        return true;
    current_ = static_cast<int>(equal - rows_.begin());
    return dialogs_.ask("Term Exists", "A similar term exists for this extension. Do you still want to add this term?",
                        BoxStyle::Warning);
}

ManualUpdate::Focus ManualUpdate::addOrUpdate() {
    Focus focus = Focus::Stays;
    if (!checkFields(focus))
        return focus;
    int target = updating_ ? current_ : -1;
    if (!confirmEqualTerm())
        return Focus::Stays;
    if (target < 0) {
        target = static_cast<int>(rows_.size());
        rows_.emplace_back();
    }
    rows_[static_cast<std::size_t>(target)] = {toPage(fields.position), toPage(fields.term),
                                               PageText{fields.hexadecimal ? "H" : "T"}};
    return Focus::Stays;
}

void ManualUpdate::clear() {
    fields = {};
    updating_ = false;
}

void ManualUpdate::selectRow(int row) {
    if (row < 0 || row >= static_cast<int>(rows_.size()))
        return;
    const HeaderTerm& term = rows_[static_cast<std::size_t>(row)];
    current_ = row;
    updating_ = true;
    fields = {toUtf8(term.offset), toUtf8(term.term), term.type.bytes != "T"};
}

PageText ManualUpdate::currentTerm() const {
    return current_ < 0 ? PageText{} : rows_[static_cast<std::size_t>(current_)].term;
}

std::string ManualUpdate::deleteCaption() const {
    return "Delete the term '" + toUtf8(currentTerm()) + "'";
}

std::string ManualUpdate::commonHeaderCaption() const {
    return "Add '" + toUtf8(currentTerm()) + "' to common headers";
}

void ManualUpdate::moveAway(const NativePath& folder) {
    copies_.moveAway(termFileIn(folder));
}

bool ManualUpdate::confirmDeleteAll() {
    if (!dialogs_.ask("Delete entry", "Are you sure you want to delete all terms for " + readable(extension_) + " ?"))
        return false;
    const Paths& paths = installation_.paths();
    if (paths.useSharedDb)
        moveAway(paths.sharedDatabase);
    moveAway(paths.localDatabase);
    return true;
}

void ManualUpdate::deleteTerms() {
    if (deleteAllTerms && !confirmDeleteAll())
        return;
    saveTo({installation_.paths().localDatabase});
    if (current_ < 0 ||
        !dialogs_.ask("Delete entry", "Are you sure you want to delete the term " + toUtf8(currentTerm()) + " ?"))
        return;
    rows_.erase(rows_.begin() + current_);
    current_ = -1;
}

void ManualUpdate::saveTo(const std::vector<NativePath>& folders) {
    std::vector<NativePath> files;
    for (const auto& folder : folders) {
        if (pathExists(folder))
            files.push_back(termFileIn(folder));
    }
    std::string bytes = termFileBytes(rows_);
    passOver(copies_.save(files, bytes), "a copy that fails does not hold back the other");
    if (bytes != termFileBytes(rows_))
        current_ = -1;
    rows_ = parseTermFile(bytes);
}

bool ManualUpdate::save() {
    const Paths& paths = installation_.paths();
    if (paths.useSharedDb)
        saveTo({paths.sharedDatabase, paths.localDatabase});
    else
        saveTo({paths.localDatabase});
    return !copies_.isLeft();
}

bool ManualUpdate::saveToClose() {
    return save() || copies_.askToCloseUnsaved();
}

}  // namespace quillon
