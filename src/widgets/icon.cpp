// SPDX-License-Identifier: MIT
// Icons are drawn when they are shown, in the colour that the text has then and as large as they are asked for: so they
// follow a change of the look and are sharp at every scale.
#include <QApplication>
#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

#include "widgets/theme.h"

// The icons stand in a static library, whose resources a program has to ask for; outside of any namespace.
static void loadIconResources() {
    Q_INIT_RESOURCE(icons);
}

namespace quillon {
namespace {

class SvgIcon final : public QIconEngine {
public:
    SvgIcon(QString name, QByteArray svg) : name_(std::move(name)), svg_(std::move(svg)) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State /*state*/) override {
        QByteArray coloured = svg_;
        coloured.replace("currentColor", colour(mode).name().toLatin1());
        QSvgRenderer(coloured).render(painter, place);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        const QString key =
            QStringLiteral("%1 %2 %3 %4").arg(name_, colour(mode).name()).arg(size.width()).arg(size.height());
        QPixmap picture;
        if (QPixmapCache::find(key, &picture))
            return picture;
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        QPixmapCache::insert(key, picture);
        return picture;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SvgIcon(name_, svg_); }

    // A task bar asks for what there is.
    [[nodiscard]] QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        QList<QSize> sizes;
        for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) sizes.append({size, size});
        return sizes;
    }

private:
    [[nodiscard]] static QColor colour(QIcon::Mode mode) {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        return QApplication::palette().color(group, QPalette::ButtonText);
    }

    QString name_;
    QByteArray svg_;
};

}  // namespace

QIcon icon(const QString& name) {
    loadIconResources();
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QIcon(new SvgIcon(name, file.readAll()));
}

}  // namespace quillon
