// SPDX-License-Identifier: MIT
#include "answers/frmGradeButton.h"

#include "widgets/qt_text.h"
#include "widgets/tick_button.h"

namespace quillon {

TickButton* makeGradeButton() {
    std::vector<QString> captions;
    for (const Grade grade : kBoardOrder) captions.push_back(QLatin1String(kGrades[grade].bar.name));
    auto* button = new TickButton("copyGrades", captions);
    button->addPreset("copyGradesAll", "&All grades", ticksOf({}));
    button->addPreset("copyGradesGood", "&Good and common header only", ticksOf({Grade::Good, Grade::CommonHeader}));
    button->setToolTip(QStringLiteral("Only files of the ticked grades are copied"));
    return button;
}

void showGrades(TickButton& button, const std::string& caption, const std::vector<Grade>& grades) {
    button.setTicks(ticksOf(grades));
    button.setCaption(toQt(caption + ": " + countOfGrades(grades)));
}

}  // namespace quillon
