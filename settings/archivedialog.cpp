#include "settings/archivedialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QOperatingSystemVersion>
#include <QPointer>
#include <QSettings>

namespace
{

QString stateKey()
{
    return QStringLiteral("Dialogs/settings");
}

QString ending()
{
    return QStringLiteral(".tar.gz");
}

// The window's, not the page's: a page that is locked meanwhile would lock its dialog, and the window behind
// it.
QFileDialog *newDialog(QWidget *page, const QString &title, QFileDialog::AcceptMode acceptMode,
                       QFileDialog::FileMode fileMode)
{
    auto *dialog = new QFileDialog(page->window(), title);
    QObject::connect(page, &QObject::destroyed, dialog, &QObject::deleteLater);
    dialog->setAcceptMode(acceptMode);
    dialog->setFileMode(fileMode);
    dialog->setNameFilter(QCoreApplication::translate("ServerWidget", "Kelvora Settings Backup (*.tar.gz)"));
    return dialog;
}

void restoreMemory(QFileDialog *dialog, const QString &defaultFolder)
{
    dialog->setDirectory(QString());
    const bool remembers = dialog->restoreState(QSettings().value(stateKey()).toByteArray());
    // Not every system's own dialog tells its folder before it is shown.
    if (!remembers || dialog->directory() == QDir::current())
        dialog->setDirectory(QDir(defaultFolder));
}

void saveMemory(const QFileDialog *dialog)
{
    QSettings().setValue(stateKey(), dialog->saveState());
}

// Empty when the user cancelled, or when the page died in the nested event loop, and the dialog with it.
QString run(const QPointer<QFileDialog> &dialog)
{
    return dialog->exec() == QDialog::Accepted && dialog ? dialog->selectedFiles().value(0) : QString();
}

// The dialog adds the ending only to a name without any, and takes the "2026" of "Backup 25.11.2026" for one.
// That of Windows adds only what stands behind the last dot of the ending.
QString withEnding(const QString &fileName)
{
    if (fileName.endsWith(ending(), Qt::CaseInsensitive))
        return fileName;
    const bool isHalf = QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows &&
                        fileName.endsWith(QLatin1String(".gz"), Qt::CaseInsensitive);
    return fileName.chopped(isHalf ? 3 : 0) + ending();
}

enum class Answer { Replace, Keep, None };

// Asks about a name that the dialog did not see; about the others it has asked by itself. No answer comes
// when the window or the program ends.
Answer askToReplace(QWidget *window, const QString &fileName)
{
    const QPointer<QMessageBox> box = new QMessageBox(
        QMessageBox::Warning, QCoreApplication::translate("ServerWidget", "Save As"),
        QCoreApplication::translate("ServerWidget", "%1 already exists.\nDo you want to replace it?")
            .arg(QDir::toNativeSeparators(fileName)),
        QMessageBox::Yes | QMessageBox::No, window);
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(QMessageBox::No);
    const int button = box->exec();
    if (!box || box->isVisible())
        return Answer::None;
    delete box;
    return button == QMessageBox::Yes ? Answer::Replace : Answer::Keep;
}

} // namespace

QString archivedialog::fileForBackup(QWidget *page, const QString &defaultFolder, const QString &fileName)
{
    const QPointer<QFileDialog> dialog =
        newDialog(page, QCoreApplication::translate("ServerWidget", "Save As"), QFileDialog::AcceptSave,
                  QFileDialog::AnyFile);
    dialog->setDefaultSuffix(ending().mid(1));
    dialog->selectFile(fileName);
    restoreMemory(dialog, defaultFolder);
    QString chosen;
    Answer answer = Answer::Keep;
    while (dialog && answer == Answer::Keep) {
        const QString typed = run(dialog);
        chosen = typed.isEmpty() ? QString() : withEnding(typed);
        answer = chosen == typed || !QFile::exists(chosen) ? Answer::Replace
                                                           : askToReplace(dialog->parentWidget(), chosen);
    }
    if (answer == Answer::None)
        chosen.clear();
    if (dialog && !chosen.isEmpty())
        saveMemory(dialog);
    delete dialog;
    return chosen;
}

QString archivedialog::fileForRestore(QWidget *page, const QString &defaultFolder)
{
    const QPointer<QFileDialog> dialog =
        newDialog(page, QCoreApplication::translate("ServerWidget", "Choose file to Restore"),
                  QFileDialog::AcceptOpen, QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    restoreMemory(dialog, defaultFolder);
    QString chosen = run(dialog);
    if (dialog && !chosen.isEmpty())
        saveMemory(dialog);
    delete dialog;
    return chosen;
}
