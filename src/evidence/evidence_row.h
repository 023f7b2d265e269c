// SPDX-License-Identifier: MIT
#pragma once

// What the evidence of a job holds of one file. docs/formats/evidence.md.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/source_files.h"
#include "testing/grade.h"
#include "testing/reason.h"

namespace quillon {

/// All names and paths are bytes as the system gave them; texts are UTF-8.
struct EvidenceRow {
    std::int64_t id = 0;                   ///< order of the walk, from 1; 0 for a row that has none yet
    std::optional<std::int64_t> row;       ///< line in the list, from 1
    std::string folder;                    ///< below the source, parts joined by "/"; empty for the source itself
    std::string name;                      ///< bytes
    std::string extension;                 ///< lower case, as text; empty for none
    std::int64_t size = 0;                 ///< bytes
    std::optional<std::int64_t> modified;  ///< nanoseconds since 1970 UTC
    std::int64_t attributes = 0;           ///< bits, as in the list
    std::optional<Grade> grade;            ///< none when the file was not tested
    std::optional<std::string> result;     ///< the list's text, where it is not the message of the grade
    std::optional<Reason> reason;          ///< why it is not good
    std::string detail;                    ///< what the reason tells further
    std::int64_t unread = 0;               ///< bytes of the head that the source did not give
    std::string doubt;                     ///< name of the doubt that a good file raises
    std::string doubtDetail;               ///< what the doubt tells further
    std::optional<std::int64_t> copied;    ///< see the format's page, as for all below
    std::optional<std::int64_t> verified;  ///< 1 or 0
    std::string copyError;                 ///< words
    std::optional<std::int64_t> badBytes;  ///< bytes
    std::string badRanges;                 ///< text
    std::optional<std::int64_t> head;      ///< 128 times the number of its block, plus its place there
    std::string tail;                      ///< what its end showed: `tails`, or the name of a doubt; empty: not asked
    std::string tailDetail;                ///< what such a doubt tells further

    /// Below the source.
    [[nodiscard]] std::string path() const { return folder.empty() ? name : folder + "/" + name; }

    friend bool operator==(const EvidenceRow&, const EvidenceRow&) = default;
};

/// Makes it say nothing, as a new one does, and keeps the room of its texts.
inline void clearRow(EvidenceRow& of) {
    auto& [id, row, folder, name, extension, size, modified, attributes, grade, result, reason, detail, unread, doubt,
           doubtDetail, copied, verified, copyError, badBytes, badRanges, head, tail, tailDetail] = of;
    for (auto* const number : {&id, &size, &attributes, &unread}) *number = 0;
    for (auto* const number : {&row, &modified, &copied, &verified, &badBytes, &head}) number->reset();
    for (auto* const text :
         {&folder, &name, &extension, &detail, &doubt, &doubtDetail, &copyError, &badRanges, &tail, &tailDetail})
        text->clear();
    grade.reset();
    result.reset();
    reason.reset();
}

/// What the end of a file may have shown besides a doubt.
namespace tails {
inline constexpr const char* kWhole = "whole";    ///< the last mark stands where it should
inline constexpr const char* kUnread = "unread";  ///< the source did not give it
}  // namespace tails

/// What became of a file's copy.
struct CopyOutcome {
    bool copied = false;
    std::optional<std::int64_t> verified;  ///< 1 or 0; none when it was not compared
    std::string error;                     ///< words; empty when nothing failed
    std::optional<std::int64_t> badBytes;  ///< what its medium did not give
    std::string badRanges;
};

/// So many heads are kept together.
inline constexpr std::int64_t kHeadsInBlock = 128;

}  // namespace quillon
