// The two file dialogs of the settings page. They share their set-up and their memory: each opens where the
// last one was closed, also in an earlier run.
#pragma once

#include <QString>

class QFileDialog;
class QWidget;

namespace archivedialog
{

/// Asks where to save a backup; the file of the given full name is preselected. The parent owns the dialog.
QFileDialog *forBackup(QWidget *parent, const QString &defaultFolder, const QString &fileName);

/// Asks for the backup to restore. The parent owns the dialog.
QFileDialog *forRestore(QWidget *parent, const QString &defaultFolder);

/// Lets the dialog run. Returns the file chosen; empty when the user cancelled, or when the parent or the
/// program ended meanwhile: check the parent before touching it. The dialog is gone afterwards.
QString run(QFileDialog *shown);

} // namespace archivedialog
