// SPDX-License-Identifier: MIT
#pragma once

// The screen "Bad Sector Markers", all of it ours: what imaging tools write where a disk could not be read. Every
// change is saved at once; there is no cancel.
//
//   Frame                    Control                      Caption               Meaning
//   entry_ "Marker"          nameLabel_, name_            "Name"                what is told of the files
//                            markerLabel_, marker_        "Marker"              text, or hexadecimal digits
//                            typeLabel_, type_            "Type"                "Text" or "Hex"
//                            positionLabel_, position_    "Position in sector"  of its first byte; 0 for anywhere
//                            repeating_                   "Repeats to the end of the sector"
//                            pageRemark_                                        characters stored as "?"
//                            remark_                                            why it would mark nothing
//                            add_                         "Add" / "Update"      puts the marker into the list
//                            clear_                       "Clear"               empties the entry, goes back to "Add"
//                            preview_                     "Preview"             a sector that it marks
//   list_ "Current Markers"  markers_                     "Name", "Marker", "Type", "Position", "Stands"
//                                                                               the list
//                            up_, down_                   "Move up", "Move down"
//                                                                               the selected marker goes first or later
//                            delete_                      "Delete"              deletes the selected marker
//                            done_                        "Done"                closes the screen

#include "editors/sector_markers_editor.h"
#include "widgets/step_screen.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace quillon {

class Grid;

class frmSectorMarkers final : public StepScreen {
    Q_OBJECT

public:
    /// The context must outlive the screen.
    explicit frmSectorMarkers(const ScreenContext& context);

private:
    void createEntry();
    void createList();
    void arrange();
    void connectControls();
    void connectList();
    void showControls() override;
    void leaveOrAsk() override;
    void showPreview();

    SectorMarkersEditor editor_;

    QGroupBox* entry_;
    QLabel* nameLabel_;
    QLineEdit* name_;
    QLabel* markerLabel_;
    QLineEdit* marker_;
    QLabel* typeLabel_;
    QComboBox* type_;
    QLabel* positionLabel_;
    QLineEdit* position_;
    QCheckBox* repeating_;
    QLabel* pageRemark_;
    QLabel* remark_;
    QPushButton* add_;
    QPushButton* clear_;
    QPushButton* preview_;
    QGroupBox* list_;
    Grid* markers_;
    QPushButton* up_;
    QPushButton* down_;
    QPushButton* delete_;
    QPushButton* done_;
};

}  // namespace quillon
