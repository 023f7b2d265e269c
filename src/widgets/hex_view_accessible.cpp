// SPDX-License-Identifier: MIT
// The accessible side of the hex view.
#include "widgets/hex_view_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "widgets/hex_view.h"
#include "widgets/qt_text.h"

namespace quillon {
namespace {

class AccessibleHexView final : public QAccessibleWidget {
public:
    explicit AccessibleHexView(HexView* view) : QAccessibleWidget(view, QAccessible::Document), view_(view) {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value)
            return dump();
        if (kind == QAccessible::Description)
            return caret();
        return QAccessibleWidget::text(kind);
    }

private:
    QString dump() const {
        std::string lines;
        const HexLayout layout(static_cast<int>(view_->bytes().size()));
        for (int line = 0; line < layout.lines(); ++line) lines += hexLine(view_->bytes(), line) + "\n";
        return toQt(lines);
    }

    QString caret() const {
        const auto at = static_cast<std::size_t>(view_->caret());
        if (at >= view_->bytes().size())
            return QStringLiteral("No bytes");
        const auto byte = static_cast<unsigned char>(view_->bytes()[at]);
        return QStringLiteral("Offset %1, byte %2").arg(toQt(hexOffset(view_->caret())), toQt(hexByte(byte)));
    }

    HexView* view_;
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* view = qobject_cast<HexView*>(object);
    return view != nullptr ? new AccessibleHexView(view) : nullptr;
}

}  // namespace

void installHexViewAccessibility() {
    // Qt passes over a factory that it has already.
    QAccessible::installFactory(&makeInterface);
}

void tellHexViewChanged(HexView& view) {
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, QAccessible::DescriptionChanged);
    QAccessible::updateAccessibility(&event);
}

}  // namespace quillon
