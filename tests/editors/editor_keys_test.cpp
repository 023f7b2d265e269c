// SPDX-License-Identifier: MIT
// What holds for the keys of every editor.

#include <QAbstractButton>
#include <QKeySequence>
#include <QLabel>
#include <QScrollBar>

#include "editors/editor_screen.h"
#include "editors/sector_preview.h"
#include "viewer/editor_handover.h"
#include "widgets/hex_view.h"

using namespace quillon;

class EditorKeysTest : public QObject {
    Q_OBJECT

private slots:
    void everyBoxAndButtonHasAnAltKeyOfItsOwn();
    void theHexViewsShowAllLinesAtTheirDefaultSize();
    void escapeAsksBeforeATypedMessageIsDropped();
    void charactersThatThePageLacksAreToldOnEveryEditor();
    void aSaveThatFailsIsToldOnTheScreenOfMessages();
};

namespace {

std::unique_ptr<test::EditorScreen> opened(Screen screen) {
    auto made = std::make_unique<test::EditorScreen>(screen);
    if (screen == Screen::ExtEditor)
        made->navigator.open(screen, EditorHandover{1, u"qlx", {}, {}, {}});
    else if (screen == Screen::PreviewBadSector)
        made->navigator.open(screen, SectorPreview{std::string(514, 'x')});
    else
        made->open();
    return made;
}

// The Alt keys of the controls that are shown, in their order; "-" for one that ought to have one.
QStringList altKeys(const QWidget& window) {
    QStringList keys;
    const auto add = [&keys](const QString& text) {
        const QKeySequence key = QKeySequence::mnemonic(text);
        keys << (key.isEmpty() ? QStringLiteral("- ") + text : key.toString());
    };
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        const bool isPart = button->objectName().startsWith(QLatin1String("qt_")) || button->objectName().isEmpty();
        const bool isSign = button->text().size() < 2 || button->text() == QLatin1String("...");
        if (!isPart && !isSign && button->isVisibleTo(&window))
            add(button->text());
    }
    for (const auto* label : window.findChildren<QLabel*>()) {
        if (label->buddy() != nullptr && label->buddy()->isEnabled() && label->isVisibleTo(&window))
            add(label->text());
    }
    return keys;
}

}  // namespace

void EditorKeysTest::everyBoxAndButtonHasAnAltKeyOfItsOwn() {
    for (const Screen screen : {Screen::SkipList, Screen::CommonHeaders, Screen::Updatedb, Screen::Errors,
                                Screen::BadSectors, Screen::PreviewBadSector, Screen::SectorMarkers}) {
        auto editor = opened(screen);
        QStringList keys = altKeys(editor->window());
        const QString all = editor->window().objectName() + QStringLiteral(": ") + keys.join(QLatin1String(", "));
        QVERIFY2(!keys.isEmpty() && keys.filter(QStringLiteral("- ")).isEmpty(), qPrintable(all));
        QVERIFY2(keys.removeDuplicates() == 0, qPrintable(all));
        test::closeScreens(editor);
    }
}

void EditorKeysTest::theHexViewsShowAllLinesAtTheirDefaultSize() {
    for (const auto& [screen, name] : {std::pair{Screen::Updatedb, "Hex1"}, {Screen::PreviewBadSector, "XHexEditX1"}}) {
        auto editor = opened(screen);
        auto& bytes = editor->control<HexView>(name);
        bytes.setBytes(std::string(512, 'x'));
        QCOMPARE(bytes.verticalScrollBar()->maximum(), 0);
        test::closeScreens(editor);
    }
}

void EditorKeysTest::escapeAsksBeforeATypedMessageIsDropped() {
    auto editor = opened(Screen::Errors);
    QTest::keyClicks(&editor->control<QLineEdit>("tError_3"), QStringLiteral("x"));
    editor->dialogs.expectBox("Leave this screen ?",
                              "What you have typed is not stored. Do you want to leave and drop it?", BoxAnswer::No);
    test::EditorScreen::pressIn(editor->window(), Qt::Key_Escape);
    QVERIFY(editor->isOpen());
    test::closeScreens(editor);
}

void EditorKeysTest::charactersThatThePageLacksAreToldOnEveryEditor() {
    const std::pair<Screen, const char*> boxes[] = {{Screen::SkipList, "TextBox1"},  {Screen::CommonHeaders, "tTerm"},
                                                    {Screen::CommonHeaders, "tID"},  {Screen::Updatedb, "Text3"},
                                                    {Screen::ExtEditor, "Text3"},    {Screen::Errors, "tError_7"},
                                                    {Screen::SectorMarkers, "name_"}};
    for (const auto& [screen, box] : boxes) {
        auto editor = opened(screen);
        auto& remark = editor->control<QLabel>("pageRemark_");
        QVERIFY(!remark.isVisible());
        editor->type(box,
                     "a\xD0\xB6"
                     "b\xE4\xB8\xAD");
        QCOMPARE(remark.text(), QString::fromUtf8("Stored as \"?\" : \xD0\xB6 \xE4\xB8\xAD"));
        QVERIFY(remark.isVisible());
        test::closeScreens(editor);
    }
}

void EditorKeysTest::aSaveThatFailsIsToldOnTheScreenOfMessages() {
    auto editor = opened(Screen::Errors);
    std::filesystem::remove_all(editor->folder / "local/Settings");
    editor->click("Command1");
    QVERIFY(editor->isOpen());
    QVERIFY(editor->control<QLabel>("saveRemark_").text().startsWith(QStringLiteral("Not saved : ")));
    test::closeScreens(editor);
}

QTEST_MAIN(EditorKeysTest)
#include "editor_keys_test.moc"
