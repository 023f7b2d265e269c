// SPDX-License-Identifier: MIT
#include "ui/help_window.h"

#include <algorithm>

#include <QApplication>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QVBoxLayout>

#include "archive/zip_reader.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "widgets/navigator.h"
#include "widgets/qt_text.h"
#include "widgets/theme.h"

namespace quillon {
namespace {

constexpr int kPageMargin = 20;

// Opens the help at F1, from whatever window has the keyboard. While a modal screen is open the help is modal too:
// the screen would block any other window.
class HelpKey final : public QObject {
public:
    HelpKey(Navigator& navigator, NativePath helpFile)
        : QObject(&navigator), navigator_(navigator), helpFile_(std::move(helpFile)) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::KeyPress || !watched->isWidgetType() ||
            static_cast<QKeyEvent*>(event)->key() != Qt::Key_F1 || !pathExists(helpFile_))
            return QObject::eventFilter(watched, event);
        const QWidget* asking = static_cast<QWidget*>(watched)->window();
        if (asking == navigator_.window(Screen::Help))
            return true;
        if (QApplication::activeModalWidget() != nullptr) {
            navigator_.openModal(Screen::Help, asking->objectName());
            return true;
        }
        navigator_.open(Screen::Help);
        if (auto* help = qobject_cast<HelpWindow*>(navigator_.window(Screen::Help)))
            help->showScreen(asking->objectName());
        return true;
    }

private:
    Navigator& navigator_;
    NativePath helpFile_;
};

// Qt shrinks a picture to the width that its page tells without smoothing it, which makes its letters ragged. So it is
// shrunk here, to the pixels of this screen.
void shrinkPictures(const QTextDocument& page, const QTemporaryDir& folder, qreal pixelRatio) {
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next())
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextImageFormat told = part.fragment().charFormat().toImageFormat();
            const int width = qRound(told.width() * pixelRatio);
            const QString file = folder.filePath(told.name());
            const QImage picture = told.isValid() ? QImage(file) : QImage();
            if (width > 0 && picture.width() > width)
                picture.scaledToWidth(width, Qt::SmoothTransformation).save(file);
        }
}

}  // namespace

HelpWindow::HelpWindow(const NativePath& helpFile)
    : search_(new QLineEdit), contents_(new QListWidget), browser_(new QTextBrowser) {
    setObjectName(QStringLiteral("helpWindow"));
    setWindowTitle(QStringLiteral("Quillon Help"));
    resize(980, 680);
    createControls();
    if (load(helpFile)) {
        showMatches();
        contents_->setCurrentRow(0);
    } else {
        browser_->setPlainText(QStringLiteral("The help file cannot be read."));
    }
}

void HelpWindow::createControls() {
    search_->setObjectName(QStringLiteral("search"));
    search_->setPlaceholderText(QStringLiteral("Search"));
    search_->setAccessibleName(QStringLiteral("Search"));
    search_->setClearButtonEnabled(true);
    contents_->setObjectName(QStringLiteral("contents"));
    contents_->setAccessibleName(QStringLiteral("Contents"));
    contents_->setSpacing(3);
    browser_->setObjectName(QStringLiteral("page"));
    browser_->setOpenExternalLinks(false);
    browser_->document()->setDocumentMargin(kPageMargin);

    auto* left = new QWidget;
    auto* column = new QVBoxLayout(left);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(kSpacing);
    column->addWidget(search_);
    column->addWidget(contents_, 1);
    auto* splitter = new QSplitter;
    splitter->addWidget(left);
    splitter->addWidget(browser_);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({230, 730});
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kSpacing, kSpacing, kSpacing, kSpacing);
    layout->addWidget(splitter);
    connect(search_, &QLineEdit::textChanged, this, &HelpWindow::showMatches);
    connect(contents_, &QListWidget::currentRowChanged, this, &HelpWindow::showChosen);
}

bool HelpWindow::load(const NativePath& helpFile) {
    if (!folder_.isValid())
        return false;
    const auto names = listArchive(helpFile);
    if (!names || !extractArchive(helpFile, fromQtPath(folder_.path())))
        return false;
    for (const std::string& name : *names) {
        if (!name.ends_with(".html"))
            continue;
        const QString file = folder_.filePath(toQt(name));
        const auto bytes = readWholeFile(fromQtPath(file));
        if (!bytes)
            continue;
        QTextDocument document;
        const QString html = toQt(*bytes);
        document.setHtml(html);
        shrinkPictures(document, folder_, devicePixelRatio());
        pages_.push_back({file, document.metaInformation(QTextDocument::DocumentTitle), document.toPlainText(), html});
    }
    return !pages_.empty();
}

QStringList HelpWindow::titles() const {
    QStringList titles;
    for (int row = 0; row < contents_->count(); ++row) titles << contents_->item(row)->text();
    return titles;
}

// The contents, or with a search only the pages that hold it.
void HelpWindow::showMatches() {
    const QString wanted = search_->text().trimmed();
    contents_->clear();
    for (const Page& page : pages_) {
        if (!wanted.isEmpty() && !page.text.contains(wanted, Qt::CaseInsensitive))
            continue;
        auto* item = new QListWidgetItem(page.title, contents_);
        item->setData(Qt::UserRole, page.file);
    }
    if (!wanted.isEmpty())
        contents_->setCurrentRow(0);
}

void HelpWindow::showChosen() {
    const QListWidgetItem* item = contents_->currentItem();
    if (item == nullptr)
        return;
    browser_->setSource(QUrl::fromLocalFile(item->data(Qt::UserRole).toString()));
    const QString wanted = search_->text().trimmed();
    if (!wanted.isEmpty())
        browser_->find(wanted);
}

void HelpWindow::showScreen(const QString& name) {
    const QString anchor = QStringLiteral("<a name=\"%1\">").arg(name);
    const auto page =
        std::find_if(pages_.begin(), pages_.end(), [&anchor](const Page& one) { return one.html.contains(anchor); });
    if (page == pages_.end())
        return;
    search_->clear();
    contents_->setCurrentRow(static_cast<int>(page - pages_.begin()));
    browser_->scrollToAnchor(name);
    QScrollBar* bar = browser_->verticalScrollBar();
    if (bar->value() <= kPageMargin)  // the heading of the page itself
        bar->setValue(0);
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void installHelpKey(QApplication& application, Navigator& navigator, const NativePath& helpFile) {
    application.installEventFilter(new HelpKey(navigator, helpFile));
}

}  // namespace quillon
