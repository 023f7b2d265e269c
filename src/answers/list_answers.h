// SPDX-License-Identifier: MIT
#pragma once

// Answers from a list alone. For the sources of this folder only.

#include <functional>

#include "answers/job_answers.h"
#include "app/file_list.h"

namespace quillon {

class ListAnswers final : public JobAnswers {
public:
    ListAnswers(NativePath list, const ReportMessages& messages);

    [[nodiscard]] bool knowsAll() const override { return false; }
    [[nodiscard]] Result<std::string> source() override { return std::string(); }
    [[nodiscard]] Result<Figures> total() override;
    [[nodiscard]] Result<FiguresBy> byExtension() override;
    [[nodiscard]] Result<FiguresBy> byReason() override { return FiguresBy{}; }
    [[nodiscard]] Result<FiguresBy> byFolder(std::size_t depth) override;
    [[nodiscard]] Result<bool> next(EvidenceRow& file) override;
    void restart() override { reader_.reset(); }
    [[nodiscard]] Result<std::optional<std::uint64_t>> headSign(std::int64_t /*id*/) override { return std::nullopt; }

private:
    [[nodiscard]] Result<void> forEach(const std::function<void(const EvidenceRow&)>& take);
    void read(const ListRow& row, EvidenceRow& file) const;

    NativePath list_;
    ReportMessages messages_;
    std::optional<ListReader> reader_;
    std::int64_t line_ = 0;
    ListRow row_;
};

}  // namespace quillon
