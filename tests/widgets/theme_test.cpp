// SPDX-License-Identifier: MIT
// Both looks: every text on every ground can be read, the icons follow, and the choice is kept.
#include "widgets/theme.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QTest>

#include "support/temp_folder.h"
#include "widgets/look_switch.h"

using namespace quillon;

class ThemeTest : public QObject {
    Q_OBJECT

private slots:
    void everyTextOfTheThemeHasAContrastOf45();
    void everyTextOfThePaletteHasAContrastOf45();
    void iconsFollowTheLook();
    void theChosenLookCountsAtOnceAndTheNextTime();
    void withoutAChoiceItIsTheDesktopsLook();
    void aLookThatCannotBeStoredStillCounts();
    void aToneGivesALabelItsColour();
    void cleanup() { applyLook(*qApp, Look::Light); }
};

namespace {

// Of WCAG 2: relative luminance, and the ratio of two of them.
double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& text, const QColor& ground) {
    const auto [dark, light] = std::minmax({luminance(text), luminance(ground)});
    return (light + 0.05) / (dark + 0.05);
}

bool isDark() {
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

}  // namespace

void ThemeTest::everyTextOfTheThemeHasAContrastOf45() {
    for (const Look look : {Look::Light, Look::Dark}) {
        const Colours& colours = coloursOf(look);
        for (const TextPair& pair : textPairs()) {
            const double ratio = contrast(colours.*pair.text, colours.*pair.ground);
            QVERIFY2(ratio >= 4.5,
                     qPrintable(QStringLiteral("%1: %2 (%3)")
                                    .arg(QLatin1String(pair.where))
                                    .arg(ratio)
                                    .arg(look == Look::Dark ? QStringLiteral("dark") : QStringLiteral("light"))));
        }
    }
}

void ThemeTest::everyTextOfThePaletteHasAContrastOf45() {
    constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> kRoles[] = {
        {QPalette::WindowText, QPalette::Window},         {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},        {QPalette::ButtonText, QPalette::Button},
        {QPalette::HighlightedText, QPalette::Highlight}, {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::PlaceholderText, QPalette::Base},      {QPalette::Link, QPalette::Window}};
    for (const Look look : {Look::Light, Look::Dark}) {
        applyLook(*qApp, look);
        const QPalette palette = QApplication::palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
            for (const auto& [text, ground] : kRoles) {
                const double ratio = contrast(palette.color(group, text), palette.color(group, ground));
                QVERIFY2(ratio >= 4.5,
                         qPrintable(QStringLiteral("group %1, role %2: %3").arg(group).arg(text).arg(ratio)));
            }
    }
}

void ThemeTest::iconsFollowTheLook() {
    applyLook(*qApp, Look::Light);
    const QIcon run = icon(QStringLiteral("run"));
    QVERIFY(!run.isNull());
    const QImage light = run.pixmap(22).toImage();
    applyLook(*qApp, Look::Dark);
    QVERIFY(run.pixmap(22).toImage() != light);
    QVERIFY(run.pixmap({22, 22}, QIcon::Disabled).toImage() != run.pixmap(22).toImage());
    QVERIFY(icon(QStringLiteral("there is none")).isNull());
}

void ThemeTest::theChosenLookCountsAtOnceAndTheNextTime() {
    const test::TempFolder folder;
    for (const LookRow& row : kLooks) {
        applyLook(*qApp, Look::Light);
        LookSwitch look(*qApp, folder.path());
        QVERIFY(look.choose(row.choice));
        QCOMPARE(isDark(), row.choice == LookChoice::Dark);
        QCOMPARE(folder.read("preferences.ini"), "window.look=" + std::string(row.stored) + "\n");
        applyLook(*qApp, Look::Light);
        const LookSwitch again(*qApp, folder.path());
        QCOMPARE(again.choice(), row.choice);
        QCOMPARE(isDark(), row.choice == LookChoice::Dark);
    }
}

void ThemeTest::withoutAChoiceItIsTheDesktopsLook() {
    const test::TempFolder folder;
    for (const char* stored : {"", "window.look=purple\n"}) {
        folder.write("preferences.ini", stored);
        for (const Look desktop : {Look::Light, Look::Dark}) {
            applyLook(*qApp, desktop);
            LookSwitch look(*qApp, folder.path());
            QCOMPARE(look.choice(), LookChoice::Desktop);
            QCOMPARE(isDark(), desktop == Look::Dark);
            QVERIFY(look.choose(desktop == Look::Dark ? LookChoice::Light : LookChoice::Dark));
            QVERIFY(look.choose(LookChoice::Desktop));
            QCOMPARE(isDark(), desktop == Look::Dark);
            folder.write("preferences.ini", stored);
        }
    }
}

void ThemeTest::aLookThatCannotBeStoredStillCounts() {
    const test::TempFolder folder;
    LookSwitch look(*qApp, folder / "missing");
    QVERIFY(!look.choose(LookChoice::Dark));
    QVERIFY(isDark());
}

void ThemeTest::aToneGivesALabelItsColour() {
    QLabel label(QStringLiteral("Complete"));
    label.show();
    const QColor usual = label.palette().color(QPalette::WindowText);
    setTone(label, "done");
    QCOMPARE(label.palette().color(QPalette::WindowText), coloursOf(Look::Light).done);
    setTone(label, "");
    QCOMPARE(label.palette().color(QPalette::WindowText), usual);
}

QTEST_MAIN(ThemeTest)
#include "theme_test.moc"
