// SPDX-License-Identifier: MIT
#include "editors/frmSectorMarkers.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "editors/bad_sector_marker.h"
#include "editors/sector_preview.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/page_text.h"
#include "widgets/control_maker.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/page_remark.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {

namespace {

// A blank at either end belongs to the marker, and nobody would see it.
std::string shownMarker(const std::string& marker) {
    const std::string text = readable(std::string_view(marker));
    return trim(std::string_view(marker)) == marker ? text : "\"" + text + "\"";
}

GridRow gridRow(const SectorMarkersEditor::Row& row) {
    const SectorMarkersEditor::Fields& fields = row.fields;
    const auto shown = [](const std::string& text) { return readable(std::string_view(text)); };
    if (row.marker.bytes.empty())
        return {{shown(fields.name), shown(toUtf8(PageText{row.line})), "", "", "marks nothing"}, {}};
    return {{shown(fields.name), shownMarker(fields.marker), fields.hexadecimal ? "Hex" : "Text",
             row.marker.position == 0 ? "anywhere" : std::to_string(row.marker.position),
             fields.repeating ? "to the sector's end" : "once"},
            {}};
}

}  // namespace

frmSectorMarkers::frmSectorMarkers(const ScreenContext& context)
    : StepScreen(context, Screen::SectorMarkers, "frmSectorMarkers", "Bad Sector Markers"),
      editor_(context.installation, context.surroundings.dialogs, context.kept) {
    createEntry();
    createList();
    arrange();
    connectControls();
    connectList();
    editor_.load();
    begin();
    name_->setFocus();
}

void frmSectorMarkers::createEntry() {
    entry_ = makeFrame("entry_", "Marker");
    nameLabel_ = makeLabel("nameLabel_", "&Name");
    name_ = make<QLineEdit>("name_");
    name_->setToolTip(QStringLiteral("Told of every file in which the marker stands"));
    nameLabel_->setBuddy(name_);
    markerLabel_ = makeLabel("markerLabel_", "&Marker");
    marker_ = make<QLineEdit>("marker_");
    marker_->setToolTip(QStringLiteral("What the imaging tool writes where it cannot read, with capitals and blanks"));
    markerLabel_->setBuddy(marker_);
    typeLabel_ = makeLabel("typeLabel_", "T&ype");
    type_ = make<QComboBox>("type_");
    type_->addItems({QStringLiteral("Text"), QStringLiteral("Hex")});
    typeLabel_->setBuddy(type_);
    positionLabel_ = makeLabel("positionLabel_", "&Position in sector");
    position_ = make<QLineEdit>("position_");
    position_->setToolTip(QStringLiteral("1 is the first of 512 bytes, 0 means anywhere"));
    position_->setFixedWidth(70);
    positionLabel_->setBuddy(position_);
    repeating_ = makeCheck("repeating_", "&Repeats to the end of the sector");
    pageRemark_ = make<ElidedLabel>("pageRemark_");
    tellLossOnPage(*pageRemark_, {name_, marker_});
    remark_ = make<ElidedLabel>("remark_");
    makeRemark(*remark_);
    add_ = makeButton("add_", "&Add");
    makePrimary(*add_);
    clear_ = makeButton("clear_", "&Clear");
    preview_ = makeButton("preview_", "Pre&view");
}

void frmSectorMarkers::createList() {
    list_ = makeFrame("list_", "Current Markers");
    markers_ = make<Grid>("markers_");
    markers_->setColumns({{"Name", 180}, {"Marker", 220}, {"Type", 50}, {"Position", 80}, {"Stands", 120}});
    markers_->setAccessibleName(QStringLiteral("Current Markers"));
    up_ = makeButton("up_", "Move &up");
    down_ = makeButton("down_", "Move do&wn");
    for (QPushButton* button : {up_, down_})
        button->setToolTip(QStringLiteral("The first marker that stands in a sector is told"));
    delete_ = makeButton("delete_", "&Delete");
    done_ = makeButton("done_", "D&one");
}

void frmSectorMarkers::arrange() {
    auto* typed = new QGridLayout;
    typed->setSpacing(kSpacing);
    typed->addWidget(nameLabel_, 0, 0);
    typed->addWidget(name_, 0, 1, 1, 4);
    typed->addWidget(markerLabel_, 1, 0);
    typed->addWidget(marker_, 1, 1, 1, 2);
    typed->addWidget(typeLabel_, 1, 3);
    typed->addWidget(type_, 1, 4);
    typed->addWidget(positionLabel_, 2, 0);
    typed->addWidget(position_, 2, 1);
    typed->addWidget(repeating_, 2, 2, 1, 3);
    typed->setColumnStretch(2, 1);
    auto* enter = new QHBoxLayout;
    enter->setSpacing(kSpacing);
    enter->addWidget(remark_, 1);
    enter->addWidget(add_);
    enter->addWidget(clear_);
    enter->addWidget(preview_);
    auto* entry = new QVBoxLayout(entry_);
    entry->setSpacing(kSpacing);
    entry->addLayout(typed);
    entry->addWidget(pageRemark_);
    entry->addLayout(enter);

    auto* list = new QVBoxLayout(list_);
    list->setSpacing(kSpacing);
    list->addWidget(markers_, 1);
    auto* change = new QHBoxLayout;
    change->setSpacing(kSpacing);
    for (QPushButton* button : {up_, down_, delete_}) change->addWidget(button);
    change->addStretch(1);
    list->addLayout(change);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(entry_);
    all->addWidget(list_, 1);
    all->addWidget(done_, 0, Qt::AlignRight);
    resize(740, 520);
}

// What is typed is judged at once, so each letter is a step.
void frmSectorMarkers::connectControls() {
    using Fields = SectorMarkersEditor::Fields;
    const std::pair<QLineEdit*, std::string Fields::*> boxes[] = {
        {name_, &Fields::name}, {marker_, &Fields::marker}, {position_, &Fields::position}};
    for (const auto& [box, field] : boxes) {
        step(box, &QLineEdit::textChanged,
             [this, field = field](const QString& text) { editor_.fields.*field = fromQt(text); });
        enterPresses(*box, *add_);
    }
    step(type_, &QComboBox::currentIndexChanged, [this](int index) { editor_.fields.hexadecimal = index == 1; });
    step(repeating_, &QCheckBox::toggled, [this](bool ticked) { editor_.fields.repeating = ticked; });
    click(add_, [this] {
        editor_.addOrUpdate();
        focus("name_");
    });
    click(clear_, [this] {
        editor_.clear();
        focus("name_");
    });
    connect(preview_, &QPushButton::clicked, this, &frmSectorMarkers::showPreview);
}

void frmSectorMarkers::connectList() {
    const auto select = [this](int row) { editor_.selectRow(row); };
    step(markers_, &Grid::rowClicked, select);
    step(markers_, &Grid::currentRowChanged, select);
    connect(markers_, &Grid::keyPressed, this, [this](int, int key) {
        if (key == Qt::Key_Delete)
            delete_->click();
    });
    click(up_, [this] { editor_.moveUp(); });
    click(down_, [this] { editor_.moveDown(); });
    click(delete_, [this] { editor_.deleteSelected(); });
    connect(done_, &QPushButton::clicked, this, &QWidget::close);
    closeOnEscape();
}

// This screen blocks every other window, so the preview is modal, too.
void frmSectorMarkers::showPreview() {
    if (const auto marker = editor_.pattern())
        context_.navigator.openModal(Screen::PreviewBadSector, SectorPreview{markedSector(*marker), false});
}

void frmSectorMarkers::showControls() {
    std::vector<GridRow> rows;
    rows.reserve(editor_.rows().size());
    for (const auto& row : editor_.rows()) rows.push_back(gridRow(row));
    markers_->setRows(std::move(rows));
    showCurrentRow(*markers_, editor_.selected());
    showText(*name_, editor_.fields.name);
    showText(*marker_, editor_.fields.marker);
    showText(*position_, editor_.fields.position);
    type_->setCurrentIndex(editor_.fields.hexadecimal ? 1 : 0);
    repeating_->setChecked(editor_.fields.repeating);
    showText(*remark_, editor_.remark());
    add_->setText(editor_.updating() ? QStringLiteral("&Update") : QStringLiteral("&Add"));
    add_->setEnabled(editor_.typed().has_value());
    preview_->setEnabled(editor_.pattern().has_value());
    up_->setEnabled(editor_.canMoveUp());
    down_->setEnabled(editor_.canMoveDown());
    delete_->setEnabled(editor_.selected() >= 0);
}

// What could not be saved at its moment is saved now.
void frmSectorMarkers::leaveOrAsk() {
    if (editor_.saveToClose())
        StepScreen::leaveOrAsk();
}

}  // namespace quillon
