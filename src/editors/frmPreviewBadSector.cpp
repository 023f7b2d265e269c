// SPDX-License-Identifier: MIT
#include "editors/frmPreviewBadSector.h"

#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/control_maker.h"
#include "widgets/hex_view.h"
#include "widgets/theme.h"

namespace quillon {

frmPreviewBadSector::frmPreviewBadSector(const ScreenContext& context, const SectorPreview& preview)
    : StepScreen(context, Screen::PreviewBadSector, "frmPreviewBadSector", "Preview Bad Sector Marker"),
      fromComposer_(preview.fromComposer) {
    Frame1 = makeFrame("Frame1", "Sector Preview");
    XHexEditX1 = make<HexView>("XHexEditX1");
    XHexEditX1->setBytes(preview.bytes);
    (new QVBoxLayout(Frame1))->addWidget(XHexEditX1);
    Command1 = makeButton("Command1", "&Done");
    makePrimary(*Command1);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(Frame1, 1);
    all->addWidget(Command1, 0, Qt::AlignRight);
    resize(sizeHint());
    connect(Command1, &QPushButton::clicked, this, &QWidget::close);
    closeOnEscape();
    begin();
}

// Back to the screen that it belongs to; that of the list waits behind it.
void frmPreviewBadSector::leaveOrAsk() {
    if (fromComposer_)
        context_.navigator.open(Screen::BadSectors);
    leave();
}

}  // namespace quillon
