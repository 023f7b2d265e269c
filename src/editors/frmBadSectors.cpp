// SPDX-License-Identifier: MIT
#include "editors/frmBadSectors.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "editors/bad_sector_marker.h"
#include "editors/sector_preview.h"
#include "widgets/control_maker.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {

frmBadSectors::frmBadSectors(const ScreenContext& context)
    : StepScreen(context, Screen::BadSectors, "frmBadSectors", "Bad Sectors") {
    createControls();
    arrange();
    enterPresses(*tBadsector, *Command3);
    click(Command3, [this] { Command3_Click(); });
    connect(Command2, &QPushButton::clicked, this, &QWidget::close);
    closeOnEscape();
    begin();
    tBadsector->setFocus();
}

void frmBadSectors::createControls() {
    Frame1 = makeFrame("Frame1", "Bad sectors");
    Label1 = makeLabel("Label1", "&Marker Text");
    tBadsector = make<QLineEdit>("tBadsector");
    Label1->setBuddy(tBadsector);
    Label2 = makeLabel("Label2", "P&osition in sector");
    UniTextBoxEx1 = make<QLineEdit>("UniTextBoxEx1");
    UniTextBoxEx1->setText(QStringLiteral("1"));
    UniTextBoxEx1->setFixedWidth(70);
    Label2->setBuddy(UniTextBoxEx1);
    Check1 = makeCheck("Check1", "&Text repeats throughout sector");
    iGrid1 = make<Grid>("iGrid1");
    iGrid1->setAccessibleName(QStringLiteral("Bad sectors"));
    Command1 = makeButton("Command1", "&Add");
    Command3 = makeButton("Command3", "&Preview");
    makePrimary(*Command3);
    Command2 = makeButton("Command2", "&Done");
}

void frmBadSectors::arrange() {
    auto* grid = new QGridLayout(Frame1);
    grid->setSpacing(kSpacing);
    grid->addWidget(Label1, 0, 0);
    grid->addWidget(tBadsector, 0, 1, 1, 3);
    grid->addWidget(Label2, 1, 0);
    grid->addWidget(UniTextBoxEx1, 1, 1);
    grid->addWidget(Command1, 1, 2);
    grid->addWidget(Command3, 1, 3);
    grid->addWidget(Check1, 2, 0, 1, 4);
    grid->addWidget(iGrid1, 3, 0, 1, 4);
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(3, 1);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(Frame1, 1);
    all->addWidget(Command2, 0, Qt::AlignRight);
    resize(480, 400);
}

// A preview that is open still shows the last marker, so it makes room for the new one.
void frmBadSectors::Command3_Click() {
    const std::string marker = fromQt(tBadsector->text());
    if (marker.empty())
        return;
    const auto bytes = writePreview(context_.installation, marker);
    if (!bytes) {
        beep();
        return;
    }
    context_.navigator.unload(Screen::PreviewBadSector);
    context_.navigator.open(Screen::PreviewBadSector, SectorPreview{*bytes});
}

void frmBadSectors::leaveOrAsk() {
    context_.navigator.unload(Screen::PreviewBadSector);
    StepScreen::leaveOrAsk();
}

}  // namespace quillon
