// SPDX-License-Identifier: MIT
#include "editors/frmHistory.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

#include "text/list_text.h"
#include "widgets/control_maker.h"
#include "widgets/enter_key.h"
#include "widgets/grid.h"
#include "widgets/polled_label.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {

frmHistory::frmHistory(const ScreenContext& context)
    : StepScreen(context, Screen::History, "frmHistory", "Database History"),
      browser_(context.installation, context.surroundings.dialogs, context.kept) {
    createControls();
    arrange();
    connectControls();
    browser_.load();
    begin();
    changes_->setFocus();
}

void frmHistory::createControls() {
    heading_ = makeLabel("heading_", "");
    changes_ = make<Grid>("changes_");
    changes_->setColumns({{"When", 170}, {"What", 210}, {"Screen", 120}, {"Computer", 100}, {"User", 80}, {"Job", 60}});
    changes_->setAccessibleName(QStringLiteral("Changes of the database"));
    changes_->setMinimumHeight(120);
    details_ = make<QPlainTextEdit>("details_");
    details_->setReadOnly(true);
    details_->setTabChangesFocus(true);
    details_->setAccessibleName(QStringLiteral("The chosen change"));
    details_->setMinimumHeight(80);
    effect_ = new PolledLabel("effect_", [this] { return browser_.lookForEffect(); });
    effect_->setAccessibleName(QStringLiteral("What the change did"));
    noteLabel_ = makeLabel("noteLabel_", "&Note");
    note_ = make<QLineEdit>("note_");
    note_->setPlaceholderText(QStringLiteral("Why this change was made"));
    noteLabel_->setBuddy(note_);
    addNote_ = makeButton("addNote_", "&Add Note");
    undo_ = makeButton("undo_", "&Undo This Change");
    done_ = makeButton("done_", "&Done");
    makePrimary(*done_);
}

void frmHistory::arrange() {
    auto* parts = make<QSplitter>("historyParts_");
    parts->setOrientation(Qt::Vertical);
    parts->setChildrenCollapsible(false);
    parts->addWidget(changes_);
    parts->addWidget(details_);
    parts->setStretchFactor(0, 2);
    parts->setStretchFactor(1, 1);
    auto* remark = new QHBoxLayout;
    remark->setSpacing(kSpacing);
    remark->addWidget(noteLabel_);
    remark->addWidget(note_, 1);
    remark->addWidget(addNote_);
    auto* below = new QHBoxLayout;
    below->setSpacing(kSpacing);
    below->addWidget(undo_);
    below->addStretch(1);
    below->addWidget(done_);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(heading_);
    all->addWidget(parts, 1);
    all->addWidget(effect_);
    all->addLayout(remark);
    all->addLayout(below);
    resize(900, 480);
}

void frmHistory::connectControls() {
    const auto select = [this](int row) { browser_.selectRow(row); };
    step(changes_, &Grid::rowClicked, select);
    step(changes_, &Grid::currentRowChanged, select);
    step(note_, &QLineEdit::textChanged, [this](const QString& text) { browser_.remark = fromQt(text); });
    enterPresses(*note_, *addNote_);
    click(addNote_, [this] { browser_.addRemark(); });
    click(undo_, [this] { browser_.undo(); });
    connect(done_, &QPushButton::clicked, this, &QWidget::close);
    closeOnEscape();
}

void frmHistory::showControls() {
    heading_->setText(toQt(browser_.heading()));
    std::vector<GridRow> rows;
    rows.reserve(browser_.rows().size());
    const auto shown = [](const std::string& text) { return readable(std::string_view(text)); };
    for (const auto& row : browser_.rows()) {
        const DatabaseChange& change = row.change;
        const std::string what = differenceText(row) + (row.undoneBy.empty() ? "" : ", taken back");
        rows.push_back({{momentText(change.id), what, shown(change.screen), shown(change.computer), shown(change.user),
                         shown(change.job)},
                        {}});
    }
    changes_->setRows(std::move(rows));
    showCurrentRow(*changes_, browser_.current());
    const QString details = toQt(browser_.details());
    if (details_->toPlainText() != details)
        details_->setPlainText(details);
    showText(*note_, browser_.remark);
    addNote_->setEnabled(browser_.mayAddRemark());
    undo_->setEnabled(browser_.mayUndo());
}

}  // namespace quillon
