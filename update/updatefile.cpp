#include "update/updatefile.h"

#include "update/updatechecker.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

QString updatefile::pattern(const QString &deviceType)
{
    return deviceType.toLower() + QStringLiteral("-update");
}

bool updatefile::isValid(const QString &path, const QString &pattern)
{
    return QFileInfo(path).isFile() && path.contains(pattern);
}

QFileDialog *updatefile::openDialog(QWidget *page, const QString &filterTitle, const QString &pattern)
{
    auto *dialog =
        new QFileDialog(page, QCoreApplication::translate("UpdateFile", "Open Update File"),
                        UpdateChecker::updateDirectory().absolutePath(),
                        filterTitle + QStringLiteral(" (*") + pattern + QStringLiteral("*.tar.gz)"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    dialog->open();
    return dialog;
}

QString updatefile::chosenPath(const QFileDialog *dialog)
{
    QString path = dialog->selectedFiles().value(0);
    qDebug().noquote() << "Chosen screen update file:" << path;
    return path;
}

void updatefile::showNotValid(QWidget *page)
{
    auto *box = new QMessageBox(
        QMessageBox::Warning, QCoreApplication::translate("UpdateFile", "Firmware Update"),
        QCoreApplication::translate("UpdateFile", "This is not a valid file."), QMessageBox::Cancel, page);
    box->setAttribute(Qt::WA_DeleteOnClose);
    // No nested event loop: heartbeats, transfers and even the window's end may come while the box is shown.
    box->open();
}
