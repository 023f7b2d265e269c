// SPDX-License-Identifier: MIT
#pragma once

// Shows the preview file of a bad sector marker, or a sector as a marker of the list fills it.
//
//   Frame                     Control        Caption   Meaning
//   Frame1 "Sector Preview"   XHexEditX1               the bytes, read-only (the frame's name is ours)
//                             Command1       "Done"    back to the screen that it belongs to

#include "editors/sector_preview.h"
#include "widgets/step_screen.h"

class QGroupBox;
class QPushButton;

namespace quillon {

class HexView;

class frmPreviewBadSector final : public StepScreen {
    Q_OBJECT

public:
    frmPreviewBadSector(const ScreenContext& context, const SectorPreview& preview);

private:
    void leaveOrAsk() override;

    QGroupBox* Frame1;
    HexView* XHexEditX1;
    QPushButton* Command1;
    const bool fromComposer_;
};

}  // namespace quillon
