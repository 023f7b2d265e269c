// SPDX-License-Identifier: MIT
#include "editors/report_messages_editor.h"

#include "testing/rule_line.h"
#include "text/fields.h"

namespace quillon {

ReportMessagesEditor::ReportMessagesEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept,
                                           ReportMessages& messages)
    : installation_(installation), dialogs_(dialogs), kept_(kept), messages_(messages) {
    for (std::size_t i = 0; i < kMessageCount; ++i) texts[i] = kMessageFields[i].text;
}

void ReportMessagesEditor::load() {
    std::size_t next = 0;
    if (const auto bytes = readRuleFile(fileIn(installation_.paths().localSettings, kErrorsFileName))) {
        for (const auto line : splitLines(*bytes)) {
            auto items = splitFields(line);
            if (items.empty())
                items.emplace_back();  // an empty line is an empty item
            for (const auto item : items) {
                if (next < kMessageCount)
                    texts[next++] = toUtf8(PageText{std::string(item)});
            }
        }
    }
    saver_.loaded(fileBytes());
}

std::string ReportMessagesEditor::fileBytes() const {
    std::string bytes;
    for (const auto& text : texts) bytes += toPage(text).bytes + "\r\n";
    return bytes;
}

Result<void> ReportMessagesEditor::saveShared(const std::string& bytes) {
    const Paths& paths = installation_.paths();
    if (!paths.useSharedDb)
        return {};
    return saver_.save(fileIn(paths.sharedSettings, kErrorsFileName), bytes);
}

bool ReportMessagesEditor::save() {
    const Paths& paths = installation_.paths();
    std::string& common = texts.back();
    if (const auto trimmed = trimRight(common); trimmed.empty() || trimmed.back() != ':')
        common = std::string(trimmed) + ":";
    const std::string bytes = fileBytes();
    failure.clear();
    if (const auto saved = saver_.save(fileIn(paths.localSettings, kErrorsFileName), bytes); !saved) {
        failure = "Not saved : " + saved.error().text;
        return false;
    }
    if (const auto shared = saveShared(bytes); !shared) {
        // As the local file has them. To load it would put the share's old messages over it.
        for (std::size_t i = 0; i < kMessageCount; ++i) messages_.values[i] = toUtf16(toPage(texts[i]));
        failure = "Saved on this computer, not on the share, whose messages come back at the next start : " +
                  shared.error().text;
        return false;
    }
    loadReportMessages(installation_, dialogs_, kept_, messages_);
    return true;
}

}  // namespace quillon
