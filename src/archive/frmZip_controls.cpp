// SPDX-License-Identifier: MIT
// The controls of the zip screen and where they stand.
#include <initializer_list>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "archive/frmZip.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr int kFileColumn = 220;

// Lines of a label and its field, which takes the room that is left, and what belongs to the field behind it.
QGridLayout* frameLines(QGroupBox& frame) {
    auto* lines = new QGridLayout(&frame);
    lines->setSpacing(kSpacing);
    lines->setColumnStretch(1, 1);
    return lines;
}

void addLabelled(QGridLayout& lines, int row, QLabel* label, QWidget* field, int columns = 1) {
    label->setBuddy(field);
    lines.addWidget(label, row, 0);
    lines.addWidget(field, row, 1, 1, columns);
}

QHBoxLayout* rowOf(std::initializer_list<QWidget*> controls) {
    auto* row = new QHBoxLayout;
    row->setSpacing(kSpacing);
    for (QWidget* control : controls) row->addWidget(control);
    return row;
}

}  // namespace

void frmZip::createControls() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kMargin);
    layout->addWidget(createFiles(), 1);
    auto* lower = new QHBoxLayout;
    lower->setSpacing(kMargin);
    lower->addWidget(createArchive(), 1);
    lower->addWidget(createNotification(), 1);
    layout->addLayout(lower);
    labelNotice_ = make<ElidedLabel>("labelNotice");
    layout->addWidget(labelNotice_);
    layout->addLayout(createCommands());
    resize(860, 560);
}

QWidget* frmZip::createFiles() {
    QGroupBox* frame = makeFrame("Frame1", "Selected Files");
    auto* layout = new QVBoxLayout(frame);
    layout->setSpacing(kSpacing);
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setColumns({{"Files to ZIP", kFileColumn}});
    iGrid1->setAccessibleName(QStringLiteral("Files to ZIP"));
    layout->addWidget(iGrid1, 1);

    QLabel* hint = makeLabel("Label2", "Doublie-click file to remove file");
    makeRemark(*hint);
    Check3 = makeCheck("Check3", "&Ignore Separator");
    Command5 = makeButton("Command5", "&Reload");
    Command1 = makeButton("Command1", "&Add File");
    QHBoxLayout* line = rowOf({hint, Check3, Command5, Command1});
    line->setStretch(0, 1);
    layout->addLayout(line);
    return frame;
}

QWidget* frmZip::createArchive() {
    QGroupBox* frame = makeFrame("frameArchive", "Archive");
    QGridLayout* lines = frameLines(*frame);
    Text1 = make<QLineEdit>("Text1");
    addLabelled(*lines, 0, makeLabel("labelJob", "&Job ID"), Text1);
    Text2 = make<QLineEdit>("Text2");
    Text2->setMaxLength(1);
    Text2->setFixedWidth(40);
    Text2->setAlignment(Qt::AlignCenter);
    QLabel* separator = makeLabel("labelSeparator", "&Separator");
    separator->setBuddy(Text2);
    lines->addWidget(separator, 0, 2);
    lines->addWidget(Text2, 0, 3, Qt::AlignRight);
    Text3 = make<QLineEdit>("Text3");
    Text3->setStyleSheet(QStringLiteral("lineedit-password-character: 42"));
    addLabelled(*lines, 1, makeLabel("Label1", "Add &Password"), Text3);
    Check1 = makeCheck("Check1", "&Mask Password");
    lines->addWidget(Check1, 1, 2, 1, 2);
    Check2 = makeCheck("Check2", "Retain raw file &lists");
    Check2->setToolTip(QStringLiteral(
        "It is not necessary to retain files lists after zipping as they will be archived to the zip file."));
    Command2 = makeButton("Command2", "Change &destination");
    QHBoxLayout* last = rowOf({Check2, Command2});
    last->insertStretch(1, 1);
    lines->addLayout(last, 2, 0, 1, 4);
    return frame;
}

QWidget* frmZip::createNotification() {
    QGroupBox* frame = makeFrame("frameNotify", "Notification");
    QGridLayout* lines = frameLines(*frame);
    Combo1 = make<QComboBox>("Combo1");
    addLabelled(*lines, 0, makeLabel("Label3", "&Net send to"), Combo1, 2);
    Command7 = makeButton("Command7", "&Query Network");
    Command8 = makeButton("Command8", "&Test");
    lines->addLayout(rowOf({Command7, Command8}), 1, 2);
    Check4 = makeCheck("Check4", "Show C&ompany");
    Check5 = makeCheck("Check5", "Show Comp&uter");
    QHBoxLayout* last = rowOf({Check4, Check5});
    last->addStretch(1);
    last->addStrut(Command8->sizeHint().height());  // in line with the frame beside it
    lines->addLayout(last, 2, 0, 1, 3);
    return frame;
}

QLayout* frmZip::createCommands() {
    ProgressBar1 = makeProgress("ProgressBar1", "Progress of the archive");
    keepRoomWhenHidden(*ProgressBar1);
    ProgressBar1->setVisible(false);
    buttonCancel_ = makeButton("buttonCancel", "Canc&el");
    buttonCancel_->setVisible(false);
    Command6 = makeButton("Command6", "Zip and Email");
    Command6->setVisible(false);
    Command4 = makeButton("Command4", "&Zip");
    Command3 = makeButton("Command3", "&Close");
    makePrimary(*Command4);
    QHBoxLayout* line = rowOf({ProgressBar1, buttonCancel_, Command6, Command4, Command3});
    line->setStretch(0, 1);
    return line;
}

}  // namespace quillon
