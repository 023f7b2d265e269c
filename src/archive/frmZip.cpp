// SPDX-License-Identifier: MIT
#include "archive/frmZip.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "text/list_text.h"
#include "ui/qt_text.h"
#include "ui/show_state.h"
#include "ui/step_guard.h"
#include "ui/theme.h"
#include "ui/window_event_loop.h"

namespace quillon {

frmZip::frmZip(const ScreenContext& context, ZipHandover handOver, SharedNetwork network)
    : context_(context),
      handOver_(std::move(handOver)),
      network_(std::move(network)),
      exchange_(AlertScreen::Zip, wServer_, wClient_, context.installation, context.surroundings,
                [this] { return zip_.state.jobId; }),
      zip_(context.installation, context.surroundings, exchange_, *this) {
    setObjectName(QStringLiteral("frmZip"));
    setWindowTitle(QStringLiteral("Zip File Lists"));
    createControls();
    zip_.state.jobId = handOver_.jobId;
    zip_.state.separator = handOver_.separator;
    Text1->setText(toQt(handOver_.jobId));
    Text2->setText(toQt(handOver_.separator));
    zip_.load();
    showState();
    connectControls();
}

// Inputs go in, the operation runs, what came of it is shown.
template <typename Operation>
void frmZip::run(Operation operation) {
    {
        const StepGuard guard(running_);
        readInputs();
        operation();
        showState();
        context_.loop.flush();
    }
    if (running_ == 0 && closeAsked_)
        close();
}

void frmZip::connectControls() {
    connect(iGrid1, &Grid::rowDoubleClicked, this, [this](int row) {
        if (row >= 0)
            run([this, row] { zip_.removeRow(static_cast<std::size_t>(row)); });
    });
    connect(Command1, &QPushButton::clicked, this, [this] { run([this] { zip_.addFiles(); }); });
    connect(Command5, &QPushButton::clicked, this, [this] { run([this] { zip_.reload(); }); });
    connect(Check3, &QCheckBox::toggled, this, [this](bool on) { run([this, on] { zip_.setIgnoreSeparator(on); }); });
    connect(Text3, &QLineEdit::textChanged, this,
            [this](const QString& text) { run([this, text] { zip_.setPassword(fromQt(text)); }); });
    connect(Check1, &QCheckBox::toggled, this, [this] { run([] {}); });
    connect(Command2, &QPushButton::clicked, this, [this] { run([this] { zip_.changeDestination(); }); });
    connect(Command7, &QPushButton::clicked, this, &frmZip::Command7_Click);
    connect(Command8, &QPushButton::clicked, this, &frmZip::Command8_Click);
    connect(Command4, &QPushButton::clicked, this, [this] { run([this] { zip_.zip(); }); });
    connect(Command3, &QPushButton::clicked, this, &frmZip::Command3_Click);
}

void frmZip::readInputs() {
    ZipState& state = zip_.state;
    state.jobId = fromQt(Text1->text());
    state.separator = fromQt(Text2->text());
    state.maskPassword = Check1->isChecked();
    state.retainLists = Check2->isChecked();
    state.showCompany = Check4->isChecked();
    state.showComputer = Check5->isChecked();
    state.recipientIndex = Combo1->currentIndex();
    const int row = iGrid1->currentRow();
    state.selectedRow = row < 0 ? std::nullopt : std::optional<std::size_t>(static_cast<std::size_t>(row));
}

void frmZip::showState() {
    const ZipState& state = zip_.state;
    showRows();
    showRecipients();
    if (fromQt(Text1->text()) != state.jobId)
        Text1->setText(toQt(state.jobId));
    Text3->setEchoMode(state.maskPassword ? QLineEdit::Password : QLineEdit::Normal);
    Check2->setChecked(state.retainLists);
    Command8->setEnabled(state.testEnabled);
    ProgressBar1->setVisible(state.progressVisible);
    ProgressBar1->setValue(static_cast<int>(state.progress));
    if (state.busyPointer)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
}

void frmZip::showRows() {
    const ZipState& state = zip_.state;
    if (state.rows != shownRows_) {
        shownRows_ = state.rows;
        iGrid1->clearRows();
        std::vector<GridRow> rows;
        for (const auto& path : state.rows) rows.push_back({{readable(path.native())}, std::nullopt});
        iGrid1->addRows(std::move(rows));
    }
    if (state.selectedRow && static_cast<int>(*state.selectedRow) < iGrid1->rowCount())
        iGrid1->setCurrentRow(static_cast<int>(*state.selectedRow));
}

void frmZip::showRecipients() {
    const ZipState& state = zip_.state;
    showItems(*Combo1, state.recipients, state.recipientIndex);
    Combo1->setEnabled(state.recipientsEnabled);
}

void frmZip::beep() {
    QApplication::beep();
}

// Query Network
void frmZip::Command7_Click() {
    if (network_)
        run([this] { zip_.queryNetwork(network_); });
}

// Test
void frmZip::Command8_Click() {
    run([this] { zip_.testRecipient(exchange_); });
}

// Close
void frmZip::Command3_Click() {
    close();
}

void frmZip::closeEvent(QCloseEvent* event) {
    if (running_ > 0) {
        closeAsked_ = true;
        event->ignore();
        return;
    }
    event->accept();
    context_.navigator.showMain();
    context_.navigator.unload(Screen::Zip);
}

}  // namespace quillon
