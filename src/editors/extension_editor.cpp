// SPDX-License-Identifier: MIT
// Files, terms and the edits of the grid. The search and the common headers stand in extension_editor_search.cpp.
#include "editors/extension_editor.h"

#include <algorithm>

#include "editors/hex_input.h"
#include "platform/folders.h"
#include "platform/source_files.h"
#include "testing/suggest/term_words.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "text/page_text.h"

namespace quillon {

namespace {

// The length of a listed file; 0 for one that is gone. A path beyond the system's limit is asked through its folder.
std::uint64_t lengthOf(const std::string& path) {
    if (const auto size = fileSize(NativePath(path)))
        return *size;
    return SourceFiles().open(path).and_then([](const File& file) { return file.size(); }).value_or(0);
}

// The first bytes of a file, at most 512; no value when it cannot be opened.
std::optional<std::string> firstBytes(const std::string& path) {
    auto file = SourceFiles().open(path);
    if (!file)
        return std::nullopt;
    HeaderBytes bytes;
    const auto count = file->read(std::as_writable_bytes(std::span(bytes)));
    return std::string(bytes.data(), count.value_or(0));
}

// A record is one line: what was pasted with it is left out.
std::string firstLine(const std::string& typed) {
    return typed.substr(0, typed.find_first_of("\r\n"));
}

}  // namespace

void ExtensionEditor::load(const EditorHandover& handover) {
    state = ExtensionEditorState{};
    hitRow_ = -1;
    state.extension = handover.extension;
    copies_.ofJob(handover.job);
    keptHead_ = handover.keptHead;
    loadFiles(handover);
    if (!state.files.empty())
        chooseFile(0);
    loadTerms();
    applyMoveRule();
    loadCommonHeaders(handover);
}

void ExtensionEditor::loadFiles(const EditorHandover& handover) {
    for (const auto& file : handover.files) {
        // A damaged list may have characters of value 0, which no path has.
        std::u16string path = file.path;
        std::erase(path, u'\0');
        if (lengthOf(toNative(path)) != 0 || (keptHead_ && keptHead_(path)))
            state.files.push_back(std::move(path));
    }
}

NativePath ExtensionEditor::termFileIn(const NativePath& folder) const {
    if (folder.empty())
        return {};
    return termFilePath(folder, toNative(state.extension)).value_or(NativePath{});
}

void ExtensionEditor::loadTerms() {
    const NativePath file = termFileIn(installation_.paths().localDatabase);
    if (!file.empty())
        state.rows = loadTermFile(file).value_or(std::vector<HeaderTerm>{});
    copies_.loaded(termFileBytes(state.rows), copies());
}

void ExtensionEditor::chooseFile(int file) {
    if (file < 0 || file >= static_cast<int>(state.files.size()))
        return;
    state.currentFile = file;
    showFile();
}

// A file that is gone or cannot be opened changes nothing: the view keeps what it showed.
void ExtensionEditor::showFile() {
    if (state.currentFile < 0)
        return;
    const std::u16string& path = state.files[static_cast<std::size_t>(state.currentFile)];
    auto bytes = firstBytes(toNative(path));
    const auto kept = bytes || !keptHead_ ? std::nullopt : keptHead_(path);
    if (kept)
        bytes = kept->given();
    if (!bytes)
        return;
    passOver(File::create(installation_.appFolder() / kCurrentFileName).and_then([&](File file) {
        return file.write(*bytes).and_then([&] { return file.close(); });
    }),
             "the bytes in view are those in memory");
    state.head = std::move(*bytes);
    state.position.clear();
    state.viewing = "Viewing file " + plainNumber(state.currentFile + 1) + " of " +
                    plainNumber(static_cast<std::int64_t>(state.files.size())) +
                    (kept ? " (kept head, source not read)" : "");
}

void ExtensionEditor::nextFile() {
    if (state.currentFile + 1 < static_cast<int>(state.files.size())) {
        ++state.currentFile;
    } else {
        host_.beep();
        state.currentFile = state.files.empty() ? -1 : 0;
    }
    state.position.clear();
    showFile();
}

void ExtensionEditor::previousFile() {
    state.currentFile = (state.currentFile > 0 ? state.currentFile : static_cast<int>(state.files.size())) - 1;
    state.position.clear();
    showFile();
}

void ExtensionEditor::positionChanged(const std::string& position) {
    state.position = firstLine(position);
}

void ExtensionEditor::termChanged(const std::string& term) {
    state.term = firstLine(term);
    if (state.term.find(',') == std::string::npos)
        return;
    dialogs_.tell("No Commas!",
                  "You are not allowed to use commas in searches as these are used internally by the program. "
                  "If you need a term using a comma, use a HEX based search for '2C'.");
    std::erase(state.term, ',');
}

void ExtensionEditor::selectRow(int row) {
    if (row < 0 || row >= static_cast<int>(state.rows.size()))
        return;
    const HeaderTerm& term = state.rows[static_cast<std::size_t>(row)];
    state.currentRow = row;
    state.term = toUtf8(term.term);
    state.position = toUtf8(term.offset);
    state.type = term.type.bytes == "T" ? kTextType : kHexType;
    state.updating = true;
    state.upEnabled = row > 0;
    state.downEnabled = row + 1 < static_cast<int>(state.rows.size());
}

void ExtensionEditor::applyMoveRule() {
    state.upEnabled = state.downEnabled = state.rows.size() > 1;
}

void ExtensionEditor::addOrUpdate() {
    clearClipboard_();
    if (state.type == kHexType && !acceptHexTerm(state.term, dialogs_)) {
        host_.focus("Text3");
        return;
    }
    const bool replace = state.updating && state.currentRow >= 0;
    if (!replace)
        state.rows.emplace_back();
    const std::size_t target = replace ? static_cast<std::size_t>(state.currentRow) : state.rows.size() - 1;
    state.rows[target] = {toPage(state.position), toPage(state.term), PageText{state.type == kHexType ? "H" : "T"}};
    applyMoveRule();
}

void ExtensionEditor::clear() {
    clearClipboard_();
    state.position.clear();
    state.term.clear();
    state.updating = false;
    chooseFile(0);
}

void ExtensionEditor::fill(const char* position, const char* term, int type) {
    clearClipboard_();
    state.position = position;
    state.term = term;
    state.type = type;
}

void ExtensionEditor::takeSuggestion(const TermSuggestion& suggestion) {
    fill(std::to_string(suggestion.position).c_str(), suggestion.term.c_str(),
         suggestion.type == 'T' ? kTextType : kHexType);
}

void ExtensionEditor::takeBytes(int first, std::string_view bytes) {
    if (bytes.empty())
        return;
    const TermWords words = termWords(bytes);
    fill(std::to_string(first + 1).c_str(), words.term.c_str(), words.type == 'T' ? kTextType : kHexType);
}

void ExtensionEditor::moveUp() {
    if (state.currentRow > 0)
        moveRow(state.currentRow, state.currentRow - 1);
}

void ExtensionEditor::moveDown() {
    if (state.currentRow >= 0 && state.currentRow + 1 < static_cast<int>(state.rows.size()))
        moveRow(state.currentRow, state.currentRow + 1);
}

void ExtensionEditor::moveRow(int from, int to) {
    std::swap(state.rows[static_cast<std::size_t>(from)], state.rows[static_cast<std::size_t>(to)]);
    selectRow(to);
}

std::string ExtensionEditor::extensionText() const {
    return readable(std::u16string_view(state.extension));
}

void ExtensionEditor::removeRow(int row) {
    state.rows.erase(state.rows.begin() + row);
    state.currentRow = hitRow_ = -1;
}

void ExtensionEditor::deleteRow() {
    clearClipboard_();
    if (state.currentRow < 0 || !dialogs_.ask("Delete entry", "Delete entry for " + extensionText() + " ?"))
        return;
    removeRow(state.currentRow);
    afterDeletion();
}

void ExtensionEditor::deleteAllRows() {
    clearClipboard_();
    if (!dialogs_.ask("delete all?", "This will delete all terms for the extension " + extensionText() +
                                         ", are you sure you want to do this ?")) {
        state.deleteAllTicked = false;
        return;
    }
    state.rows.clear();
    state.currentRow = hitRow_ = -1;
    afterDeletion();
}

// Kept: the last term takes the shared file away and leaves the local one (test
// TheLastRowDeletedTakesTheSharedFileAwayAndLeavesTheLocalOne).
void ExtensionEditor::afterDeletion() {
    const Paths& paths = installation_.paths();
    if (state.rows.empty() && paths.useSharedDb)
        copies_.moveAway(termFileIn(paths.sharedDatabase));
    applyMoveRule();
}

void ExtensionEditor::hitRow(int row) {
    if (row < 0 || row >= static_cast<int>(state.rows.size()))
        return;
    hitRow_ = row;
    selectRow(row);
}

void ExtensionEditor::popupDelete() {
    if (hitRow_ < 0)
        return;
    const std::string term = toUtf8(state.rows[static_cast<std::size_t>(hitRow_)].term);
    if (dialogs_.ask("Delete entry?", "Delete the entry " + term + " ?"))
        removeRow(hitRow_);
}

std::vector<NativePath> ExtensionEditor::copies() const {
    const Paths& paths = installation_.paths();
    std::vector<NativePath> files{termFileIn(paths.localDatabase)};
    if (paths.useSharedDb)
        files.push_back(termFileIn(paths.sharedDatabase));
    return files;
}

bool ExtensionEditor::save() {
    if (state.rows.empty())
        return copies_.moveAwayWhatWasLeft();
    std::string bytes = termFileBytes(state.rows);
    passOver(copies_.save(copies(), bytes), "each copy is written by itself, and no failure is told");
    state.rows = parseTermFile(bytes);
    return !copies_.isLeft();
}

bool ExtensionEditor::saveToClose() {
    return save() || copies_.askToCloseUnsaved();
}

}  // namespace quillon
