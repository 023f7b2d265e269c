// SPDX-License-Identifier: MIT
// One style on every desktop, so that the screens are laid out as they were designed, with a palette of its own for
// light and for dark.
#include "widgets/theme.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>
#include <QStyleFactory>
#ifdef QUILLON_HAVE_SVG
#include <QSvgRenderer>
#endif

// The icons stand in a static library, whose resources a program has to ask for; outside of any namespace.
static void loadIconResources() {
    Q_INIT_RESOURCE(icons);
}

namespace quillon {
namespace {

struct Colours {
    QColor window, panel, base, alternate, text, quietText, quiet, button, line, edge, accent, onAccent, toolTip;
};

Colours coloursOf(Look look) {
    if (look == Look::Dark)
        return {0x1c2024, 0x22272c, 0x16191d, 0x1a1e22, 0xe3e6ea, 0xa9b1bb, 0x747c87,
                0x2d333a, 0x373e46, 0x4d5661, 0x4589d6, 0xffffff, 0x2d333a};
    return {0xf1f3f5, 0xfafbfc, 0xffffff, 0xf6f8fa, 0x1d2126, 0x565e68, 0x929aa4,
            0xffffff, 0xd6dbe1, 0xb3bbc5, 0x2367b1, 0xffffff, 0xffffff};
}

QPalette paletteOf(const Colours& colours) {
    QPalette palette;
    palette.setColor(QPalette::Window, colours.window);
    palette.setColor(QPalette::WindowText, colours.text);
    palette.setColor(QPalette::Base, colours.base);
    palette.setColor(QPalette::AlternateBase, colours.alternate);
    palette.setColor(QPalette::Text, colours.text);
    palette.setColor(QPalette::Button, colours.button);
    palette.setColor(QPalette::ButtonText, colours.text);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, colours.quiet);
    palette.setColor(QPalette::Highlight, colours.accent);
    palette.setColor(QPalette::HighlightedText, colours.onAccent);
    palette.setColor(QPalette::Link, colours.accent);
    palette.setColor(QPalette::LinkVisited, colours.accent);
    palette.setColor(QPalette::ToolTipBase, colours.toolTip);
    palette.setColor(QPalette::ToolTipText, colours.text);
    palette.setColor(QPalette::Light, colours.button.lighter(110));
    palette.setColor(QPalette::Midlight, colours.line);
    palette.setColor(QPalette::Mid, colours.line);
    palette.setColor(QPalette::Dark, colours.line.darker(130));
    palette.setColor(QPalette::Shadow, colours.line.darker(180));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, colours.quiet);
    palette.setColor(QPalette::Disabled, QPalette::Base, colours.window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.line);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, colours.text);
    return palette;
}

constexpr const char* kStyleSheet = R"(
QGroupBox { border: 1px solid @line; border-radius: 6px; margin-top: 1.5em; padding: 2px; background: @panel; }
QGroupBox::title { subcontrol-origin: margin; subcontrol-position: top left; left: 2px; color: @quietText; }
QGroupBox QLabel, QGroupBox QCheckBox, QGroupBox QRadioButton { background: transparent; }
QPushButton { background: @button; color: @text; border: 1px solid @edge; border-radius: 4px; padding: 4px 12px; }
QPushButton:hover { background: @hoverButton; }
QPushButton:pressed { background: @line; }
QPushButton:focus { border: 1px solid @accent; }
QPushButton:disabled { color: @quiet; border: 1px solid @line; background: @window; }
QLineEdit { background: @base; color: @text; border: 1px solid @edge; border-radius: 4px; padding: 3px 6px;
    selection-background-color: @accent; selection-color: @onAccent; }
QLineEdit:focus { border: 1px solid @accent; }
QLineEdit:disabled { color: @quiet; background: @window; border: 1px solid @line; }
QCheckBox { spacing: 6px; }
QRadioButton { spacing: 6px; }
QRadioButton::indicator { width: 14px; height: 14px; border: 1px solid @edge; border-radius: 8px; background: @base; }
QRadioButton::indicator:hover, QRadioButton::indicator:focus { border: 1px solid @accent; }
QRadioButton::indicator:checked { width: 6px; height: 6px; border: 5px solid @accent; background: @onAccent; }
QTabWidget::pane { border: 1px solid @line; border-radius: 6px; top: -1px; }
QTabBar::tab { border: 1px solid @line; border-top-left-radius: 4px; border-top-right-radius: 4px; padding: 5px 12px;
    margin-right: 2px; background: @window; color: @text; }
QTabBar::tab:selected { background: @panel; border-bottom: 2px solid @accent; }
QTabBar::tab:hover:!selected { background: @hoverButton; }
QTabBar::tab:disabled { color: @quiet; }
QTabBar::tab:focus { border-color: @accent; }
QProgressBar { background: @base; border: 1px solid @edge; border-radius: 4px; }
QProgressBar::chunk { background: @accent; border-radius: 3px; }
QToolBar { border: 0; border-bottom: 1px solid @line; padding: 4px 8px; spacing: 4px; }
QStatusBar { border-top: 1px solid @line; }
QStatusBar::item { border: 0; }
QToolTip { border: 1px solid @line; padding: 4px; color: @text; background: @tip; }
QHeaderView::section { background: @window; color: @text; border: 0; border-right: 1px solid @line;
    border-bottom: 1px solid @line; padding: 4px 3px; }
QTableView { border: 1px solid @line; border-radius: 4px; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
QLabel[remark="true"] { color: @quietText; }
QPushButton[primary="true"] { font-weight: 600; }
QPushButton[primary="true"]:enabled { background: @accent; color: @onAccent; border: 1px solid @accent; }
QPushButton[primary="true"]:enabled:hover { background: @hover; }
QPushButton[primary="true"]:enabled:pressed { background: @pressed; }
QPushButton[primary="true"]:enabled:focus { border: 1px solid @text; }
)";

#ifdef QUILLON_HAVE_SVG
constexpr const char* kIndicatorSheet = R"(
QCheckBox::indicator { width: 14px; height: 14px; border: 1px solid @edge; border-radius: 3px; background: @base; }
QCheckBox::indicator:hover, QCheckBox::indicator:focus { border: 1px solid @accent; }
QCheckBox::indicator:checked { background: @accent; border: 1px solid @accent; image: url(:/icons/check.svg); }
QCheckBox::indicator:disabled { border: 1px solid @line; background: @window; }
QCheckBox::indicator:checked:disabled { background: @quiet; border: 1px solid @quiet; }
QComboBox { background: @button; color: @text; border: 1px solid @edge; border-radius: 4px; padding: 3px 8px;
    combobox-popup: 0; }
QComboBox QAbstractItemView { background: @base; color: @text; border: 1px solid @edge; outline: 0; }
QComboBox QAbstractItemView::item { min-height: 22px; }
QComboBox QAbstractItemView::item:selected { background: @accent; color: @onAccent; }
QComboBox:focus { border: 1px solid @accent; }
QComboBox:disabled { color: @quiet; background: @window; border: 1px solid @line; }
QComboBox::drop-down { border: 0; width: 22px; }
QComboBox::down-arrow { image: url(:/icons/arrow.svg); width: 12px; height: 12px; }
)";
#else
// Without pictures the style's own check mark.
constexpr const char* kIndicatorSheet = "";
#endif

QString styleSheetOf(const Colours& colours) {
    QString sheet = QLatin1String(kStyleSheet) + QLatin1String(kIndicatorSheet);

    // A name that begins with another one stands ahead of it.
    const std::pair<const char*, QColor> names[] = {
        {"@onAccent", colours.onAccent},
        {"@window", colours.window},
        {"@panel", colours.panel},
        {"@base", colours.base},
        {"@line", colours.line},
        {"@edge", colours.edge},
        {"@text", colours.text},
        {"@quietText", colours.quietText},
        {"@quiet", colours.quiet},
        {"@tip", colours.toolTip},
        {"@button", colours.button},
        {"@hoverButton", colours.panel},
        {"@hover", colours.accent.lighter(112)},
        {"@pressed", colours.accent.darker(115)},
        {"@accent", colours.accent},
    };
    for (const auto& [name, colour] : names) sheet.replace(QLatin1String(name), colour.name());
    return sheet;
}

constexpr const char* kProgramIcon = "quillon";
#ifdef QUILLON_HAVE_SVG
// Toolbars ask for 22 points; twice that on a screen of high density.
constexpr std::initializer_list<int> kIconSizes = {22, 44};
constexpr std::initializer_list<int> kProgramIconSizes = {16, 24, 32, 48, 64, 128, 256};

QPixmap drawIcon(const QByteArray& svg, int size, const QColor& colour) {
    QByteArray coloured = svg;
    coloured.replace("currentColor", colour.name().toLatin1());
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QSvgRenderer(coloured).render(&painter);
    return picture;
}
#endif

}  // namespace

Look lookOfDesktop() {
    return QApplication::palette().color(QPalette::Window).lightness() < 128 ? Look::Dark : Look::Light;
}

void applyLook(QApplication& application, Look look) {
    loadIconResources();
    const Colours colours = coloursOf(look);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(paletteOf(colours));
    application.setStyleSheet(styleSheetOf(colours));
    QApplication::setWindowIcon(icon(QLatin1String(kProgramIcon)));
}

QIcon icon(const QString& name) {
    QIcon made;
#ifdef QUILLON_HAVE_SVG
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return made;
    const QByteArray svg = file.readAll();
    const QPalette palette = QApplication::palette();
    for (const int size : name == QLatin1String(kProgramIcon) ? kProgramIconSizes : kIconSizes) {
        made.addPixmap(drawIcon(svg, size, palette.color(QPalette::Active, QPalette::ButtonText)));
        made.addPixmap(drawIcon(svg, size, palette.color(QPalette::Disabled, QPalette::ButtonText)), QIcon::Disabled);
    }
#else
    // Without the SVG library the buttons keep their tool tips and a plain sign.
    made = QApplication::style()->standardIcon(name == QStringLiteral("stop") ? QStyle::SP_BrowserStop
                                                                              : QStyle::SP_FileIcon);
#endif
    return made;
}

void makePrimary(QPushButton& button) {
    button.setProperty("primary", true);
}

void makeRemark(QLabel& label) {
    label.setProperty("remark", true);
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label.setFont(font);
}

void makePlain(QLabel& label) {
    label.setTextFormat(Qt::PlainText);
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
}

QFont countFont(const QFont& base) {
    QFont font = base;
    font.setStyleHint(QFont::SansSerif);
    return font;
}

}  // namespace quillon
