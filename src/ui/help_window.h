// SPDX-License-Identifier: MIT
#pragma once

// The help: pages of HTML in one archive beside the program, shown with their contents and a search. A page tells what
// a screen is for below an anchor with the screen's name. Names of its controls: "contents" (list), "search" (line),
// "page" (browser).

#include <vector>

#include <QString>
#include <QTemporaryDir>
#include <QWidget>

#include "app/application_folder.h"

class QApplication;
class QLineEdit;
class QListWidget;
class QTextBrowser;

namespace quillon {

class Navigator;

class HelpWindow final : public QWidget {
    Q_OBJECT

public:
    /// A file that cannot be read shows a page that says so.
    explicit HelpWindow(const NativePath& helpFile);

    /// Titles of the contents, in order.
    [[nodiscard]] QStringList titles() const;

    /// Goes to what is told of this screen; nothing happens when that is nothing.
    void showScreen(const QString& name);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Page {
        QString file;
        QString title;
        QString text;  // without mark-up, for the search
        QString html;
    };
    void createControls();
    [[nodiscard]] bool load(const NativePath& helpFile);
    void showMatches();
    void showChosen();

    QTemporaryDir folder_;  // the pages unpacked, since a browser reads pictures from files
    std::vector<Page> pages_;
    QLineEdit* search_;
    QListWidget* contents_;
    QTextBrowser* browser_;
};

/// F1 in any window of the program opens the help at what is told of this window, when the help file exists, as
/// long as the navigator is there.
void installHelpKey(QApplication& application, Navigator& navigator, const NativePath& helpFile);

}  // namespace quillon
