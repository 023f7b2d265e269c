// SPDX-License-Identifier: MIT
// The controls of the zip screen and where they stand.
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "archive/frmZip.h"
#include "ui/theme.h"

namespace quillon {
namespace {

constexpr int kFileColumn = 220;
constexpr int kLabelColumn = 110;

// A label and what it names, in one line whose label column lines up with the others.
QHBoxLayout* addLine(QVBoxLayout& layout, QLabel* label, QWidget* field) {
    auto* line = new QHBoxLayout;
    line->setSpacing(kSpacing);
    label->setMinimumWidth(kLabelColumn);
    label->setBuddy(field);
    line->addWidget(label);
    line->addWidget(field, 1);
    layout.addLayout(line);
    return line;
}

QVBoxLayout* frameLayout(QGroupBox& frame) {
    auto* layout = new QVBoxLayout(&frame);
    layout->setSpacing(kSpacing);
    return layout;
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
    layout->addLayout(createCommands());
    resize(860, 560);
}

QWidget* frmZip::createFiles() {
    QGroupBox* frame = makeFrame("Frame1", "Selected Files");
    QVBoxLayout* layout = frameLayout(*frame);
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setColumns({{"Files to ZIP", kFileColumn}});
    iGrid1->setAccessibleName(QStringLiteral("Files to ZIP"));
    layout->addWidget(iGrid1, 1);

    auto* line = new QHBoxLayout;
    line->setSpacing(kSpacing);
    QLabel* hint = makeLabel("Label2", "Doublie-click file to remove file");
    makeRemark(*hint);
    Check3 = makeCheck("Check3", "Ignore Separator");
    Command5 = makeButton("Command5", "Reload");
    Command1 = makeButton("Command1", "Add File");
    line->addWidget(hint, 1);
    line->addWidget(Check3);
    line->addWidget(Command5);
    line->addWidget(Command1);
    layout->addLayout(line);
    return frame;
}

QWidget* frmZip::createArchive() {
    QGroupBox* frame = makeFrame("frameArchive", "Archive");
    QVBoxLayout* layout = frameLayout(*frame);
    Text1 = make<QLineEdit>("Text1");
    QHBoxLayout* job = addLine(*layout, makeLabel("labelJob", "Job ID"), Text1);
    Text2 = make<QLineEdit>("Text2");
    Text2->setMaxLength(1);
    Text2->setFixedWidth(40);
    Text2->setAlignment(Qt::AlignCenter);
    QLabel* separator = makeLabel("labelSeparator", "Separator");
    separator->setBuddy(Text2);
    job->addWidget(separator);
    job->addWidget(Text2);
    Text3 = make<QLineEdit>("Text3");
    Text3->setStyleSheet(QStringLiteral("lineedit-password-character: 42"));
    QHBoxLayout* password = addLine(*layout, makeLabel("Label1", "Add Password"), Text3);
    Check1 = makeCheck("Check1", "Mask Password");
    password->addWidget(Check1);
    auto* line = new QHBoxLayout;
    line->setSpacing(kSpacing);
    Check2 = makeCheck("Check2", "Retain raw file lists");
    Check2->setToolTip(QStringLiteral(
        "It is not necessary to retain files lists after zipping as they will be archived to the zip file."));
    Command2 = makeButton("Command2", "Change destination");
    line->addWidget(Check2, 1);
    line->addWidget(Command2);
    layout->addLayout(line);
    return frame;
}

QWidget* frmZip::createNotification() {
    QGroupBox* frame = makeFrame("frameNotify", "Notification");
    QVBoxLayout* layout = frameLayout(*frame);
    Combo1 = make<QComboBox>("Combo1");
    addLine(*layout, makeLabel("Label3", "Net send to"), Combo1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(kSpacing);
    Command7 = makeButton("Command7", "Query Network");
    Command8 = makeButton("Command8", "Test");
    buttons->addStretch(1);
    buttons->addWidget(Command7);
    buttons->addWidget(Command8);
    layout->addLayout(buttons);
    auto* boxes = new QHBoxLayout;
    boxes->setSpacing(kSpacing);
    Check4 = makeCheck("Check4", "Show Company");
    Check5 = makeCheck("Check5", "Show Computer");
    boxes->addWidget(Check4);
    boxes->addWidget(Check5);
    boxes->addStretch(1);
    layout->addLayout(boxes);
    layout->addStretch(1);
    return frame;
}

QLayout* frmZip::createCommands() {
    auto* line = new QHBoxLayout;
    line->setSpacing(kSpacing);
    ProgressBar1 = makeProgress("ProgressBar1", "Progress of the archive");
    ProgressBar1->setVisible(false);
    Command6 = makeButton("Command6", "Zip and Email");
    Command6->setVisible(false);
    Command4 = makeButton("Command4", "Zip");
    Command3 = makeButton("Command3", "Close");
    makePrimary(*Command4);
    line->addWidget(ProgressBar1, 1);
    line->addStretch();  // where there is no bar, the buttons keep their size
    line->addWidget(Command6);
    line->addWidget(Command4);
    line->addWidget(Command3);
    return line;
}

}  // namespace quillon
