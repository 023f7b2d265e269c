// SPDX-License-Identifier: MIT
// The score board: what was found, what came of it, and the grades with their bar.
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/frmMain_controls.h"
#include "ui/grade_bar.h"
#include "ui/score_board.h"
#include "widgets/control_maker.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

// What 64 bits of bytes come to.
constexpr const char* kWidestSize = "16,777,216.0 Tb";

// Both in one place: "Copied:" while the told caption is empty, so that the count is never without one.
QWidget* inOnePlace(QLabel& first, QLabel& second) {
    auto* place = new QWidget;
    auto* cell = new QGridLayout(place);
    cell->setContentsMargins({});
    cell->addWidget(&first, 0, 0);
    cell->addWidget(&second, 0, 0);
    return place;
}

QLabel* makeCaption(const char* name, const char* text, QLabel* count) {
    QLabel* caption = makeLabel(name, text);
    caption->setBuddy(count);
    return caption;
}

}  // namespace

void frmMainControls::createStats() {
    Frame5 = makeFrame("Frame5", "Stats");
    gradeBar = make<GradeBar>("gradeBar");
    BoardWidgets board;
    board.quality = createQuality();
    createTotals(board);
    board.bar = gradeBar;
    createGrades(board);
    scoreBoard = new ScoreBoard(std::move(board));
    auto* layout = new QVBoxLayout(Frame5);
    layout->addWidget(scoreBoard);
    layout->addStretch();
}

QWidget* frmMainControls::createQuality() {
    lRPC = makeRoomy("lRPC", "100.00%");
    lRPC->setText(QStringLiteral("0"));
    QFont large = countFont(lRPC->font());
    large.setPointSizeF(large.pointSizeF() * 2.6);
    lRPC->setFont(large);
    Label10 = makeCaption("Label10", "Recovery Quality:", lRPC);
    Label16 = makeRoomy("Label16", "2,147,483,647 Files per minute");
    Label19 = makeCaption("Label19", "Throughput", Label16);
    Label22 = makeRoomy("Label22", "100.00%");
    keepRoomWhenHidden(*Label16);  // a copy hides it

    auto* place = new QWidget;
    auto* block = new QVBoxLayout(place);
    block->setContentsMargins({});
    block->setSpacing(2);
    block->addWidget(Label10);
    block->addWidget(lRPC);
    auto* speed = new QHBoxLayout;
    speed->setSpacing(kSpacing);
    speed->addWidget(Label19);
    speed->addWidget(Label22);
    speed->addStretch();
    block->addLayout(speed);
    block->addWidget(Label16);
    return place;
}

void frmMainControls::createTotals(BoardWidgets& board) {
    const auto add = [&board](QLabel*& caption, const char* captionName, const char* text, QLabel*& count,
                              const char* countName, const char* widest = "2,147,483,647") {
        count = makeCount(countName, widest);
        caption = makeCaption(captionName, text, count);
        board.totals.push_back({nullptr, caption, count});
    };
    add(Label7, "Label7", "Total Files:", lfiles, "lfiles");
    add(Label25, "Label25", "Total folders:", lFOlders, "lFOlders");
    add(Label9, "Label9", "Total Size:", lsize, "lsize", kWidestSize);
    add(Label26, "Label26", "Folder Errors:", lFolderErrors, "lFolderErrors");
    add(Label9_1, "Label9_1", "Copy Errors", lCopyErrors, "lCopyErrors");
    lTotCopied = makeCount("lTotCopied");
    Label21 = makeLabel("Label21", "");
    Label21->setBuddy(lTotCopied);
    copiedNote = makeLabel("copiedNote", "Copied:");
    board.totals.push_back({nullptr, inOnePlace(*Label21, *copiedNote), lTotCopied});
}

void frmMainControls::createGrades(BoardWidgets& board) {
    const auto add = [&board](QWidget* swatch, QLabel*& caption, const char* captionName, const char* text,
                              QLabel*& count, const char* countName) {
        count = makeCount(countName);
        caption = makeCaption(captionName, text, count);
        board.grades.push_back({swatch, caption, count});
    };
    for (const Grade grade : kBoardOrder) {
        const BoardCell& told = kGrades[grade].board;
        add(new GradeSwatch(QColor(kGrades[grade].bar.colour)), gradeCaptions[grade], told.captionControl, told.caption,
            gradeCounts[grade], told.countControl);
    }
    add(nullptr, Label11, "Label11", "Tested:", lTested, "lTested");
    add(nullptr, Label13, "Label13", "Skipped:", lSkipped, "lSkipped");
}

}  // namespace quillon
