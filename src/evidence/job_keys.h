// SPDX-License-Identifier: MIT
#pragma once

// Keys of the table `job`. What each holds, with its unit: docs/formats/evidence.md.

namespace quillon::job_keys {

inline constexpr const char* kId = "id";
inline constexpr const char* kSource = "source";
inline constexpr const char* kSourceBytes = "source_bytes";
inline constexpr const char* kFileSystem = "file_system";
inline constexpr const char* kVolume = "volume";
inline constexpr const char* kStarted = "started";
inline constexpr const char* kEnded = "ended";
inline constexpr const char* kEnd = "end";
inline constexpr const char* kVersion = "version";
inline constexpr const char* kHost = "host";
inline constexpr const char* kUser = "user";
inline constexpr const char* kOptions = "options";
inline constexpr const char* kCounters = "counters";
inline constexpr const char* kQuality = "quality";
inline constexpr const char* kRules = "rules";
inline constexpr const char* kListBytes = "list_bytes";
inline constexpr const char* kListModified = "list_modified";
inline constexpr const char* kListDigest = "list_digest";
inline constexpr const char* kSectors = "sectors";
inline constexpr const char* kDoubtsCounted = "doubts_counted";
inline constexpr const char* kSectorsCounted = "sectors_counted";

// Of a part of a job.
inline constexpr const char* kPart = "part";
inline constexpr const char* kParts = "parts";
inline constexpr const char* kPartOf = "part_of";
inline constexpr const char* kToken = "token";
inline constexpr const char* kSkipList = "skip_list";
inline constexpr const char* kDates = "dates";

// Of several jobs that were made one.
inline constexpr const char* kMerged = "merged";

// Values of kEnd.
inline constexpr const char* kRunning = "running";
inline constexpr const char* kComplete = "complete";
inline constexpr const char* kStopped = "stopped";

// Values of kSectors.
inline constexpr const char* kByMap = "map";
inline constexpr const char* kByScan = "scan";
inline constexpr const char* kByScanInPart = "scan in part";
inline constexpr const char* kByCopy = "copy";

}  // namespace quillon::job_keys
