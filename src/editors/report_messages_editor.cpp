// SPDX-License-Identifier: MIT
#include "editors/report_messages_editor.h"

#include <algorithm>

#include "app/history_dialogs.h"
#include "testing/messages_for.h"
#include "testing/rule_line.h"
#include "text/fields.h"

namespace quillon {

namespace {

// An item ends at a comma, too; an empty line is an empty item.
Records itemsOf(std::string_view bytes) {
    Records items;
    for (const auto line : splitLines(bytes)) {
        if (line.empty())
            items.emplace_back();
        for (const auto item : splitFields(line)) items.emplace_back(item);
    }
    items.resize(std::min(items.size(), kMessageCount));
    return items;
}

// A line is a message, as jobs read them.
Records messageLines(std::string_view bytes) {
    Records lines = lineRecords(bytes);
    lines.resize(std::min(lines.size(), kMessageCount));
    return lines;
}

const ListForm kForm{"Report Messages", messageLines, lineBytes, mergePlaces};

}  // namespace

ReportMessagesEditor::ReportMessagesEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept,
                                           ReportMessages& messages)
    : installation_(installation),
      dialogs_(dialogs),
      kept_(kept),
      messages_(messages),
      copies_(installation, dialogs, kept, kForm) {
    for (std::size_t i = 0; i < kMessageCount; ++i) texts[i] = kMessageFields[i].text;
}

std::vector<NativePath> ReportMessagesEditor::copies() const {
    const Paths& paths = installation_.paths();
    std::vector<NativePath> files{fileIn(paths.localSettings, kErrorsFileName)};
    if (paths.useSharedDb)
        files.push_back(fileIn(paths.sharedSettings, kErrorsFileName));
    return files;
}

void ReportMessagesEditor::show(const Records& messages) {
    for (std::size_t i = 0; i < messages.size(); ++i) texts[i] = toUtf8(PageText{messages[i]});
}

void ReportMessagesEditor::load() {
    if (const auto bytes = readRuleFile(fileIn(installation_.paths().localSettings, kErrorsFileName)))
        show(itemsOf(*bytes));
    copies_.loaded(fileBytes(), copies());
}

std::string ReportMessagesEditor::fileBytes() const {
    std::string bytes;
    for (const auto& text : texts) bytes += toPage(text).bytes + "\r\n";
    return bytes;
}

bool ReportMessagesEditor::save() {
    std::string& common = texts.back();
    if (const auto trimmed = trimRight(common); trimmed.empty() || trimmed.back() != ':')
        common = std::string(trimmed) + ":";
    const std::string typed = fileBytes();
    std::string bytes = typed;
    failure.clear();
    const auto saved = copies_.save(copies(), bytes, OnFailure::End);
    if (bytes != typed)
        show(messageLines(bytes));
    if (!saved.front()) {
        failure = "Not saved : " + saved.front().error().text;
        return false;
    }
    if (!saved.back()) {
        // As the local file has them. To load it would put the share's old messages over it.
        for (std::size_t i = 0; i < kMessageCount; ++i) messages_.values[i] = toUtf16(toPage(texts[i]));
        failure = "Saved on this computer, not on the share, whose messages come back at the next start : " +
                  saved.back().error().text;
        return false;
    }
    warnOfLostNote(dialogs_, loadMessagesFor(changeBy(kForm.screen), installation_, dialogs_, kept_, messages_));
    return true;
}

}  // namespace quillon
