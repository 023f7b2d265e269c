// SPDX-License-Identifier: MIT
#include "setup/frmSetupNetwork.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {

frmSetupNetwork::frmSetupNetwork(const ScreenContext& context)
    : StepScreen(context, Screen::SetupNetwork, "frmSetupNetwork", "Set up Network"),
      setup_(context.installation, context.surroundings, *this) {
    createControls();
    connectControls();
    begin();
}

void frmSetupNetwork::createControls() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->setSpacing(kMargin);
    QGroupBox* frame = makeFrame("frameFiles", "Files to copy to Network");
    auto* content = new QVBoxLayout(frame);
    content->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    content->setSpacing(kSpacing);
    for (std::size_t i = 0; i < Check1.size(); ++i) {
        Check1[i] = makeCheck(("Check1_" + std::to_string(i)).c_str(), setup_.state.boxes[i].caption);
        content->addWidget(Check1[i]);
    }
    content->addStretch(1);
    auto* all = new QHBoxLayout;
    all->setSpacing(kSpacing);
    Command3[1] = makeButton("Command3_1", "Select All");
    Command3[0] = makeButton("Command3_0", "Clear All");
    all->addWidget(Command3[1]);
    all->addWidget(Command3[0]);
    all->addStretch(1);
    content->addLayout(all);
    layout->addWidget(frame, 1);

    auto* commands = new QHBoxLayout;
    commands->setSpacing(kSpacing);
    Label1 = make<ElidedLabel>("Label1");
    Command1 = makeButton("Command1", "Copy");
    Command2 = makeButton("Command2", "Cancel");
    makePrimary(*Command1);
    commands->addWidget(Label1, 1);
    commands->addWidget(Command1);
    commands->addWidget(Command2);
    layout->addLayout(commands);
    resize(420, 300);
}

void frmSetupNetwork::connectControls() {
    for (std::size_t i = 0; i < Check1.size(); ++i)
        hear(Check1[i], &QCheckBox::toggled, [this, i](bool ticked) { setup_.state.boxes[i].ticked = ticked; });
    for (std::size_t i = 0; i < Command3.size(); ++i) click(Command3[i], [this, i] { setup_.setAll(i == 1); });
    click(Command1, [this] { Command1_Click(); });
    connect(Command2, &QPushButton::clicked, this, &QWidget::close);
    closeOnEscape();
}

void frmSetupNetwork::showControls() {
    for (std::size_t i = 0; i < Check1.size(); ++i) {
        Check1[i]->setChecked(setup_.state.boxes[i].ticked);
        Check1[i]->setEnabled(setup_.state.boxes[i].enabled);
    }
    Label1->setText(toQt(setup_.state.progress));
}

// Copy
void frmSetupNetwork::Command1_Click() {
    for (QPushButton* button : {Command1, Command2, Command3[0], Command3[1]}) button->setEnabled(false);
    setup_.copy();
    close();
}

}  // namespace quillon
