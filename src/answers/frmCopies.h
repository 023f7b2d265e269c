// SPDX-License-Identifier: MIT
#pragma once

// The screen "Copy Files", our own: copies files of a finished job. What it does is CopyDesk's.
//
//   what                     which files
//   choices "Copy"
//     pickTarget "&Target ...", target   where to
//     copyGrades             "Grades: all", with copyGradesAll, copyGradesGood and copyGrades_1 to copyGrades_10
//     byGrade, rightNames, verify, salvage, failedOnly
//   notes                    what will not go well, or files that were not copied and why
//   bar                      share of the files that is done
//   status                   what is needed, how far it is, what came of it
//   copy "Copy", goOn "Go on", cancel "Cancel", stop "Stop", done "Done"

#include <optional>

#include "answers/copy_desk.h"
#include "widgets/grid_model.h"
#include "widgets/step_screen.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QProgressBar;

namespace quillon {

class Grid;
class TickButton;

/// The rows of `notes`: findings, in one column, else failures, in two.
class CopyNotes final : public GridSource {
public:
    explicit CopyNotes(const CopyDeskState& state) : state_(state) {}
    [[nodiscard]] int rowCount() const override;
    [[nodiscard]] std::string cell(int row, int column) const override;

private:
    const CopyDeskState& state_;
};

class frmCopies final : public StepScreen {
    Q_OBJECT

public:
    /// The context must outlive the screen.
    frmCopies(const ScreenContext& context, CopiesHandover handover);

protected:
    /// A copy in work is stopped, and the screen goes behind it.
    void closeEvent(QCloseEvent* event) override;
    /// The same where the program ends.
    void hideEvent(QHideEvent* event) override;
    /// Behind it stands the screen that has opened it.
    void leaveOrAsk() override { leave(); }

private:
    void createChoices();
    void createNotes();
    void arrange();
    void connectControls();
    void showControls() override;
    void showChoices();
    void showNotes();
    void showColumns(bool ofFindings);
    void showButtons();

    CopyDesk desk_;
    CopyNotes rows_{desk_.state};
    int shownContents_ = -1;
    std::optional<bool> shownFindings_;  // findings or failures

    QLabel *what, *target, *status;
    QGroupBox* choices;
    QPushButton* pickTarget;
    TickButton* copyGrades;
    QCheckBox *byGrade, *rightNames, *verify, *salvage, *failedOnly;
    Grid* notes;
    QProgressBar* bar;
    QPushButton *copy, *goOn, *cancel, *stop, *done;
};

}  // namespace quillon
