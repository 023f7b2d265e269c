// SPDX-License-Identifier: MIT
#include "answers/job_export.h"

#include <functional>

#include "answers/each_job.h"
#include "answers/piece_writer.h"
#include "answers/xlsx_export.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

using TakeFile = std::function<Result<void>(const EvidenceRow&)>;

Result<void> eachFileOf(const std::vector<JobFiles>& jobs, const FileWish& wish, const TakeFile& take) {
    return eachJob(jobs, [&](JobAnswers& answers) {
        return eachFile(answers,
                        [&](const EvidenceRow& file) { return fits(wish, file) ? take(file) : Result<void>(); });
    });
}

Result<void> writeWorkbook(const std::vector<JobFiles>& jobs, const FileWish& wish, std::size_t depth,
                           const NativePath& target) {
    const auto extensions = figuresBy(jobs, [](JobAnswers& answers) { return answers.byExtension(); });
    const auto folders = figuresBy(jobs, [depth](JobAnswers& answers) { return answers.byFolder(depth); });
    if (!extensions || !folders)
        return failure(extensions ? folders.error() : extensions.error());
    auto workbook = XlsxExport::begin(target);
    if (!workbook)
        return failure(workbook.error());
    return eachFileOf(jobs, wish, [&](const EvidenceRow& file) { return workbook->add(file); })
        .and_then([&] { return workbook->addFigures("Extensions", "extension", *extensions); })
        .and_then([&] { return workbook->addFigures("Folders", "folder", *folders); })
        .and_then([&] { return workbook->finish(); });
}

}  // namespace

Result<void> writeExport(const std::vector<JobFiles>& jobs, const FileWish& wish, const ExportForm& form,
                         const NativePath& target) {
    if (form.format == "xlsx")
        return writeWorkbook(jobs, wish, form.depth, target);
    const bool csv = form.format == "csv";
    auto replacement = Replacement::begin(target);
    if (!replacement)
        return failure(replacement.error());
    PieceWriter writer(replacement->takeFile());
    auto put = csv ? writer.put(csvHead(form.style)) : Result<void>();
    if (put)
        put = eachFileOf(jobs, wish, [&](const EvidenceRow& file) {
            return writer.put(csv ? csvRecord(file, form.style) : jsonLine(file));
        });
    const auto written = put.and_then([&] { return writer.finish(); }).and_then([&] { return replacement->arrive(); });
    return written ? Result<void>() : failure(saveError(target, written.error()));
}

}  // namespace quillon
