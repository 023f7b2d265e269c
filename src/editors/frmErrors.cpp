// SPDX-License-Identifier: MIT
#include "editors/frmErrors.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "widgets/control_maker.h"
#include "widgets/navigator.h"
#include "widgets/qt_text.h"
#include "widgets/show_state.h"
#include "widgets/theme.h"

namespace quillon {

frmErrors::frmErrors(const ScreenContext& context, ReportMessages& messages)
    : context_(context), editor_(context.installation, context.surroundings.dialogs, context.kept, messages) {
    setObjectName(QStringLiteral("frmErrors"));
    setWindowTitle(QStringLiteral("Default Report Messages"));
    createControls();
    connectControls();
    editor_.load();
    for (std::size_t i = 0; i < kMessageCount; ++i) showText(*tError[i], editor_.texts[i]);
    tError[0]->setFocus();
}

void frmErrors::createControls() {
    Frame1 = makeFrame("Frame1", "Default Error Messages");
    auto* grid = new QGridLayout(Frame1);
    grid->setSpacing(kSpacing);
    for (std::size_t i = 0; i < kMessageCount; ++i) {
        const std::string suffix = "_" + std::to_string(i);
        Label1[i] = makeLabel(("Label1" + suffix).c_str(), kMessageFields[i].label);
        tError[i] = make<QLineEdit>(("tError" + suffix).c_str());
        Label1[i]->setBuddy(tError[i]);
        grid->addWidget(Label1[i], static_cast<int>(i), 0);
        grid->addWidget(tError[i], static_cast<int>(i), 1);
    }
    grid->setColumnStretch(1, 1);
    Command1 = makeButton("Command1", "OK");
    makePrimary(*Command1);

    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    all->setSpacing(kSpacing);
    all->addWidget(Frame1);
    all->addStretch(1);
    all->addWidget(Command1, 0, Qt::AlignRight);
    resize(560, sizeHint().height());
}

void frmErrors::connectControls() {
    for (std::size_t i = 0; i < kMessageCount; ++i) {
        connect(tError[i], &QLineEdit::textChanged, this,
                [this, i](const QString& text) { editor_.texts[i] = fromQt(text); });
        connect(tError[i], &QLineEdit::returnPressed, Command1, &QPushButton::click);
    }
    connect(Command1, &QPushButton::clicked, this, &frmErrors::Command1_Click);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

// A save that failed leaves the screen open with all that was typed.
void frmErrors::Command1_Click() {
    const bool saved = editor_.save();
    showText(*tError.back(), editor_.texts.back());
    if (saved)
        close();
    else
        QApplication::beep();
}

void frmErrors::closeEvent(QCloseEvent* event) {
    event->accept();
    context_.navigator.showMain();
}

}  // namespace quillon
