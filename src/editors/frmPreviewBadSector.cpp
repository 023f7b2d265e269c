// SPDX-License-Identifier: MIT
#include "editors/frmPreviewBadSector.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "widgets/control_maker.h"
#include "widgets/hex_view.h"
#include "widgets/navigator.h"
#include "widgets/theme.h"

namespace quillon {

frmPreviewBadSector::frmPreviewBadSector(const ScreenContext& context, SectorPreview preview) : context_(context) {
    setObjectName(QStringLiteral("frmPreviewBadSector"));
    setWindowTitle(QStringLiteral("Preview Bad Sector Marker"));
    Frame1 = makeFrame("Frame1", "Sector Preview");
    XHexEditX1 = make<HexView>("XHexEditX1");
    XHexEditX1->setBytes(std::move(preview.bytes));
    (new QVBoxLayout(Frame1))->addWidget(XHexEditX1);
    Command1 = makeButton("Command1", "Done");
    makePrimary(*Command1);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(Frame1, 1);
    all->addWidget(Command1, 0, Qt::AlignRight);
    resize(sizeHint().width(), 660);
    connect(Command1, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

void frmPreviewBadSector::closeEvent(QCloseEvent* event) {
    event->accept();
    context_.navigator.open(Screen::BadSectors);
    context_.navigator.unload(Screen::PreviewBadSector);
}

}  // namespace quillon
