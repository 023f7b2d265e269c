// SPDX-License-Identifier: MIT
#pragma once

// The screen "Extension Editor": the files of one extension in a hex view, one after the other, beside the terms known
// of it. What it does is ExtensionEditor's.
//
//   Frame1 "Criteria"
//     Label5, Text1                 "Ext"            the extension; cannot be edited
//     Label2, Text2, Label3         "Position", "1", "(0 = Anywhere)"
//     Label1, Text3                 "Term"
//     pageRemark_                   ours: characters that are stored as "?"
//     Label4, Combo2                "Type"           "Text" or "HEX"
//     Command2                      "Add" or "Update"
//     Command3                      "Clr"
//     Command11                     "Test"           looks for the term in all files
//     Command6, Command7, Command8  "EXE/DLL", "OLE", "WP"
//     suggest_                      ours: "Suggest", opens suggestions_ with terms that the files share
//     advice_                       ours: what the term would let through, as far as jobs have kept heads
//   Frame3 "Existing Terms"
//     iGrid1                        "Term", "Offset", "Type"
//     Command12_0, Command12_1      move the row up, down
//     Command1                      "Delete"
//     Check1                        "Enable Delete all"
//     Command10                     "Delete All"
//     Check2                        "Update Master DB"   without effect
//     Command5                      "Done"           saves and leaves
//   Frame2 "Hex View"
//     Combo1                        the files
//     Command9, Command4            "-", "+"         previous and next file
//     Label6                        "Viewing file " and the counter
//     shared_                       ours: how many bytes all files share, and which
//     consensus_                    ours: what the files share, place by place, in the columns of Hex1
//     Hex1                          the first 512 bytes; a click fills Text2
//     takeBytes_                    ours: "Marked Bytes to Term", the popup of Hex1
//     nextMark_                     ours: "Select Next Shared Bytes", the popup of Hex1
//     Label7, Combo3, Command13     "Common header info", "Test": for files of a common header only
//   mnuC "Copy Files"               never shown: mnuCopy, mnuCopyAll
//   mnuA                            popup of the grid: mnuAdd, mnuB1, mnuDelete
//   suggestions_                    ours: the popup of suggest_, suggestion_0 to suggestion_9, or noSuggestion_

#include <QAbstractListModel>
#include <QMainWindow>

#include "editors/extension_editor.h"
#include "editors/listed_consensus.h"
#include "editors/term_advice.h"
#include "widgets/busy_parts.h"
#include "widgets/grid_model.h"
#include "widgets/step_screen.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QVBoxLayout;

namespace quillon {

class ConsensusLine;
class Grid;
class HexView;

/// The terms as the grid shows them, in another order of columns than the file's.
class TermGridRows final : public GridSource {
public:
    explicit TermGridRows(const std::vector<HeaderTerm>& rows) : rows_(rows) {}
    [[nodiscard]] int rowCount() const override { return static_cast<int>(rows_.size()); }
    [[nodiscard]] std::string cell(int row, int column) const override;

private:
    const std::vector<HeaderTerm>& rows_;
};

/// The files as the list shows them: readable paths, made only when they are looked at.
class FileNames final : public QAbstractListModel {
    Q_OBJECT

public:
    FileNames(const std::vector<std::u16string>& files, QObject* parent) : QAbstractListModel(parent), files_(files) {}
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    const std::vector<std::u16string>& files_;
};

class frmExtEditor final : public StepWindow<QMainWindow> {
    Q_OBJECT

public:
    /// The context must outlive the screen.
    frmExtEditor(const ScreenContext& context, const ReportMessages& messages, const EditorHandover& handover);

private:
    void createCriteria();
    void createPresets(QVBoxLayout& layout);
    void createTerms();
    void createTermButtons(QVBoxLayout& layout);
    void createHexView();
    void createCommonRow(QVBoxLayout& layout);
    void createAdvice(QVBoxLayout& layout);
    void createMenus();
    void arrange();
    void setTabOrders();
    void connectCriteria();
    void connectTerms();
    void connectFiles();
    void connectAdvice(const EditorHandover& handover);
    [[nodiscard]] AdviceQuestion adviceQuestion() const;
    [[nodiscard]] std::optional<std::string> lookForAdvice();
    void showConsensus(HeadConsensus consensus);
    void openSuggestions(const std::vector<OfferedTerm>& offered);

    /// Connects a button to one operation of the editor.
    void act(QPushButton* button, void (ExtensionEditor::*operation)());
    void iGrid1_Mouse(int row);
    void Text3_Change(const QString& text);
    /// Closing is "Done": saves, and opens the viewer again.
    void leaveOrAsk() override;

    void showControls() override;
    void showCriteria();
    void showTerms();
    void showFile();

    ExtensionEditor editor_;
    TermAdvice terms_;
    ListedConsensus listed_;
    std::function<void()> whenDone_;
    TermGridRows gridRows_{editor_.state.rows};
    std::vector<HeaderTerm> shownRows_;
    int shownFile_ = -1;
    BusyParts busyParts_;

    QGroupBox *Frame1, *Frame2, *Frame3;
    QLabel *Label1, *Label2, *Label3, *Label4, *Label5, *Label6, *Label7;
    QLabel* pageRemark_;
    QLineEdit *Text1, *Text2, *Text3;
    QComboBox *Combo1, *Combo2, *Combo3;
    QPushButton *Command1, *Command2, *Command3, *Command4, *Command5, *Command6, *Command7, *Command8, *Command9;
    QPushButton *Command10, *Command11, *Command12_0, *Command12_1, *Command13;
    QCheckBox *Check1, *Check2;
    Grid* iGrid1;
    HexView* Hex1;
    QMenu *mnuC, *mnuA;
    QAction *mnuAdd, *mnuDelete;
    QPushButton* suggest_;
    QLabel* advice_;
    QMenu* suggestions_;
    QAction *takeBytes_, *nextMark_;
    QLabel* shared_;
    ConsensusLine* consensus_;
};

}  // namespace quillon
