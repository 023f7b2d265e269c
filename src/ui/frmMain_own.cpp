// SPDX-License-Identifier: MIT
// The switches of our own, below the told ones: a check box for each row of kOwnOptions, and which grades are copied.
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

}  // namespace

void frmMainControls::createOwnOptions() {
    ownOptions = makeFrame("ownOptions", "More Options");
    auto* grid = new QGridLayout(ownOptions);
    grid->setSpacing(kSpacing);
    int place = 0;
    const auto add = [&](QWidget* control) {
        grid->addWidget(control, place / kColumns, place % kColumns, Qt::AlignLeft | Qt::AlignVCenter);
        ++place;
    };
    for (std::size_t i = 0; i < ownBoxes.size(); ++i) {
        ownBoxes[i] = makeCheck(kOwnOptions[i].control, kOwnOptions[i].caption);
        ownBoxes[i]->setToolTip(QLatin1String(kOwnOptions[i].toolTip));
        add(ownBoxes[i]);
    }
    copyGrades = new TickButton("copyGrades", captionsOfGrades());
    for (const GradePreset& preset : gradePresets())
        copyGrades->addPreset(preset.control, preset.caption, ticksOf(preset.grades));
    add(copyGrades);
    for (int column = 0; column < kColumns; ++column) grid->setColumnStretch(column, 1);
}

// The Tab key goes the told way, and to them behind it.
void frmMainControls::chainOwnOptions() const {
    QWidget* before = Command5;
    for (QCheckBox* box : ownBoxes) {
        QWidget::setTabOrder(before, box);
        before = box;
    }
    QWidget::setTabOrder(before, copyGrades);
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
