#include "settings/archivedialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QPointer>
#include <QSettings>

namespace
{

QString stateKey()
{
    return QStringLiteral("Dialogs/settings");
}

QFileDialog *newDialog(QWidget *parent, const QString &title, QFileDialog::AcceptMode acceptMode,
                       QFileDialog::FileMode fileMode)
{
    auto *dialog = new QFileDialog(parent, title);
    dialog->setAcceptMode(acceptMode);
    dialog->setFileMode(fileMode);
    dialog->setNameFilter(QCoreApplication::translate("ServerWidget", "Kelvora Settings Backup (*.tar.gz)"));
    return dialog;
}

void restoreMemory(QFileDialog *dialog, const QString &defaultFolder)
{
    dialog->setDirectory(QString());
    dialog->restoreState(QSettings().value(stateKey()).toByteArray());
    if (dialog->directory() == QDir::current())
        dialog->setDirectory(defaultFolder);
}

void saveMemory(const QFileDialog *dialog)
{
    QSettings().setValue(stateKey(), dialog->saveState());
}

} // namespace

QFileDialog *archivedialog::forBackup(QWidget *parent, const QString &defaultFolder, const QString &fileName)
{
    auto *dialog = newDialog(parent, QCoreApplication::translate("ServerWidget", "Save As"),
                             QFileDialog::AcceptSave, QFileDialog::AnyFile);
    dialog->setDefaultSuffix(QStringLiteral("tar.gz"));
    dialog->selectFile(fileName);
    restoreMemory(dialog, defaultFolder);
    return dialog;
}

QFileDialog *archivedialog::forRestore(QWidget *parent, const QString &defaultFolder)
{
    auto *dialog = newDialog(parent, QCoreApplication::translate("ServerWidget", "Choose file to Restore"),
                             QFileDialog::AcceptOpen, QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    restoreMemory(dialog, defaultFolder);
    return dialog;
}

QString archivedialog::run(QFileDialog *shown)
{
    // The parent may die in the nested event loop, and the dialog with it.
    const QPointer<QFileDialog> dialog = shown;
    QString chosen;
    if (dialog->exec() == QDialog::Accepted && dialog) {
        saveMemory(dialog);
        chosen = dialog->selectedFiles().value(0);
    }
    delete dialog;
    return chosen;
}
