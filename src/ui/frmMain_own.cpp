// SPDX-License-Identifier: MIT
// The switches of our own, below the told ones: a check box for each row of kOwnOptions, and which grades are copied.
#include <array>
#include <vector>

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>

#include "testing/grade_choice.h"
#include "ui/frmMain.h"
#include "widgets/control_maker.h"
#include "widgets/theme.h"
#include "widgets/tick_button.h"

namespace quillon {
namespace {

constexpr int kColumns = 3;

using Row = std::vector<QWidget*>;

// The choices of the copy stand in one row, the others below.
template <typename Boxes>
std::array<Row, 2> rowsOf(const Boxes& boxes, QWidget* copyGrades) {
    std::array<Row, 2> rows;
    for (std::size_t i = 0; i < boxes.size(); ++i) rows[kOwnOptions[i].isOfUse == copies ? 0 : 1].push_back(boxes[i]);
    rows[0].push_back(copyGrades);
    return rows;
}

}  // namespace

void frmMainControls::createOwnOptions() {
    ownOptions = makeFrame("ownOptions", "More Options");
    auto* grid = new QGridLayout(ownOptions);
    grid->setSpacing(kSpacing);
    for (std::size_t i = 0; i < ownBoxes.size(); ++i) {
        ownBoxes[i] = makeCheck(kOwnOptions[i].control, kOwnOptions[i].caption);
        ownBoxes[i]->setToolTip(QLatin1String(kOwnOptions[i].toolTip));
    }
    copyGrades = new TickButton("copyGrades", captionsOfGrades());
    for (const GradePreset& preset : gradePresets())
        copyGrades->addPreset(preset.control, preset.caption, ticksOf(preset.grades));
    const auto rows = rowsOf(ownBoxes, copyGrades);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < rows[row].size(); ++column)
            grid->addWidget(rows[row][column], static_cast<int>(row), static_cast<int>(column),
                            Qt::AlignLeft | Qt::AlignVCenter);
    }
    for (int column = 0; column < kColumns; ++column) grid->setColumnStretch(column, 1);
}

// The Tab key goes the told way, and to them behind it.
void frmMainControls::chainOwnOptions() const {
    QWidget* before = Command5;
    for (const Row& row : rowsOf(ownBoxes, copyGrades)) {
        for (QWidget* control : row) {
            QWidget::setTabOrder(before, control);
            before = control;
        }
    }
}

void frmMain::connectOwnOptions() {
    for (std::size_t i = 0; i < ownBoxes.size(); ++i)
        step(ownBoxes[i], &QCheckBox::toggled,
             [this, i](bool ticked) { setup_.ownOptionTicked(kOwnOptions[i], ticked); });
    step(copyGrades, &TickButton::changed, [this] { setup_.copiedGradesChosen(gradesOfTicks(copyGrades->ticks())); });
}

void frmMain::showOwnOptions(const JobBoard& board) {
    JobOptions& options = job_.state.options;
    ownOptions->setEnabled(board.frames);
    for (std::size_t i = 0; i < ownBoxes.size(); ++i) {
        ownBoxes[i]->setChecked(kOwnOptions[i].of(options));
        ownBoxes[i]->setEnabled(board.frames && kOwnOptions[i].isOfUse(options));
    }
    copyGrades->setEnabled(board.copyChoices && options.checkFileQuality);
    copyGrades->setTicks(ticksOf(options.copyGrades));
    copyGrades->setCaption("Copy &grades: " + countOfGrades(options.copyGrades));
}

}  // namespace quillon
