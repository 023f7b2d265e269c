// SPDX-License-Identifier: MIT
#pragma once

// The work behind "Zip File Lists": the lists of a finished job go into one archive in the archive folder, and another
// computer can be told. The screen shows `ZipState` and calls the operations; it holds no logic of its own.

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/installation.h"
#include "app/kept_files.h"
#include "app/screen_host.h"
#include "app/surroundings.h"
#include "archive/zip_handover.h"
#include "archive/zip_writer.h"
#include "messaging/network_enum.h"
#include "messaging/recipient_box.h"
#include "platform/start_beside.h"

namespace quillon {

/// Names the archive of a job that has no ID.
inline constexpr const char* kUnnamedJob = "FileList";

/// All that the screen shows. Texts are UTF-8. The screen writes the fields of its plain inputs back before it calls an
/// operation; the fields marked "set by" an operation change only there.
struct ZipState {
    std::vector<NativePath> rows;            ///< iGrid1, column "Files to ZIP": shown by `readable`
    std::optional<std::size_t> selectedRow;  ///< iGrid1, from 0
    std::string jobId;                       ///< Text1
    std::string separator;                   ///< Text2
    std::string password;                    ///< Text3, set by `setPassword`
    bool maskPassword = false;               ///< Check1: Text3 shows "*"
    bool retainLists = false;                ///< Check2
    bool ignoreSeparator = false;            ///< Check3, set by `setIgnoreSeparator`
    bool showCompany = false;                ///< Check4; no output depends on it
    bool showComputer = false;               ///< Check5; no output depends on it
    RecipientBox recipients;                 ///< Combo1, and Command8 "Test"; Command7 "Query Network" is never off
    bool progressVisible = false;            ///< ProgressBar1
    double progress = 0;                     ///< ProgressBar1, 0 to 100
    bool busyPointer = false;                ///< hourglass
    std::string notice;                      ///< what is waited for, and how a run ended; "" for the archive's path
    bool cancelEnabled = false;              ///< the archive is being written
};

class ZipFileLists {
public:
    /// All must outlive this.
    ZipFileLists(Installation& installation, const Surroundings& surroundings, AlertSender& alerts, ScreenHost& host,
                 WarnInLog warnInLog = {});

    ZipState state;

    /// The screen comes up: the grid gets the lists of this job, Combo1 "Query" and the stored recipient.
    ///
    /// Kept: an empty stored recipient, and this computer's own name, are added and chosen like any other (test
    /// AnEmptyRecipientStandsOnASecondItem).
    void load(ZipHandover job);
    /// Command5 "Reload": the same anew, by the main window's job ID and separator.
    void reload();
    /// Check3: a grid with rows is emptied and loaded anew.
    void setIgnoreSeparator(bool ignore);
    /// Text3: any text ticks "Retain raw file lists".
    void setPassword(const std::string& password);
    /// Command1 "Add File". A path that stands in the grid in any case is selected instead, with a beep.
    void addFiles();
    /// Double-click on a row, from 0.
    void removeRow(std::size_t row);
    /// Command2 "Change destination".
    void changeDestination();
    /// Command4 "Zip": the whole run. Lists that are removed by its rule are gone only when the finished archive was
    /// read back and held the same bytes; otherwise they stand under Kept. An archive of the name that is overwritten
    /// stands under Kept, too.
    ///
    /// Kept: nothing guards against a second press while the event loop is turned (test
    /// ASecondZipMayRunWithinTheFirst).
    void zip();

    /// Ends the run that writes an archive, or that waits for its folder, if there is one: an archive of that name is
    /// as it was before the run, and so are all lists.
    void cancel() { cancelled_ = true; }

    /// Where "Zip" writes to by the job ID and separator of this moment, or what is to be told instead. UTF-8. Asks no
    /// disk.
    [[nodiscard]] std::string noticeLine();
    /// The archive folder has not answered yet: `noticeLine` may tell another place later.
    [[nodiscard]] bool waitsForFolder();

    /// Command7 "Query Network": fills Combo1. Kept: choosing from it leaves "Test" as it was (test
    /// AChoiceAfterAQueryLeavesTestAsItWas).
    void queryNetwork(std::shared_ptr<NetworkProvider> network);
    /// Command8 "Test" with the text of Combo1, over the screen's own exchange.
    void testRecipient(AlertExchange& exchange);

private:
    struct Run;

    void fill();
    void fillGrid();
    void fillRecipients();
    [[nodiscard]] RecipientScreen recipientScreen();
    void addRow(const NativePath& file);
    void askForFolder();
    [[nodiscard]] std::optional<NativePath> waitFor(const NativePath& folder, const std::function<NativePath()>& work);
    [[nodiscard]] std::optional<NativePath> workingFolder();
    void showNotice(const std::string& text);
    void runSteps(const NativePath& workingFolder);
    [[nodiscard]] bool confirmPassword();
    [[nodiscard]] bool collectNames(Run& run);
    [[nodiscard]] bool clearTheWay(Run& run);
    void takeBack(const Run& run);
    void writeArchive(Run& run);
    void zipError(const FileError& error);
    [[nodiscard]] bool removeLists(const Run& run);
    void notify(Run& run);
    void finish(Run& run);
    void showBusy(bool busy);
    void showProgress(bool visible, double percent);

    Installation& installation_;
    const Surroundings& surroundings_;
    AlertSender& alerts_;
    ScreenHost& host_;
    WarnInLog warnInLog_;
    ZipHandover job_;
    KeptFiles kept_;
    NativePath askedFolder_;              // the archive folder whose answer is told
    NativePath archives_;                 // where archives go: the folder that was asked, or what stands in for it
    std::future<NativePath> folderCame_;  // the answer under way
    bool zipFailed_ = false;              // stays set once an error was shown
    bool cancelled_ = false;              // the run in work
};

}  // namespace quillon
