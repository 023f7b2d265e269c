// SPDX-License-Identifier: MIT
#pragma once

// A job in memory, for what asks jobs.

#include <utility>
#include <vector>

#include "answers/job_answers.h"

namespace quillon::test {

class MemoryAnswers final : public JobAnswers {
public:
    EvidenceRow& add(const std::string& path, Grade grade, std::int64_t size = 1000) {
        EvidenceRow file;
        file.id = static_cast<std::int64_t>(files.size()) + 1;
        const auto slash = path.rfind('/');
        file.folder = slash == path.npos ? "" : path.substr(0, slash);
        file.name = path.substr(slash + 1);
        file.size = size;
        file.grade = grade;
        files.push_back(std::move(file));
        return files.back();
    }

    bool knowsAll() const override { return true; }
    Result<std::string> source() override { return std::string("/source"); }
    Result<Figures> total() override { return Figures{}; }
    Result<FiguresBy> byExtension() override { return FiguresBy{}; }
    Result<FiguresBy> byReason() override { return FiguresBy{}; }
    Result<FiguresBy> byFolder(std::size_t /*depth*/) override { return FiguresBy{}; }
    Result<bool> next(EvidenceRow& file) override {
        if (at == files.size())
            return false;
        file = files[at++];
        return true;
    }
    void restart() override { at = 0; }
    Result<std::optional<std::uint64_t>> headSign(std::int64_t id) override {
        const auto found = heads.find(id);
        return found == heads.end() ? std::nullopt : std::optional<std::uint64_t>(found->second);
    }

    std::vector<EvidenceRow> files;
    std::map<std::int64_t, std::uint64_t> heads;  ///< by id
    std::size_t at = 0;
};

}  // namespace quillon::test
