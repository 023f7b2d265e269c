// SPDX-License-Identifier: MIT
#pragma once

// What a person sets up before a job: job ID, source, target, switches, recipient, separator. The rules behind the
// controls of the main window, without the window: it hands each change in and shows the state that comes out.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "app/installation.h"
#include "app/preferences.h"
#include "app/surroundings.h"
#include "job/job_state.h"
#include "job/own_options.h"
#include "messaging/recipient_box.h"
#include "platform/copy_file.h"

namespace quillon {

/// The separator box keeps one character that is not forbidden: "ab" -> "a", "?" -> "".
[[nodiscard]] std::string cleanSeparator(std::string_view text);

/// A file's name without folders and without everything from the first "." on: "/x/1234.old.csv" -> "1234".
[[nodiscard]] std::string listNameOf(const NativePath& file);

/// True for an entry of a target folder that counts as existing content. Entries whose name starts with "." and the
/// system's own "recycler" and "system volume information", in any case, do not.
[[nodiscard]] bool countsAsContent(std::string_view entryName);

/// Whether jobs leave evidence, and whether the heads of the files are in it; yes unless told.
inline constexpr Preference<bool> kKeepsEvidence{"evidence.keep"};
inline constexpr Preference<bool> kKeepsHeads{"evidence.heads"};

/// Where the keyboard goes after a picker.
enum class FocusAfter { Stays, JobId };

class JobSetup {
public:
    /// All must outlive this.
    JobSetup(Installation& installation, const Surroundings& surroundings, JobState& state)
        : installation_(installation), surroundings_(surroundings), state_(state) {}

    RecipientBox recipients;      ///< holds "Query" once the settings were applied
    std::string separator = "-";  ///< of the separator box; empty when the person emptied it
    bool sourceEnabled = false;   ///< CommandButton1
    bool targetEnabled = false;   ///< Command1
    bool useDefaults = false;     ///< chkDefaults

    /// The person or the program changed the job ID. What is kept stands in the options.
    void jobIdChanged(std::string_view text);
    void separatorChanged(std::string_view text) { separator = cleanSeparator(text); }

    /// Asks for the source. Kept: the last row of the log goes first, whatever it says, so that choosing twice leaves
    /// one "Source : " row (test ChoosingASourceTwiceLeavesOneRow).
    FocusAfter pickSource();
    /// The same with a folder that was dropped on the window instead of the question.
    FocusAfter dropSource(const NativePath& folder);
    void pickTarget();
    /// Takes a folder as the target, behind a question when it holds something already. False: No.
    [[nodiscard]] bool takeTarget(const NativePath& folder);

    /// Puts the settings into the recipient box and the three switches.
    /// Kept: a stored recipient that the box holds already selects the second item, whichever matched (test
    /// AKnownRecipientSelectsTheSecondItem).
    void applySettingDefaults();
    /// The separator of the settings, "-" when they hold none.
    void loadSeparator();
    /// Applies what a person has chosen of the switches of our own.
    void loadOwnOptions();
    /// A person's choice of one of these; stored for the next start.
    void ownOptionTicked(const OwnOption& option, bool ticked);
    /// The grades that are copied, empty for all.
    void copiedGradesChosen(std::vector<Grade> grades);
    /// Stores choices; where that fails they last until the program ends, which the status line tells.
    void store(const std::function<void(Preferences&)>& choices);

    /// Applies the settings to everything here; the counters are reset as at the start of a job.
    void loadSettings();

    void copyTicked(bool ticked);
    void defaultsTicked(bool ticked);
    /// Kept: without sharing a tick puts the box back to what the settings say, so that settings without a skip list
    /// never let it be ticked (test ATickedSkipListGoesBackToTheSettings).
    void skipListTicked(bool ticked);

    /// The menu entry: asks for a separator and saves it with the settings.
    void askSeparator();
    /// Asks for an existing list. No value when the person cancelled. Otherwise its name is the job ID, cleaned as if
    /// it were typed, and the list has been copied under that ID into the list folder if that had none; the counts are
    /// up to the caller.
    [[nodiscard]] std::optional<std::string> openExisting();
    /// Behind the count: when no list could be opened, the status line tells why.
    void tellUnopened();

    /// Asks whether to clear the log, if it has rows; true when it is empty now.
    bool askClearLog();

    /// The path of the list of this name, empty when there can be none.
    [[nodiscard]] NativePath listPath(const std::string& name) const;

private:
    void forgetLastSource();
    void fetchEvidence(const NativePath& from, const NativePath& to, const CopyProgress& turning);
    FocusAfter takeSource(const std::optional<NativePath>& folder);
    void log(std::string text, std::optional<std::uint32_t> colour = std::nullopt);
    void tellCutFolders();
    void checkSkip();
    [[nodiscard]] bool confirmOverwrite();
    void fetchList(const NativePath& from, const NativePath& to);
    void keepSeparator(const std::string& answer, const std::string& before);

    Installation& installation_;
    const Surroundings& surroundings_;
    JobState& state_;
    std::string unopened_;  // why there is no list
};

}  // namespace quillon
