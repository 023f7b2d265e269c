// SPDX-License-Identifier: MIT
#include "answers/frmCopies.h"

#include <array>

#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHeaderView>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "text/list_text.h"
#include "widgets/control_maker.h"
#include "widgets/grid.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"
#include "widgets/tick_button.h"

namespace quillon {
namespace {

constexpr QSize kFirstSize(760, 480);
constexpr int kSteps = 1000;  // of the bar

QCheckBox* makeChoice(const char* name, const char* caption, const char* toolTip) {
    QCheckBox* box = makeCheck(name, caption);
    box->setToolTip(QLatin1String(toolTip));
    return box;
}

}  // namespace

int CopyNotes::rowCount() const {
    return static_cast<int>(state_.findings.empty() ? state_.failures.size() : state_.findings.size());
}

std::string CopyNotes::cell(int row, int column) const {
    const auto place = static_cast<std::size_t>(row);
    if (!state_.findings.empty())
        return column == 0 ? state_.findings[place] : "";
    return column == 0 ? state_.failures[place].first : state_.failures[place].second;
}

frmCopies::frmCopies(const ScreenContext& context, CopiesHandover handover)
    : StepScreen(context, Screen::Copies, "frmCopies", "Copy Files"),
      desk_(context.installation, context.surroundings, *this, std::move(handover)) {
    createChoices();
    createNotes();
    arrange();
    connectControls();
    begin();
    pickTarget->setFocus();
}

void frmCopies::createChoices() {
    what = make<ElidedLabel>("what");
    what->setAccessibleName(QStringLiteral("Which files"));
    choices = makeFrame("choices", "Copy");
    pickTarget = makeButton("pickTarget", "&Target ...");
    target = make<ElidedLabel>("target");
    target->setAccessibleName(QStringLiteral("Target"));
    copyGrades = new TickButton("copyGrades", captionsOfGrades());
    for (const GradePreset& preset : gradePresets())
        copyGrades->addPreset(preset.control, preset.caption, ticksOf(preset.grades));
    byGrade = makeChoice("byGrade", "A &folder for each grade", "Each grade's tree stands below a folder of its name");
    rightNames = makeChoice("rightNames", "Right &names",
                            "Files without or with a wrong extension get the one that their first bytes prove, behind "
                            "their name");
    verify = makeChoice("verify", "&Verify copies", "Each copy is read back from the disk and compared");
    salvage = makeChoice("salvage", "Salvage &unreadable parts",
                         "What cannot be read of a file is left as a gap of zeros, and the rest of it is copied");
    failedOnly = makeChoice("failedOnly", "Only &what is not copied yet",
                            "A file that the target has is left alone where its bytes give the recorded check sum and "
                            "its source is as it was");
}

void frmCopies::createNotes() {
    notes = make<Grid>("notes");
    notes->setAccessibleName(QStringLiteral("What does not go well"));
    notes->setTextElideMode(Qt::ElideMiddle);
    notes->rows().setSource(&rows_);
    notes->setMinimumHeight(96);
    bar = makeProgress("bar", "Progress of the copy");
    bar->setMaximum(kSteps);
    status = make<ElidedLabel>("status");
    status->setAccessibleName(QStringLiteral("Status"));
    copy = makeButton("copy", "&Copy");
    makePrimary(*copy);
    goOn = makeButton("goOn", "&Go on");
    cancel = makeButton("cancel", "C&ancel");
    stop = makeButton("stop", "&Stop");
    done = makeButton("done", "&Done");
    for (QPushButton* button : {copy, goOn, cancel, stop, done}) button->setMinimumWidth(92);
}

void frmCopies::arrange() {
    auto* grid = new QGridLayout(choices);
    grid->setSpacing(kSpacing);
    auto* where = new QHBoxLayout;
    where->setSpacing(kSpacing);
    where->addWidget(pickTarget);
    where->addWidget(target, 1);
    grid->addLayout(where, 0, 0, 1, 3);
    const std::array<QWidget*, 6> parts = {copyGrades, byGrade, rightNames, verify, salvage, failedOnly};
    for (int i = 0; i < 6; ++i)
        grid->addWidget(parts[static_cast<std::size_t>(i)], 1 + i / 3, i % 3, Qt::AlignLeft | Qt::AlignVCenter);
    for (int column = 0; column < 3; ++column) grid->setColumnStretch(column, 1);
    auto* row = new QHBoxLayout;
    row->setSpacing(kSpacing);
    for (QPushButton* button : {copy, goOn, cancel, stop}) row->addWidget(button);
    row->addStretch(1);
    row->addWidget(done);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kSpacing);
    layout->addWidget(what);
    layout->addWidget(choices);
    layout->addWidget(notes, 1);
    layout->addWidget(bar);
    layout->addWidget(status);
    layout->addLayout(row);
    resize(kFirstSize);
}

void frmCopies::connectControls() {
    click(pickTarget, [this] { desk_.pickTarget(); });
    hear(copyGrades, &TickButton::changed, [this] {
        desk_.state.grades = gradesOfTicks(copyGrades->ticks());
        showState();
    });
    const std::pair<QCheckBox*, bool*> boxes[] = {{byGrade, &desk_.state.byGrade},
                                                  {rightNames, &desk_.state.rightNames},
                                                  {verify, &desk_.state.verify},
                                                  {salvage, &desk_.state.salvage},
                                                  {failedOnly, &desk_.state.failedOnly}};
    for (const auto& [box, choice] : boxes)
        hear(box, &QCheckBox::toggled, [choice = choice](bool ticked) { *choice = ticked; });
    click(copy, [this] { desk_.copy(); });
    click(goOn, [this] { desk_.goOn(); });
    click(cancel, [this] { desk_.cancel(); });
    click(stop, [this] { desk_.stop(); });
    connect(done, &QPushButton::clicked, this, &frmCopies::close);
    closeOnEscape();
}

void frmCopies::closeEvent(QCloseEvent* event) {
    desk_.stop();
    StepScreen::closeEvent(event);
}

void frmCopies::hideEvent(QHideEvent* event) {
    if (!event->spontaneous())
        desk_.stop();
    StepScreen::hideEvent(event);
}

void frmCopies::showControls() {
    showText(*what, desk_.state.what);
    showChoices();
    showNotes();
    showButtons();
}

void frmCopies::showChoices() {
    const CopyDeskState& state = desk_.state;
    choices->setEnabled(!desk_.isBusy() && state.stage != CopyStage::Asking);
    showText(*target, state.target ? readable(state.target->native()) : "None");
    copyGrades->setTicks(ticksOf(state.grades));
    copyGrades->setCaption("G&rades: " + countOfGrades(state.grades));
    byGrade->setChecked(state.byGrade);
    rightNames->setChecked(state.rightNames);
    verify->setChecked(state.verify);
    salvage->setChecked(state.salvage);
    failedOnly->setChecked(state.failedOnly);
}

// Widths that a person has drawn stay as long as the rows are of one kind.
void frmCopies::showColumns(bool ofFindings) {
    if (shownFindings_ == ofFindings)
        return;
    shownFindings_ = ofFindings;
    if (ofFindings)
        notes->setColumns({{"What will not go well", 680, false}});
    else
        notes->setColumns({{"File", 360, false}, {"Why it is not copied", 320, false}});
}

void frmCopies::showNotes() {
    const CopyDeskState& state = desk_.state;
    if (shownContents_ != state.contents) {
        shownContents_ = state.contents;
        showColumns(!state.findings.empty());
        notes->rows().sourceChanged();
    }
    notes->rows().sourceGrew();
    showText(*status, state.status);
    setTone(*status, state.trouble ? "trouble" : state.stage == CopyStage::Ended ? "done" : "");
    const auto files = std::max<std::int64_t>(state.files, 1);
    bar->setValue(static_cast<int>(std::min(state.done, files) * kSteps / files));
    bar->setVisible(state.stage == CopyStage::Copying);
}

void frmCopies::showButtons() {
    const CopyStage stage = desk_.state.stage;
    const bool asks = stage == CopyStage::Asking;
    copy->setVisible(!asks);
    copy->setEnabled(!desk_.isBusy());
    goOn->setVisible(asks);
    cancel->setVisible(asks);
    stop->setVisible(!asks);
    stop->setEnabled(desk_.isBusy());
    showPointer(*this, stage == CopyStage::Looking);
}

}  // namespace quillon
