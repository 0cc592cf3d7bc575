// The choice of an update package, the same on every page that uploads one.
#pragma once

#include <QString>

class QFileDialog;
class QWidget;

namespace updatefile
{

/// What the path of a package for the device type must contain, in lower case: "screen2-update" for
/// "SCREEN2".
QString pattern(const QString &deviceType);

/// Whether path is a file and contains the pattern, case-sensitively. Folders and special files are no
/// packages; opening a pipe would even block the window.
bool isValid(const QString &path, const QString &pattern);

/// A dialog for one existing package, not opened yet. filterTitle names its kind in the name filter. It goes
/// when it is closed, and with the page.
QFileDialog *newDialog(QWidget *page, const QString &filterTitle, const QString &pattern);

/// The first path that the user chose; empty for none. Written to the debug channel.
QString chosenPath(const QFileDialog *dialog);

/// Tells the user that the chosen file is no package. Returns at once; the box goes with the page.
void showNotValid(QWidget *page);

} // namespace updatefile
