// SPDX-License-Identifier: MIT
// A dialog belongs to the window in front, and is modal for the whole application: a job behind it waits.
#include "widgets/qt_dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QStringList>
#include <QWidget>

#include "app/turn_until.h"
#include "platform/folders.h"
#include "platform/moment.h"
#include "widgets/patient_wait_box.h"
#include "widgets/qt_text.h"

namespace quillon {
namespace {

QWidget* front() {
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    QWidget* active = QApplication::activeWindow();
    return active != nullptr && active->isVisible() ? active : nullptr;
}

QMessageBox::Icon iconOf(BoxStyle style) {
    switch (style) {
        case BoxStyle::Warning:
            return QMessageBox::Warning;
        case BoxStyle::Question:
            return QMessageBox::Question;
        case BoxStyle::Information:
            return QMessageBox::Information;
        case BoxStyle::Critical:
            return QMessageBox::Critical;
        case BoxStyle::Plain:
            break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons buttonsOf(BoxButtons buttons) {
    switch (buttons) {
        case BoxButtons::YesNo:
            return QMessageBox::Yes | QMessageBox::No;
        case BoxButtons::YesNoCancel:
            return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        case BoxButtons::Ok:
            break;
    }
    return QMessageBox::Ok;
}

// "File Lists (*.csv)|*.csv|All Files(*.*)|*.*" as Qt's name filters. A name that tells its pattern already is not told
// it twice; the pattern of all files covers names without a dot too. A last name without a pattern shows all files.
QStringList nameFilters(const std::string& filter) {
    QStringList filters;
    const QStringList parts = toQt(filter).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        QString pattern = i + 1 < parts.size() ? parts[i + 1] : QStringLiteral("*");
        if (pattern == QStringLiteral("*.*"))
            pattern = QStringLiteral("*");
        const QString name = parts[i].section(QLatin1Char('('), 0, 0).trimmed();
        filters << name + QStringLiteral(" (") + pattern.replace(QLatin1Char(';'), QLatin1Char(' ')) +
                       QStringLiteral(")");
    }
    return filters;
}

QString existingFolder(NativePath folder) {
    while (!folder.empty() && !isFolder(folder)) {
        const NativePath parent = folder.parent_path();
        folder = parent == folder ? NativePath{} : parent;
    }
    return toQtPath(folder);
}

// Every told question whether something is overwritten says so in its title or its text.
bool asksToOverwrite(const MessageBox& box) {
    if (box.loss == BoxLoss::File)
        return true;
    return box.buttons != BoxButtons::Ok &&
           toQt(box.title + " " + box.text).contains(QLatin1String("overwrit"), Qt::CaseInsensitive);
}

}  // namespace

BoxAnswer QtDialogs::show(const MessageBox& box) {
    refresh_();
    QMessageBox shown(iconOf(box.style), toQt(box.title.empty() ? std::string_view(kProgramTitle) : box.title), {},
                      buttonsOf(box.buttons), front());
    shown.setObjectName(QStringLiteral("MessageBox"));
    shown.setTextFormat(Qt::PlainText);
    shown.setText(toQt(box.text));
    if (!box.details.empty())
        shown.setDetailedText(toQt(box.details));
    shown.setWindowModality(Qt::ApplicationModal);
    if (box.buttons == BoxButtons::YesNo)
        shown.setEscapeButton(QMessageBox::No);
    // Which button Enter presses otherwise depends on the desktop's order of buttons.
    if (asksToOverwrite(box))
        shown.setDefaultButton(QMessageBox::No);
    switch (shown.exec()) {
        case QMessageBox::Yes:
            return BoxAnswer::Yes;
        case QMessageBox::No:
            return BoxAnswer::No;
        case QMessageBox::Cancel:
            return BoxAnswer::Cancel;
        default:
            return BoxAnswer::Ok;
    }
}

std::optional<std::string> QtDialogs::input(const std::string& title, const std::string& prompt,
                                            const std::string& initial) {
    refresh_();
    QInputDialog box(front());
    box.setObjectName(QStringLiteral("InputBox"));
    box.setWindowTitle(toQt(title));
    box.setLabelText(toQt(prompt));
    if (auto* label = box.findChild<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    box.setTextValue(toQt(initial));
    box.setWindowModality(Qt::ApplicationModal);
    box.resize(380, box.sizeHint().height());
    if (box.exec() != QDialog::Accepted)
        return std::nullopt;
    return fromQt(box.textValue());
}

std::optional<NativePath> QtDialogs::pickFolder(const std::string& title, const NativePath& start) {
    refresh_();
    QFileDialog picker(front(), toQt(title), existingFolder(start));
    picker.setObjectName(QStringLiteral("FolderPicker"));
    picker.setFileMode(QFileDialog::Directory);
    picker.setOption(QFileDialog::ShowDirsOnly);
    picker.setWindowModality(Qt::ApplicationModal);
    if (picker.exec() != QDialog::Accepted || picker.selectedFiles().isEmpty())
        return std::nullopt;
    return fromQtPath(picker.selectedFiles().constFirst());
}

std::vector<NativePath> QtDialogs::pickFiles(const FilePick& pick) {
    refresh_();
    QFileDialog picker(front(), toQt(pick.title), existingFolder(pick.startFolder));
    picker.setObjectName(QStringLiteral("FilePicker"));
    picker.setFileMode(pick.multiple ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    picker.setNameFilters(nameFilters(pick.filter));
    picker.setDefaultSuffix(toQt(pick.defaultSuffix));
    picker.setWindowModality(Qt::ApplicationModal);
    std::vector<NativePath> files;
    if (picker.exec() == QDialog::Accepted)
        for (const QString& file : picker.selectedFiles()) files.push_back(fromQtPath(file));
    return files;
}

bool QtDialogs::waitFor(const PatientWait& wait) {
    refresh_();
    for (const Moment latest = momentNow() + wait.untold; momentNow() < latest;) {
        if (wait.isOver(kTurnInterval))
            return true;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    return PatientWaitBox(wait, front()).exec() == QDialog::Accepted;
}

}  // namespace quillon
