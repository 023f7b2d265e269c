// SPDX-License-Identifier: MIT
#pragma once

// The two walks that open a job: the folder test, which proves that every folder below the source can be entered, and
// the walk that writes the raw list.

#include <string>
#include <string_view>
#include <vector>

#include "app/file_list.h"
#include "job/folder_tree.h"
#include "job/job_part.h"
#include "job/pass_context.h"
#include "job/source_wait.h"
#include "platform/attributes.h"
#include "testing/skip_list.h"

namespace quillon {

/// What the evidence says of a folder that the folder test could not enter, and of one that the walk could not read.
inline constexpr const char* kCannotBeEntered = "cannot be entered";
inline constexpr const char* kCannotBeRead = "cannot be read to its end";

/// Visits every folder below `folder`, counts it and logs, in light red, one that cannot be entered. The start folder
/// itself is not counted. A window's Stop is not looked at. A folder that cannot be listed ends only its own level. The
/// part of a job counts and logs its own folders.
void ListFolders(const PassContext& context, const NativePath& folder);

/// Four printable characters that mark the rows of one run, made from the first accepted file's attributes and date. No
/// reader looks at them.
[[nodiscard]] std::u16string listToken(std::uint32_t attributes, std::u16string_view date);

/// Dates of rows: the first ten characters of the general form, kept for files of the same day.
class RowDates {
public:
    explicit RowDates(const DateTexts& texts);
    [[nodiscard]] std::u16string_view of(const FileTime& time);

private:
    struct Day {
        int year = -1;
        int yearDay = -1;
        bool runsIntoTime = false;  // the locale's text of this date is shorter than ten characters
        std::u16string text;
    };
    const DateTexts& texts_;
    std::vector<Day> days_;
    std::u16string scratch_;
};

/// The walk that writes the raw list. One found file is one row, written with one write.
class FolderWalk : private FolderVisitor {
public:
    FolderWalk(const PassContext& context, const SkipList& skipList, ListWriter& rawList);

    /// Walks the source until its end or until Stop. A source that cannot be opened gives no rows.
    void run(const NativePath& source);

private:
    bool cancelled() override { return context_.state.stopRequested; }
    void listing() override { context_.turn(); }
    bool wantsFiles(std::string_view path) const override { return folders_.hold(path); }
    bool files(std::string_view path, FolderFiles& files) override;
    void subfolder(std::string_view path, bool canBeEntered) override;
    void notListed(std::string_view path) override;
    bool awaits(std::string_view path, const Arrives& arrives) override;
    void found(const FoundFile& file);
    [[nodiscard]] bool skipped();
    void describe(const FoundFile& file);

    PassContext context_;
    SourceWait wait_;
    const SkipList& skipList_;
    ListWriter& rawList_;
    OwnFolders folders_;
    RowDates dates_;
    AttributeReader attributes_;
    std::u16string token_;
    bool haveToken_ = false;
    bool undescribed_ = false;  // a file of the folder in work has a name and cannot be described
    std::string refused_;       // the last folder that cannot be entered
    std::string_view folderPath_;
    std::u16string folderText_;  // the same in list form
    ListRow row_;
};

}  // namespace quillon
