// SPDX-License-Identifier: MIT
#include "editors/frmErrors.h"

#include <algorithm>
#include <string_view>

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/control_maker.h"
#include "widgets/enter_key.h"
#include "widgets/page_remark.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

// The letter of each label that gives its box the keyboard.
constexpr std::string_view kKeys = "hcnueatzbd";
static_assert(kKeys.size() == kMessageCount);

std::string withKey(const char* label, char key) {
    std::string marked(label);
    const auto isKey = [key](char c) { return c == key || c == key - 'a' + 'A'; };
    marked.insert(std::ranges::find_if(marked, isKey), '&');
    return marked;
}

}  // namespace

frmErrors::frmErrors(const ScreenContext& context, ReportMessages& messages)
    : StepScreen(context, Screen::Errors, "frmErrors", "Default Report Messages"),
      editor_(context.installation, context.surroundings.dialogs, context.kept, messages) {
    createControls();
    connectControls();
    editor_.load();
    begin();
    tError[0]->setFocus();
}

void frmErrors::createControls() {
    Frame1 = makeFrame("Frame1", "Default Error Messages");
    auto* grid = new QGridLayout(Frame1);
    grid->setSpacing(kSpacing);
    for (std::size_t i = 0; i < kMessageCount; ++i) {
        const std::string suffix = "_" + std::to_string(i);
        Label1[i] = makeLabel(("Label1" + suffix).c_str(), withKey(kMessageFields[i].label, kKeys[i]).c_str());
        tError[i] = make<QLineEdit>(("tError" + suffix).c_str());
        Label1[i]->setBuddy(tError[i]);
        grid->addWidget(Label1[i], static_cast<int>(i), 0);
        grid->addWidget(tError[i], static_cast<int>(i), 1);
    }
    grid->setColumnStretch(1, 1);
    Command1 = makeButton("Command1", "O&K");
    makePrimary(*Command1);

    pageRemark_ = make<ElidedLabel>("pageRemark_");
    tellLossOnPage(*pageRemark_, {tError.begin(), tError.end()});
    saveRemark_ = make<ElidedLabel>("saveRemark_");

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(Frame1);
    all->addStretch(1);
    all->addWidget(pageRemark_);
    all->addWidget(saveRemark_);
    all->addWidget(Command1, 0, Qt::AlignRight);
    resize(560, sizeHint().height());
}

void frmErrors::connectControls() {
    for (std::size_t i = 0; i < kMessageCount; ++i) {
        hear(tError[i], &QLineEdit::textChanged, [this, i](const QString& text) { editor_.texts[i] = fromQt(text); });
        enterPresses(*tError[i], *Command1);
    }
    click(Command1, [this] { Command1_Click(); });
    closeOnEscape();
}

// A save that failed leaves the screen open with all that was typed.
void frmErrors::Command1_Click() {
    if (editor_.save())
        close();
    else
        beep();
}

void frmErrors::showControls() {
    for (std::size_t i = 0; i < kMessageCount; ++i) showText(*tError[i], editor_.texts[i]);
    showText(*saveRemark_, editor_.failure);
    saveRemark_->setVisible(!editor_.failure.empty());
}

}  // namespace quillon
