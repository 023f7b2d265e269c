// SPDX-License-Identifier: MIT
#include "archive/frmZip.h"

#include <QApplication>
#include <QShortcut>

#include "text/list_text.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"

namespace quillon {

frmZip::frmZip(const ScreenContext& context, ZipHandover handOver, SharedNetwork network)
    : StepScreen(context.loop),
      context_(context),
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

void frmZip::connectControls() {
    connect(iGrid1, &Grid::rowDoubleClicked, this, &frmZip::removeFile);
    connect(iGrid1, &Grid::keyPressed, this, [this](int row, int key) {
        if (key == Qt::Key_Delete)
            removeFile(row);
    });
    connect(Command1, &QPushButton::clicked, this, [this] { run([this] { zip_.addFiles(); }); });
    connect(Command5, &QPushButton::clicked, this, [this] { run([this] { zip_.reload(); }); });
    connect(Check3, &QCheckBox::toggled, this, [this](bool on) { run([this, on] { zip_.setIgnoreSeparator(on); }); });
    connect(Text3, &QLineEdit::textChanged, this,
            [this](const QString& text) { run([this, text] { zip_.setPassword(fromQt(text)); }); });
    connect(Check1, &QCheckBox::toggled, this, [this] { run([] {}); });
    connectPlainInputs();
    connect(Command2, &QPushButton::clicked, this, [this] { run([this] { zip_.changeDestination(); }); });
    connect(Command7, &QPushButton::clicked, this, &frmZip::Command7_Click);
    connect(Command8, &QPushButton::clicked, this, &frmZip::Command8_Click);
    connect(Command4, &QPushButton::clicked, this, [this] { run([this] { zip_.zip(); }); });
    connect(Command3, &QPushButton::clicked, this, &frmZip::Command3_Click);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

// What is read when a step comes to it is heard at once, also while that step turns the event loop.
void frmZip::connectPlainInputs() {
    connect(iGrid1, &Grid::currentRowChanged, this, &frmZip::readInputs);
    for (const QLineEdit* box : {Text1, Text2}) connect(box, &QLineEdit::textChanged, this, &frmZip::readInputs);
    for (const QCheckBox* box : {Check2, Check4, Check5}) connect(box, &QCheckBox::toggled, this, &frmZip::readInputs);
    connect(Combo1, &QComboBox::currentIndexChanged, this, &frmZip::readInputs);
}

void frmZip::readInputs() {
    ZipState& state = zip_.state;
    state.jobId = fromQt(Text1->text());
    state.separator = fromQt(Text2->text());
    state.maskPassword = Check1->isChecked();
    state.retainLists = Check2->isChecked();
    state.showCompany = Check4->isChecked();
    state.showComputer = Check5->isChecked();
    state.recipients.index = Combo1->currentIndex();
    const int row = iGrid1->currentRow();
    state.selectedRow = row < 0 ? std::nullopt : std::optional<std::size_t>(static_cast<std::size_t>(row));
}

void frmZip::showState() {
    const ZipState& state = zip_.state;
    showFiles();
    showChoice(*Combo1, state.recipients);
    showText(*Text1, state.jobId);
    Text3->setEchoMode(state.maskPassword ? QLineEdit::Password : QLineEdit::Normal);
    showTick(*Check2, state.retainLists);
    showTick(*Check4, state.showCompany);
    showTick(*Check5, state.showComputer);
    Command8->setEnabled(state.recipients.testEnabled);
    ProgressBar1->setVisible(state.progressVisible);
    ProgressBar1->setValue(static_cast<int>(state.progress));
    showPointer(*this, state.busyPointer);
}

// The same files again leave the grid and its place alone.
void frmZip::showFiles() {
    const ZipState& state = zip_.state;
    if (state.rows != shownFiles_) {
        shownFiles_ = state.rows;
        std::vector<GridRow> rows;
        for (const auto& path : state.rows) rows.push_back({{readable(path.native())}, std::nullopt});
        showRows(*iGrid1, std::move(rows));
    }
    if (state.selectedRow && *state.selectedRow < state.rows.size())
        showCurrentRow(*iGrid1, static_cast<int>(*state.selectedRow));
}

void frmZip::beep() {
    QApplication::beep();
}

void frmZip::removeFile(int row) {
    if (row >= 0)
        run([this, row] { zip_.removeRow(static_cast<std::size_t>(row)); });
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

void frmZip::leaveOrAsk() {
    context_.navigator.showMain();
    context_.navigator.unload(Screen::Zip);
}

}  // namespace quillon
