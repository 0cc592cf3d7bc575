// How a progress bar shows an upload, the same on every page.
#pragma once

#include <QtGlobal>

class QProgressBar;

namespace transferbar
{

/// Shows a transfer of totalBytes on a bar, whose range is an int: larger totals are scaled down. Without any
/// bytes to transfer the bar stays empty.
void show(QProgressBar *bar, qint64 doneBytes, qint64 totalBytes);

} // namespace transferbar
