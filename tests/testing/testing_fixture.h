// SPDX-License-Identifier: MIT
#pragma once

// A header test over a database in a temporary folder. The heads of the tested files come from memory, so that every
// access to a tested file shows.

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "support/temp_folder.h"
#include "testing/header_check.h"

namespace quillon::test {

/// Heads of files by path; a path that is not here cannot be opened.
class MemoryHeads final : public HeadReader {
public:
    Result<std::size_t> readHead(std::string_view nativePath, HeaderBytes& head) override {
        asked.emplace_back(nativePath);
        const auto found = files.find(std::string(nativePath));
        if (found == files.end())
            return failure(ErrorKind::PermissionDenied, "Permission denied");
        head.fill(' ');
        const std::string& bytes = found->second;
        const std::size_t count = std::min(bytes.size(), head.size());
        std::copy_n(bytes.begin(), count, head.begin());
        return count;
    }

    std::map<std::string, std::string> files;
    std::vector<std::string> asked;
};

/// A counter that a test raises: that of a grade, or the one of tested files.
using RaisedCount = std::optional<Grade>;
inline constexpr RaisedCount kTested;

/// Keeps what a test logs.
class RecordingHost final : public HeaderCheckHost {
public:
    bool useCommonHeaders() override { return common; }
    void logAccessError(const std::string& text) override { logged.push_back(text); }

    bool common = false;
    std::map<RaisedCount, int> counts;
    std::vector<std::string> logged;
};

class HeaderFixture : public testing::Test {
protected:
    HeaderFixture()
        : termFiles(folder / "Database"),
          messages(ReportMessages::fallback()),
          test(termFiles, messages, commonList, host) {
        std::filesystem::create_directory(folder / "Database");
    }

    void termFile(const std::string& name, std::string_view bytes) { folder.write("Database/" + name + ".dat", bytes); }

    void commonHeaders(const std::vector<std::string_view>& lines) {
        host.common = true;
        commonList.assign(lines);
    }

    /// The grade of a row as the walk writes it.
    std::u16string gradeRow(std::u16string_view row, std::u16string_view extension) {
        const auto result = test.checkFile(ListRow(row), extension, heads);
        if (!result) {
            lastError = result.error();
            return u"<failure>";
        }
        if (result->grade)
            ++host.counts[*result->grade];
        if (result->head != nullptr)
            ++host.counts[kTested];
        return std::u16string(result->text);
    }

    /// The grade of a file of 600 bytes that begins with `head`.
    std::u16string grade(const std::string& head, std::u16string_view extension = u"abc") {
        heads.files["/s/f"] = head;
        return gradeRow(u"/s/f,15/11/2026, 600, 32;Ab9x", extension);
    }

    /// True when exactly these counters were raised, each once, since the last call.
    testing::AssertionResult raised(std::initializer_list<RaisedCount> expected) {
        std::map<RaisedCount, int> wanted;
        for (const auto count : expected) ++wanted[count];
        const bool same = wanted == host.counts;
        auto answer = same ? testing::AssertionSuccess() : testing::AssertionFailure();
        for (const auto& [count, number] : host.counts)
            answer << " " << (count ? kGrades[*count].name : "tested") << "=" << number;
        host.counts.clear();
        return answer;
    }

    TempFolder folder;
    TermFiles termFiles;
    ReportMessages messages;
    CommonList commonList;
    MemoryHeads heads;
    RecordingHost host;
    HeaderCheck test;
    FileError lastError;
};

}  // namespace quillon::test
