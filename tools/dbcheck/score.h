// SPDX-License-Identifier: MIT
#pragma once

// How well a database tells samples apart.

#include <map>
#include <string>
#include <vector>

#include "dbcheck/header_database.h"
#include "dbcheck/samples.h"

namespace quillon {

struct ExtensionScore {
    std::size_t samples = 0;                          ///< of this extension, large enough to be tested
    std::size_t good = 0;                             ///< of them, fitting one of its terms
    std::size_t falseAccepts = 0;                     ///< samples of other extensions, outside its families, that fit
    std::map<std::string, std::size_t> acceptedFrom;  ///< those, by their extension
};

struct Score {
    std::map<std::string, ExtensionScore> extensions;  ///< one for each term file
    std::size_t samples = 0;                           ///< of extensions with a term file
    std::size_t good = 0;
    std::vector<std::string> missed;  ///< paths of the samples that no term of their extension fits
    std::size_t tooSmall = 0;         ///< samples that were left out for their size
    std::size_t withoutTermFile = 0;  ///< large enough, of an extension that the database does not know
    std::size_t pairs = 0;            ///< of a sample and a term file of another extension, outside families
    std::size_t falseAccepts = 0;     ///< of them, those that fit
    std::size_t familyAccepts = 0;    ///< pairs within a family that fit

    /// Both in percent; 100 and 0 when nothing was tested.
    [[nodiscard]] double goodPercent() const;
    [[nodiscard]] double falseAcceptPercent() const;
};

[[nodiscard]] Score scoreSamples(const HeaderDatabase& database, const std::vector<Sample>& samples);

/// What becomes of samples whose content is not what their name says.
struct MislabelledScore {
    std::size_t samples = 0;            ///< large enough to be tested
    std::vector<std::string> accepted;  ///< paths of those that were taken for good all the same
    std::size_t named = 0;              ///< of the others, those that a common header gives a name

    /// Both in percent, of all samples and of those not accepted; 100 when there are none.
    [[nodiscard]] double rejectedPercent() const;
    [[nodiscard]] double namedPercent() const;
};

[[nodiscard]] MislabelledScore scoreMislabelled(const HeaderDatabase& database, const std::vector<Sample>& samples);

}  // namespace quillon
