// SPDX-License-Identifier: MIT
#pragma once

// The help: pages of HTML in one archive beside the program, shown with their contents and a search. Names of its
// controls: "contents" (list), "search" (line), "page" (browser).

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

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Page {
        QString file;
        QString title;
        QString text;  // without mark-up, for the search
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

/// F1 in any window of the program opens the help, when the help file exists.
void installHelpKey(QApplication& application, Navigator& navigator, const NativePath& helpFile);

}  // namespace quillon
