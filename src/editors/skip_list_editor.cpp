// SPDX-License-Identifier: MIT
#include "editors/skip_list_editor.h"

#include <algorithm>

#include "platform/copy_file.h"
#include "platform/folders.h"
#include "testing/rule_line.h"
#include "text/fields.h"
#include "text/list_text.h"

namespace quillon {

namespace {

Records inOrder(Records terms) {
    std::ranges::stable_sort(terms, {}, [](const std::string& term) { return lowered(PageText{term}); });
    return terms;
}

// The order follows from the terms, so to move one is no change.
RecordMerge mergeTerms(const Records& base, const Records& ours, const Records& theirs, MergeChoice choice) {
    auto merged = mergeRecords(inOrder(base), inOrder(ours), inOrder(theirs), choice);
    merged.records = inOrder(std::move(merged.records));
    return merged;
}

const ListForm kForm{"Skip List", lineRecords, lineBytes, mergeTerms};

}  // namespace

SkipListEditor::SkipListEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept)
    : installation_(installation), dialogs_(dialogs), kept_(kept), copies_(installation, dialogs, kept, kForm) {
}

std::vector<NativePath> SkipListEditor::copies() const {
    const Paths& paths = installation_.paths();
    std::vector<NativePath> files{fileIn(paths.localSettings, kSkipListFileName)};
    if (paths.useSharedDb)
        files.push_back(fileIn(paths.sharedSettings, kSkipListFileName));
    return files;
}

NativePath SkipListEditor::listFile() const {
    const Paths& paths = installation_.paths();
    const NativePath shared = fileIn(paths.sharedSettings, kSkipListFileName);
    return paths.useSharedDb && pathExists(shared) ? shared : fileIn(paths.localSettings, kSkipListFileName);
}

std::string SkipListEditor::fileBytes() const {
    std::string bytes;
    for (const auto& term : terms_) bytes += term.bytes + "\r\n";
    return bytes;
}

// A row that is gone cannot be updated.
void SkipListEditor::forgetRow() {
    selected_ = -1;
    updating_ = false;
}

void SkipListEditor::load() {
    terms_.clear();
    forgetRow();
    if (const auto bytes = readRuleFile(listFile())) {
        for (const auto line : splitLines(*bytes)) terms_.push_back(PageText{std::string(line)});
    }
    copies_.loaded(fileBytes(), copies());
}

void SkipListEditor::selectRow(int row) {
    if (row < 0 || row >= static_cast<int>(terms_.size()))
        return;
    selected_ = row;
    updating_ = true;
    entry = toUtf8(terms_[static_cast<std::size_t>(row)]);
}

void SkipListEditor::addOrUpdate() {
    PageText term = lowered(toPage(entry));
    if (updating_) {
        terms_[static_cast<std::size_t>(selected_)] = std::move(term);
    } else {
        const auto isEqual = [&term](const PageText& other) { return lowered(other) == term; };
        if (std::any_of(terms_.begin(), terms_.end(), isEqual)) {
            dialogs_.tell(kProgramTitle, "Term already in skip list. ");
            return;
        }
        terms_.push_back(std::move(term));
    }
    save();
    clear();
}

void SkipListEditor::clear() {
    entry.clear();
    updating_ = false;
}

void SkipListEditor::deleteSelected() {
    if (selected_ < 0)
        return;
    const auto row = terms_.begin() + selected_;
    if (!dialogs_.ask("Delete term?", "Are you sure you want to delete the term \r\n" + toUtf8(*row) + "?"))
        return;
    terms_.erase(row);
    save();
    clear();
}

// The rows are sorted before they are written, so that a term moves to its place when it comes in.
void SkipListEditor::save() {
    std::stable_sort(terms_.begin(), terms_.end(),
                     [](const PageText& a, const PageText& b) { return lowered(a) < lowered(b); });
    forgetRow();
    const auto files = copies();
    std::string bytes = fileBytes();
    const auto saved = copies_.save(files, bytes);
    for (std::size_t i = 0; i < saved.size(); ++i) {
        if (!saved[i] && !copies_.isLeft())
            dialogs_.warn("Error", "Unable to find Skip list path (" + readable(files[i].native()) + ").");
    }
    terms_.clear();
    for (auto& term : lineRecords(bytes)) terms_.push_back(PageText{std::move(term)});
}

bool SkipListEditor::saveToClose() {
    if (copies_.isLeft())
        save();
    return !copies_.isLeft() || copies_.askToCloseUnsaved();
}

bool SkipListEditor::loadFromFile() {
    if (!terms_.empty() &&
        !dialogs_.ask("Overwrite existing skip list",
                      "Importing a skip list will overwrite the existing skip list. Do you want to continue?"))
        return true;
    const auto chosen = dialogs_.pickFiles({"Open Skip List", "All Files(*.*)|*.*", {}, {}, false});
    if (chosen.empty())
        return true;
    const NativePath file = listFile();
    if (file.empty() || !kept_.copyAway(file) ||
        !copies_.change(file, [&] { return copyDataFile(chosen.front(), file); }))
        return false;
    load();
    return true;
}

}  // namespace quillon
