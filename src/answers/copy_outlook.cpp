// SPDX-License-Identifier: MIT
#include "answers/copy_outlook.h"

#include <fmt/format.h>

#include "text/numbers.h"

namespace quillon {

Result<CopyOutlook> outlookOf(FileCopies& copies, const NativePath& target, const FileCopies::GoOn& goOn) {
    const TargetVolume volume = targetVolumeOf(target);
    CopyLook look(volume, target);
    CopyOutlook outlook;
    const auto looked = copies.eachFile(
        [&](const EvidenceRow& file, const CopyTask& task) {
            look.add(task, file.size);
            ++outlook.files;
        },
        goOn);
    if (!looked)
        return failure(looked.error());
    outlook.bytes = look.bytes();
    outlook.freeBytes = volume.freeBytes;
    outlook.findings = look.findings();
    return outlook;
}

std::string needText(const CopyOutlook& outlook) {
    std::string text = fmt::format("{} files, {} bytes", grouped(outlook.files), grouped(outlook.bytes));
    if (outlook.freeBytes)
        text +=
            fmt::format("; {} bytes are free on the target", grouped(static_cast<std::int64_t>(*outlook.freeBytes)));
    return text;
}

std::string sumsText(const CopySums& sums) {
    std::string text = fmt::format("{} files copied, {} bytes", grouped(sums.copied), grouped(sums.copiedBytes));
    if (sums.damaged > 0)
        text += fmt::format("; {} of them with gaps", grouped(sums.damaged));
    if (sums.lessAttributes > 0)
        text += fmt::format("; {} without all of their extended attributes", grouped(sums.lessAttributes));
    if (sums.alreadyThere > 0)
        text += fmt::format("; {} were there already", grouped(sums.alreadyThere));
    if (sums.failed > 0)
        text += fmt::format("; {} failed", grouped(sums.failed));
    return text + (sums.stopped ? "; stopped" : "");
}

}  // namespace quillon
