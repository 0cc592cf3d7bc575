#include "update/transferbar.h"

#include <QProgressBar>

#include <limits>

void transferbar::show(QProgressBar *bar, qint64 doneBytes, qint64 totalBytes)
{
    // A bar without a range would be shown as busy, for good.
    if (totalBytes <= 0) {
        bar->reset();
        return;
    }
    constexpr qint64 largestRange = std::numeric_limits<int>::max();
    const qint64 bytesPerStep = (totalBytes - 1) / largestRange + 1;
    bar->setMaximum(static_cast<int>(totalBytes / bytesPerStep));
    bar->setValue(static_cast<int>(qMin(doneBytes / bytesPerStep, largestRange)));
}
