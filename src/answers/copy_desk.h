// SPDX-License-Identifier: MIT
#pragma once

// The screen "Copy Files" without its window: what is chosen for a copy of a finished job's files, what the look at the
// target has found, how far the copy is and what came of it.

#include <atomic>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "answers/copies_handover.h"
#include "answers/copy_outlook.h"
#include "app/installation.h"
#include "app/preferences.h"
#include "app/screen_host.h"
#include "app/surroundings.h"

namespace quillon {

/// Where files were copied to last.
inline constexpr Preference<NativePath> kLastCopyTarget{"copy.target"};

enum class CopyStage {
    Choosing,
    Looking,  ///< at all files and the target
    Asking,   ///< something will not go well: go on or not
    Copying,
    Ended
};

/// What the screen shows. Texts are UTF-8.
struct CopyDeskState {
    std::string what;  ///< "Job 1234: below photos · .jpg"; not the grades
    std::optional<NativePath> target;
    std::vector<Grade> grades;  ///< empty for all
    bool byGrade = false;
    bool rightNames = false;
    bool verify = false;
    bool salvage = false;
    bool failedOnly = false;

    CopyStage stage = CopyStage::Choosing;
    std::string status;                                         ///< what is needed, how far it is, what came of it
    bool trouble = false;                                       ///< the status tells of a failure
    std::int64_t done = 0;                                      ///< files
    std::int64_t files = 0;                                     ///< that are asked for, as the look counted them
    std::vector<std::string> findings;                          ///< of the look
    std::vector<std::pair<std::string, std::string>> failures;  ///< files and why; the first kMostFailures
    int contents = 0;  ///< another number whenever findings or failures are others; added failures leave it alone
};

class CopyDesk {
public:
    /// So many failures have rows; all are counted, and the evidence names each.
    static constexpr std::size_t kMostFailures = 10'000;

    /// All must outlive this.
    CopyDesk(const Installation& installation, const Surroundings& surroundings, ScreenHost& host,
             CopiesHandover handover);

    CopyDeskState state;

    void pickTarget();
    /// "Copy": looks first, and copies at once where nothing was found. Asks for a target where there is none.
    void copy();
    /// Copies in spite of the findings.
    void goOn();
    /// Copies nothing.
    void cancel();
    /// The copy ends with the files in work. A look is given up, and nothing is copied.
    void stop() { stopAsked_ = true; }

    [[nodiscard]] bool isBusy() const { return state.stage == CopyStage::Looking || state.stage == CopyStage::Copying; }

private:
    struct Relay;
    [[nodiscard]] CopyOrder order() const;
    [[nodiscard]] Result<CopyOutlook> look();
    [[nodiscard]] Result<void> run(Relay& relay);
    void runBesideLoop();
    void takeNews(Relay& relay);
    void enter(CopyStage stage, std::string status);
    void fail(const FileError& why);

    const Installation& installation_;
    const Surroundings& surroundings_;
    ScreenHost& host_;
    CopiesHandover handover_;
    JobFiles job_;
    CopyOrder order_;
    std::optional<FileCopies> copies_;  // refers to job and order
    std::atomic<bool> stopAsked_ = false;
};

}  // namespace quillon
