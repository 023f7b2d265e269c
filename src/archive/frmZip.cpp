// SPDX-License-Identifier: MIT
#include "archive/frmZip.h"

#include <chrono>
#include <utility>

#include "text/list_text.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"

namespace quillon {

namespace {

constexpr std::chrono::milliseconds kLookAgain{200};  // whether the archive folder has answered

}  // namespace

frmZip::frmZip(const ScreenContext& context, ZipHandover handOver, SharedNetwork network)
    : StepScreen(context, Screen::Zip, "frmZip", "Zip File Lists"),
      network_(std::move(network)),
      exchange_(
          AlertScreen::Zip, wServer_, wClient_, context.installation, context.surroundings,
          [this] { return zip_.state.jobId; }, context.alertPorts),
      zip_(context.installation, context.surroundings, exchange_, *this, context.warnInLog) {
    createControls();
    zip_.load(std::move(handOver));
    connectControls();
    begin();
}

void frmZip::connectControls() {
    lookAgain_.setSingleShot(true);
    hear(&lookAgain_, &QTimer::timeout, [this] { showNotice(); });
    step(iGrid1, &Grid::rowDoubleClicked, [this](int row) { removeFile(row); });
    step(iGrid1, &Grid::keyPressed, [this](int row, int key) {
        if (key == Qt::Key_Delete)
            removeFile(row);
    });
    click(Command1, [this] { zip_.addFiles(); });
    click(Command5, [this] { zip_.reload(); });
    step(Check3, &QCheckBox::toggled, [this](bool on) { zip_.setIgnoreSeparator(on); });
    step(Text3, &QLineEdit::textChanged, [this](const QString& text) { zip_.setPassword(fromQt(text)); });
    step(Check1, &QCheckBox::toggled, [this](bool on) { zip_.state.maskPassword = on; });
    click(Command2, [this] { zip_.changeDestination(); });
    click(Command7, [this] { Command7_Click(); });
    click(Command8, [this] { zip_.testRecipient(exchange_); });
    click(Command4, [this] { zip_.zip(); });
    hear(buttonCancel_, &QPushButton::clicked, [this] { zip_.cancel(); });
    connect(Command3, &QPushButton::clicked, this, &QWidget::close);
    closeOnEscape();
    hearPlainInputs();
}

// What is read when a step comes to it is heard at once, also while that step turns the event loop.
void frmZip::hearPlainInputs() {
    ZipState& state = zip_.state;
    hear(iGrid1, &Grid::currentRowChanged, [&state](int row) {
        state.selectedRow = row < 0 ? std::nullopt : std::optional<std::size_t>(static_cast<std::size_t>(row));
    });
    const std::pair<QLineEdit*, std::string*> names[] = {{Text1, &state.jobId}, {Text2, &state.separator}};
    for (const auto& [box, field] : names) {
        hear(box, &QLineEdit::textChanged, [this, field = field](const QString& text) {
            *field = fromQt(text);
            zip_.state.notice.clear();
            showNotice();
        });
    }
    const std::pair<QCheckBox*, bool*> boxes[] = {
        {Check2, &state.retainLists}, {Check4, &state.showCompany}, {Check5, &state.showComputer}};
    for (const auto& [box, field] : boxes) hear(box, &QCheckBox::toggled, [field = field](bool on) { *field = on; });
    hear(Combo1, &QComboBox::currentIndexChanged, [&state](int index) { state.recipients.index = index; });
}

void frmZip::showControls() {
    const ZipState& state = zip_.state;
    showFiles();
    showChoice(*Combo1, state.recipients);
    showText(*Text1, state.jobId);
    showText(*Text2, state.separator);
    Text3->setEchoMode(state.maskPassword ? QLineEdit::Password : QLineEdit::Normal);
    Check2->setChecked(state.retainLists);
    Check4->setChecked(state.showCompany);
    Check5->setChecked(state.showComputer);
    Command8->setEnabled(state.recipients.testEnabled);
    ProgressBar1->setVisible(state.progressVisible);
    ProgressBar1->setValue(static_cast<int>(state.progress));
    showNotice();
    buttonCancel_->setVisible(state.cancelEnabled);
    showPointer(*this, state.busyPointer);
}

void frmZip::showNotice() {
    labelNotice_->setText(toQt(zip_.noticeLine()));
    if (zip_.waitsForFolder())
        lookAgain_.start(kLookAgain);
}

void frmZip::showFiles() {
    const ZipState& state = zip_.state;
    std::vector<GridRow> rows;
    for (const auto& path : state.rows) rows.push_back({{readable(path.native())}, std::nullopt});
    iGrid1->setRows(std::move(rows));
    if (state.selectedRow && *state.selectedRow < state.rows.size())
        showCurrentRow(*iGrid1, static_cast<int>(*state.selectedRow));
}

void frmZip::removeFile(int row) {
    if (row >= 0)
        zip_.removeRow(static_cast<std::size_t>(row));
}

// Query Network
void frmZip::Command7_Click() {
    if (network_)
        zip_.queryNetwork(network_);
}

}  // namespace quillon
