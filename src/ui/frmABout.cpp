// SPDX-License-Identifier: MIT
#include "ui/frmABout.h"

#include <QApplication>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/version.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr int kPictureSize = 96;

QLabel* addLabel(QVBoxLayout& layout, const char* name, const QString& text) {
    auto* label = new QLabel(text);
    label->setObjectName(QLatin1String(name));
    label->setAlignment(Qt::AlignHCenter);
    makePlain(*label);
    layout.addWidget(label);
    return label;
}

}  // namespace

frmABout::frmABout() {
    setObjectName(QStringLiteral("frmABout"));
    setWindowTitle(QStringLiteral("About"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(48, 32, 48, 24);
    layout->setSpacing(kSpacing);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    QLabel* picture = addLabel(*layout, "Picture1", {});
    picture->setPixmap(QApplication::windowIcon().pixmap(QSize(kPictureSize, kPictureSize), devicePixelRatio()));
    picture->setAccessibleName(QStringLiteral("Quillon"));
    QLabel* product = addLabel(*layout, "Label1", QStringLiteral("Quillon"));
    QFont large = product->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    product->setFont(large);
    const Version version = programVersion();
    addLabel(*layout, "Label2",
             QStringLiteral("Version : %1.%2.%3").arg(version.major).arg(version.minor).arg(version.revision));
    makeRemark(*addLabel(*layout, "Label3", QStringLiteral("The Quillon project, 2026")));
    makeRemark(*addLabel(*layout, "Label4", QStringLiteral("www.quillon.example")));
    layout->addSpacing(kSpacing);

    auto* close = new QPushButton(QStringLiteral("OK"));
    close->setObjectName(QStringLiteral("Command1"));
    close->setDefault(true);
    layout->addWidget(close, 0, Qt::AlignHCenter);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace quillon
