// The two file dialogs of the settings page. They share their set-up and their memory: each opens where the
// last one was closed, also in an earlier run.
#pragma once

#include <QString>

class QWidget;

// Both run an event loop of their own, and return the file chosen; an empty name when the user cancelled, or
// when the page or the program ended meanwhile: check the page before touching it.
namespace archivedialog
{

/// Asks where to save a backup; the file of the given full name is preselected. The name returned ends in
/// ".tar.gz", and the user has agreed to lose an older file of that name.
QString fileForBackup(QWidget *page, const QString &defaultFolder, const QString &fileName);

/// Asks for the backup to restore.
QString fileForRestore(QWidget *page, const QString &defaultFolder);

} // namespace archivedialog
