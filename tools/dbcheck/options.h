// SPDX-License-Identifier: MIT
#pragma once

// The options of `dbcheck`.

#include <iosfwd>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/file.h"

namespace quillon {

struct DbcheckOptions {
    NativePath database;                ///< the folder that holds `Database` and `Settings`
    std::optional<NativePath> samples;  ///< a folder with "index.tsv"
    bool table = false;                 ///< print the table of extensions and nothing else
    bool pairs = false;                 ///< name the extensions of false accepts
    bool doubts = false;                ///< judge the second opinion by the samples and nothing else
    std::size_t minExtensions = 1;
    double minGood = 0;  ///< in percent, as all below
    double maxFalseAccepts = 100;
    double minRejected = 0;        ///< of the mislabelled samples
    double minNamed = 0;           ///< of the rejected ones
    bool suggest = false;          ///< judge suggested terms by the samples and nothing else
    double minSuggested = 0;       ///< accepted by the first term, in percent
    double minSuggestedThree = 0;  ///< accepted by one of the first three
    double maxSuggestedFalse = 100;
    double maxDoubted = 100;  ///< of the samples with their true size
    bool damage = false;      ///< damage the good samples, and count those that are still taken for recovered
    std::vector<std::pair<std::string, double>> maxRecovered;  ///< by the name of a damage
    std::optional<NativePath> ends;                            ///< a folder of whole files, to judge file ends by
    std::optional<NativePath> odd;                             ///< a list of samples that are truly cut or odd
};

/// Options, or the exit status of a command that has nothing more to do.
struct ParsedDbcheck {
    std::optional<DbcheckOptions> options;
    int exitStatus = 0;
};

/// Help goes to `out`; wrong usage is one line on `err`, and status 2.
[[nodiscard]] ParsedDbcheck parseDbcheck(const std::vector<std::string>& arguments, std::ostream& out,
                                         std::ostream& err);

}  // namespace quillon
