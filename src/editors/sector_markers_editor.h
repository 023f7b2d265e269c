// SPDX-License-Identifier: MIT
#pragma once

// The list of bad sector markers as its screen edits it, without the screen: every change is saved at once.
// docs/formats/rule-lists.md.

#include <optional>
#include <string>
#include <vector>

#include "app/dialogs.h"
#include "app/installation.h"
#include "app/kept_files.h"
#include "editors/list_copies.h"
#include "testing/sector_markers.h"

namespace quillon {

class SectorMarkersEditor {
public:
    /// All must outlive this. Nothing is read before `load`.
    SectorMarkersEditor(const Installation& installation, Dialogs& dialogs, KeptFiles& kept);

    /// What is typed, UTF-8.
    struct Fields {
        std::string name;
        std::string marker;  ///< text, or hexadecimal digits
        std::string position = "0";
        bool hexadecimal = false;
        bool repeating = true;

        friend bool operator==(const Fields&, const Fields&) = default;
    };
    Fields fields;

    /// A line of the list. One that marks nothing has a marker without bytes; it stays in the list as it stands.
    struct Row {
        std::string line;
        Fields fields;  ///< as they stand in the line
        SectorMarker marker;
    };
    /// In the order of the file, which is that of evaluation.
    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    /// The selected row from 0, -1 for none.
    [[nodiscard]] int selected() const { return selected_; }
    /// True while what is typed is to replace the selected row.
    [[nodiscard]] bool updating() const { return updating_; }

    /// Reads the list: the shared copy when sharing is on and it exists, otherwise the local one. Where there is none,
    /// the published markers stand here, as they serve then. A file that cannot be read gives no rows.
    void load();

    /// The marker that is typed, without its name. A failure, with the reason for a person, when it would mark nothing.
    [[nodiscard]] Result<SectorMarker> pattern() const;
    /// The same with its name. A failure, too, when it cannot stand in the list.
    [[nodiscard]] Result<SectorMarker> typed() const;
    /// The reason of `typed`, empty without one. While neither marker nor name are typed: that the list is not saved,
    /// or nothing.
    [[nodiscard]] std::string remark() const;

    /// Adds what is typed at the end, or puts it in the place of the selected row, saves the list and empties the
    /// fields. Does nothing where `typed` fails.
    void addOrUpdate();
    /// A row was clicked: its fields are typed, and the next `addOrUpdate` replaces it. A row that does not exist is
    /// passed over.
    void selectRow(int row);
    /// Empties the fields and goes back to adding. The row stays selected.
    void clear();
    /// Whether the selected row can go up or down: the first marker that fits names the file.
    [[nodiscard]] bool canMoveUp() const { return selected_ > 0; }
    [[nodiscard]] bool canMoveDown() const { return selected_ >= 0 && selected_ + 1 < static_cast<int>(rows_.size()); }
    /// The selected row changes places with the one before or behind it, and the list is saved. It stays selected, and
    /// what is typed stays. Where it cannot go nothing happens.
    void moveUp();
    void moveDown();
    /// Asks, removes the selected row and saves the list; without one nothing happens.
    void deleteSelected();

    /// The screen closes. What is not saved, as the person did not wait for another computer, is saved now; where he
    /// does not wait again, a box asks whether it closes all the same. False: it stays.
    [[nodiscard]] bool saveToClose();

private:
    [[nodiscard]] std::vector<NativePath> copies() const;
    [[nodiscard]] std::string fileBytes() const;
    [[nodiscard]] std::optional<std::string> twinOf(const SectorMarker& marker) const;
    void show(const std::vector<std::string_view>& lines);
    void swapWithSelected(int other);
    void save();

    const Installation& installation_;
    Dialogs& dialogs_;
    KeptFiles& kept_;
    ListCopies copies_;
    std::vector<Row> rows_;
    int selected_ = -1;
    bool updating_ = false;
};

}  // namespace quillon
