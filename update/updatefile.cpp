#include "update/updatefile.h"

#include "update/updatechecker.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QStandardPaths>
#include <QUrl>

namespace
{

// Packages that were just fetched lie in the downloads.
QList<QUrl> usualPlaces(const QString &updateFolder)
{
    QList<QUrl> places;
    QStringList known{QString()};
    for (const QString &folder :
         {updateFolder, QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
          QDir::homePath()}) {
        // None for a folder that does not exist.
        const QString identity = QFileInfo(folder).canonicalFilePath();
        if (!known.contains(identity))
            places += QUrl::fromLocalFile(folder);
        known += identity;
    }
    return places;
}

// The parent of what is shown is the window: a child of the page would be locked together with the page.
void keepWhile(QDialog *dialog, const QWidget *page)
{
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(page, &QObject::destroyed, dialog, &QObject::deleteLater);
}

} // namespace

QString updatefile::pattern(const QString &deviceType)
{
    return deviceType.toLower() + QStringLiteral("-update");
}

bool updatefile::isValid(const QString &path, const QString &pattern)
{
    return QFileInfo(path).isFile() && path.contains(pattern);
}

QFileDialog *updatefile::newDialog(QWidget *page, const QString &filterTitle, const QString &pattern)
{
    const QString folder = UpdateChecker::updateDirectory().absolutePath();
    auto *dialog =
        new QFileDialog(page->window(), QCoreApplication::translate("UpdateFile", "Open Update File"), folder,
                        filterTitle + QStringLiteral(" (*") + pattern + QStringLiteral("*.tar.gz)"));
    keepWhile(dialog, page);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    // On closing, the toolkit saves the side bar for all programs of the user: its own entries are put back
    // first.
    QObject::connect(dialog, &QDialog::finished, dialog,
                     [dialog, own = dialog->sidebarUrls()] { dialog->setSidebarUrls(own); });
    dialog->setSidebarUrls(usualPlaces(folder));
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
    auto *box =
        //: The title of a box
        new QMessageBox(QMessageBox::Warning, QCoreApplication::translate("UpdateFile", "Firmware Update"),
                        QCoreApplication::translate("UpdateFile", "This is not a valid file."),
                        QMessageBox::Cancel, page->window());
    keepWhile(box, page);
    // No nested event loop: heartbeats, transfers and even the window's end may come while the box is shown.
    box->open();
}
