// SPDX-License-Identifier: MIT
// The Extension Editor's search over its files, and its part in the common headers.
#include <algorithm>

#include "editors/extension_editor.h"
#include "editors/handed_heads.h"
#include "editors/hex_input.h"
#include "editors/term_search.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "testing/rule_line.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/numbers.h"
#include "text/page_text.h"
#include "text/unicode.h"
#include "viewer/categories.h"

namespace quillon {

namespace {

constexpr const char16_t* kPleaseSelectIdentifier = u"(Please Select)";
constexpr std::size_t kIdentifierField = 3;

// The names of the file types in the results of the rows, each once.
std::vector<std::u16string> identifiersOf(const EditorHandover& handover) {
    std::vector<std::u16string> identifiers;
    for (const auto& file : handover.files) {
        const std::u16string_view problem = file.problem;
        const std::u16string piece(trim(problem.substr(problem.rfind(u':') + 1)));
        if (!piece.empty() && std::find(identifiers.begin(), identifiers.end(), piece) == identifiers.end())
            identifiers.push_back(piece);
    }
    return identifiers;
}

}  // namespace

NativePath ExtensionEditor::commonHeadersFile() const {
    const Paths& paths = installation_.paths();
    return fileIn(paths.useSharedDb ? paths.sharedSettings : paths.localSettings, kCommonHeadersFileName);
}

void ExtensionEditor::loadCommonHeaders(const EditorHandover& handover) {
    if (!pathExists(commonHeadersFile()))
        return;
    state.identifiers = {kPleaseSelectIdentifier};
    if (handover.category == kCommonHeaderCategory) {
        for (auto& identifier : identifiersOf(handover)) state.identifiers.push_back(std::move(identifier));
        // The list is a sorted one, its first entry included; capitals sort like small letters.
        std::sort(state.identifiers.begin(), state.identifiers.end(),
                  [](const auto& a, const auto& b) { return lowered(a) < lowered(b); });
        // Kept: shown even when no identifier was found (test TheCommonControlsShowWithoutAnyIdentifier).
        state.commonShown = true;
    }
    state.identifier = 0;
}

std::string ExtensionEditor::addCommonCaption() const {
    const std::string term = hitRow_ < 0 ? std::string() : toUtf8(state.rows[static_cast<std::size_t>(hitRow_)].term);
    return "Add '" + term + "' to common headers list";
}

void ExtensionEditor::popupAddCommon() {
    if (state.currentRow < 0 || hitRow_ < 0)
        return;
    const HeaderTerm& row = state.rows[static_cast<std::size_t>(hitRow_)];
    const auto identifier = dialogs_.input(
        "Enter Identifier",
        "Please enter an Idientifier (e.g. Graphics file, Music File, etc.) for the term " + toUtf8(row.term) +
            "\r\nThe current prefix is \r\n\r\n" + utf16ToUtf8(messages_[Grade::CommonHeader]) + "\r\n",
        "");
    if (!identifier || identifier->empty()) {
        dialogs_.tell("No ID Entered", "Term not added!");
        return;
    }
    const Paths& paths = installation_.paths();
    if (!paths.useSharedDb)
        return;
    const PageText line{row.offset.bytes + "," + row.term.bytes + "," + row.type.bytes + "," +
                        toPage(*identifier).bytes};
    passOver(copies_.change(fileIn(paths.sharedSettings, kCommonHeadersFileName),
                            [&] { return appendRuleLine(paths.sharedSettings, kCommonHeadersFileName, line); }),
             "the design has no answer to a share that is away");
}

void ExtensionEditor::testCommon() {
    clearClipboard_();
    const auto bytes = readRuleFile(commonHeadersFile());
    if (!bytes || state.identifier < 0)
        return;
    const auto wanted = toPage(state.identifiers[static_cast<std::size_t>(state.identifier)]);
    std::vector<std::string_view> fields;
    for (const auto line : splitLines(*bytes)) {
        splitInto(fields, line, ',');
        if (fields.size() > kIdentifierField && fields[kIdentifierField] == wanted.bytes)
            break;
    }
    // Without a match the last line counts.
    if (fields.size() < kIdentifierField)
        return;
    state.position = toUtf8(PageText{std::string(fields[0])});
    state.term = toUtf8(PageText{std::string(fields[1])});
    state.type = fields[2].substr(0, 1) == "T" ? kTextType : kHexType;
    search();
}

bool ExtensionEditor::checkCriteria() {
    if (state.position.empty()) {
        dialogs_.warn("Error",
                      "Please enter a starting position for the search term (0= Anywhere in the first 512 bytes)");
        host_.focus("Text2");
        return false;
    }
    if (state.term.empty()) {
        dialogs_.warn("Error", "Please enter a term to search for");
        host_.focus("Text3");
        return false;
    }
    return true;
}

// False when the search ends here. A term that is no hexadecimal one may become text by the person's word.
bool ExtensionEditor::checkHexCriteria() {
    state.term = withoutBlanksInCapitals(state.term);
    const HexFault fault = findHexFault(state.term);
    if (fault == HexFault::None)
        return true;
    host_.showState();
    if (fault == HexFault::OddLength) {
        dialogs_.warn("Error", "Hex terms must be in pairs (e.g. 01 02 03 or 010203). ");
        return false;
    }
    if (!dialogs_.ask("Hex Error",
                      "Invalid HEX characters in string. Hex must only contain numbers 0-9 and Letter A-F. "
                      "Did you want to perform a text based search?",
                      BoxStyle::Warning))
        return false;
    state.type = kTextType;
    return true;
}

void ExtensionEditor::search() {
    clearClipboard_();
    if (!checkCriteria())
        return;
    state.framesEnabled = false;
    state.busyPointer = true;
    state.updating = false;
    host_.showState();
    const bool valid = state.type != kHexType || checkHexCriteria();
    if (valid) {
        repairPosition();
        searchFiles();
    }
    state.framesEnabled = true;
    state.busyPointer = false;
    host_.showState();
    // A control can take the keyboard only now that its frame is on.
    if (!valid)
        host_.focus("Text3");
}

void ExtensionEditor::repairPosition() {
    const auto bytes = readWholeFile(installation_.appFolder() / kCurrentFileName);
    if (!bytes)
        return;
    HeaderBytes head;
    head.fill(' ');
    std::copy_n(bytes->begin(), std::min(bytes->size(), head.size()), head.begin());
    const CandidateTerm candidate{state.position, state.term, state.type == kHexType};
    if (const auto repaired = repairedPosition(candidate, head))
        state.position = std::to_string(*repaired);
}

void ExtensionEditor::searchFiles() {
    HandedHeads heads(keptHead_);
    const auto counts = searchTerm({state.position, state.term, state.type == kHexType}, state.files, heads);
    if (!counts)
        return;
    host_.showState();
    if (counts->good < 1) {
        dialogs_.warn("Term not found", "Search term not found");
        return;
    }
    const std::string text = "Search results :\r\n\r\nGood files : " + plainNumber(counts->good) +
                             "\r\nBad files : " + plainNumber(counts->bad) + "\r\n\r\n Do you want to add the term ?";
    if (!dialogs_.ask("Add term", text))
        return;
    addOrUpdate();
    showFile();
}

}  // namespace quillon
