// SPDX-License-Identifier: MIT
#include "testing/report_messages.h"

#include "platform/folders.h"
#include "testing/messages_for.h"
#include "testing/rule_line.h"
#include "testing/shared_copy.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/page_text.h"

namespace quillon {

namespace {

constexpr const char* kNowhere =
    "The report messages list can not be loaded. You will be unable to use this to test files. "
    "Please either copy the file back to the network share or application folders or contact tech support.";

Result<ReportMessages> readMessages(const NativePath& file) {
    const auto bytes = readRuleFile(file);
    if (!bytes)
        return failure(bytes.error());
    const auto lines = splitLines(*bytes);
    if (lines.size() < kMessageCount)
        return failure(ErrorKind::Subscript, readable(file.native()) + ": fewer than ten messages");
    ReportMessages messages = ReportMessages::fallback();
    for (std::size_t i = 0; i < kMessageCount; ++i) messages.values[i] = pageBytesToUtf16(lines[i]);
    return messages;
}

}  // namespace

ReportMessages ReportMessages::fallback() {
    ReportMessages messages;
    for (const GradeRow& row : kGrades.values) messages[row.grade] = row.message;
    return messages;
}

// As the recount of a list.
std::optional<Grade> gradeOfResult(std::u16string_view result, const ReportMessages& messages) {
    for (const Grade grade : kRecountOrder) {
        const std::u16string_view message = messages[grade];
        if (kGrades[grade].recount.value == Recount::Contained ? result.find(trimRight(message)) != result.npos
                                                               : result == message)
            return grade;
    }
    return std::nullopt;
}

Result<ReportMessages> readLocalMessages(const Paths& paths) {
    return readMessages(fileIn(paths.localSettings, kErrorsFileName));
}

LostNote loadMessagesFor(const DatabaseChange& who, const Installation& installation, Dialogs& dialogs, KeptFiles& kept,
                         ReportMessages& messages) {
    const Paths& paths = installation.paths();
    const NativePath local = fileIn(paths.localSettings, kErrorsFileName);
    Result<LostNote> shared;
    if (paths.useSharedDb) {
        const NativePath onShare = fileIn(paths.sharedSettings, kErrorsFileName);
        const bool shareHasIt = pathExists(onShare);
        if (!shareHasIt && !pathExists(local)) {
            dialogs.tell("Error", kNowhere, BoxStyle::Critical);
            return std::nullopt;
        }
        if (shareHasIt)
            shared = copyNoted(onShare, local, kept, paths.localSettings, who);
        // A shared copy that was just taken holds the same bytes already; only a missing one has to be written.
        if (shared && !shareHasIt)
            shared = changeNoted(paths.sharedSettings, onShare, who, [&] { return copyDataFile(local, onShare); });
    }
    auto loaded = shared.and_then([&local](const LostNote&) { return readMessages(local); });
    messages = loaded ? std::move(*loaded) : ReportMessages::fallback();
    return shared ? *shared : std::nullopt;
}

void loadReportMessages(const Installation& installation, Dialogs& dialogs, KeptFiles& kept, ReportMessages& messages) {
    passOver(loadMessagesFor(changeByJob(), installation, dialogs, kept, messages), "a note that is lost stops nobody");
}

}  // namespace quillon
