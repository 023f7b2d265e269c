// SPDX-License-Identifier: MIT
#pragma once

// The overview of a job without its screen: what of the job's figures is shown, by what its files are filtered, which
// of them were found so far, and what is done with them. Rows and entries count from 0, -1 for none.

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "answers/copies_handover.h"
#include "answers/job_comparison.h"
#include "answers/overview/folder_map.h"
#include "answers/overview/found_rows.h"
#include "answers/overview_handover.h"
#include "app/installation.h"
#include "app/screen_host.h"
#include "app/surroundings.h"

namespace quillon {

/// What the screen shows. Texts are UTF-8.
struct OverviewState {
    std::string job;       ///< "Job 1234" or "Case 1234"
    std::string source;    ///< where its files come from, as far as it is known
    std::string quality;   ///< "98.20%"; "-" when nothing could be judged
    std::string base;      ///< what the quality is of
    std::string remark;    ///< what is not known, or what went wrong
    bool trouble = false;  ///< the remark tells of a failure
    bool busy = false;     ///< a step takes long: nothing else can be done
    bool isOpen = false;
    bool knowsAll = true;
    bool hasOneJob = true;            ///< the chosen folder lies in one job
    bool isInOwnJob = true;           ///< and that is the one with which the screen was opened
    std::vector<std::string> scopes;  ///< "Job 1234-a", and the cases that it belongs to: "Case 1234 (3 jobs)"
    int scope = 0;                    ///< of these, what is shown
    int opened = 0;                   ///< another number whenever other jobs are shown

    Figures total;
    FigureRows extensions;  ///< the first one is of all files, with an empty name
    FigureRows reasons;     ///< the same
    int extension = 0;      ///< chosen entries of these
    int reason = 0;
    int choice = 0;  ///< entry of `fileChoices`

    FolderNode* folder = nullptr;   ///< whose files are shown; null before the job is open
    FolderNode* mapRoot = nullptr;  ///< whose folders the map shows
    MapArea area = MapArea::Files;
    std::vector<MapTile> tiles;
    int contents = 0;  ///< another number whenever the tiles are others

    std::string filter;    ///< what the rows are of, in words
    std::string matching;  ///< how many there are
    int currentRow = -1;
    std::string head;      ///< bytes
    std::string headText;  ///< whose they are, or why there are none
};

/// What can be asked of the grade of a file.
struct FileChoice {
    std::string caption;
    FileWish wish;
};
/// All files, those of each grade, the doubtful ones and the unread ones.
[[nodiscard]] const std::vector<FileChoice>& fileChoices();

struct OverviewSurroundings {
    const Installation& installation;
    const Surroundings& surroundings;
    const ReportMessages& messages;
};

class Overview {
public:
    /// All must outlive this.
    Overview(const OverviewSurroundings& given, ScreenHost& host) : given_(given), host_(host) {}

    OverviewState state;
    FoundRows rows;

    /// Opens a job beside the loop. The remark tells a failure.
    void open(const std::string& job);
    /// Shows the job alone or a case that it belongs to; nothing is changed when that fails. All choices are dropped.
    void chooseScope(int entry);
    /// Null before a job is open. Those of before stay until the next ones but one.
    [[nodiscard]] FolderNodes* folders() { return folders_.get(); }

    // Each of these shows other rows.
    void chooseFolder(FolderNode& folder);
    void chooseExtension(int entry);
    void chooseReason(int entry);
    void chooseFiles(int entry);
    void showAll();

    void chooseArea(MapArea area);
    /// Shows a tile's files; the map stays.
    void chooseTile(int tile);
    /// The map goes into a tile's folder, and so do the rows. Tiles of files are passed over.
    void walkInto(int tile);
    void walkOut();

    /// Looks for further rows. False: all were found.
    [[nodiscard]] bool searchOn();
    [[nodiscard]] bool isSearching() const { return search_ != nullptr; }

    void selectRow(int row);

    /// What the viewer is given: grade and extension that are chosen, else those of the current row, else all corrupt
    /// files.
    [[nodiscard]] ViewerHandover forViewer();

    /// What "Copy Files" is given: the files that are shown, or what of them is not copied yet.
    [[nodiscard]] CopiesHandover forCopies(bool failedOnly) const;

    /// "Compare with ...": asks for another job, whose files are compared with those of the one that the chosen folder
    /// lies in, as the later attempt.
    void compare();
    /// "Export ...": the files that are shown.
    void exportFiles();
    /// "Report ...": the page for the customer, of all jobs that are shown.
    void report();

private:
    struct Opened;
    // What can be shown: its jobs and what they are called.
    struct Scope {
        std::string name;
        std::string fileName;  // for what is made of it
        std::vector<JobFiles> jobs;
    };
    [[nodiscard]] static Result<Opened> read(const std::vector<JobFiles>& jobs, const ReportMessages& messages);
    [[nodiscard]] static std::vector<Scope> scopesOf(const JobFiles& job, const std::string& separator);
    [[nodiscard]] const Scope& shownScope() const { return scopes_[static_cast<std::size_t>(state.scope)]; }
    [[nodiscard]] std::optional<PlaceInCase> place() const;
    [[nodiscard]] std::vector<JobFiles> chosenJobs() const;
    [[nodiscard]] FileWish ownWish() const;
    void take(Opened opened, int scope);
    void tell(const FileError& error);
    void describe();
    void describeScope();
    void describeFilter();
    [[nodiscard]] std::string filterText(bool withGrade) const;
    void describeRows();
    void moveMap(FolderNode& folder);
    void arrangeMap();
    void find();
    [[nodiscard]] FileWish wish() const;
    [[nodiscard]] std::optional<NativePath> askTarget(const std::string& title, const std::string& prompt,
                                                      const std::string& ending);
    void besideLoop(const std::function<void()>& work);

    OverviewSurroundings given_;
    ScreenHost& host_;
    std::vector<Scope> scopes_;
    std::unique_ptr<OverviewSource> source_;
    std::unique_ptr<FolderNodes> folders_;
    std::unique_ptr<FolderNodes> formerFolders_;  // a view may hold on to them until it is shown the new ones
    std::unique_ptr<FileSearch> search_;
};

}  // namespace quillon
