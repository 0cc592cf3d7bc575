#include "update/monitorupdatewidget.h"

#include "discovery/devices.h"
#include "ftp/qftp.h"
#include "update/rowtext.h"
#include "update/upload.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QTextDocument>

#include <utility>

namespace
{

constexpr int fontPixels = 12;

} // namespace

MonitorUpdateWidget::MonitorUpdateWidget(const ScreenDevice *device, QWidget *parent)
    : QWidget(parent), address(device->address), checkBox(new QCheckBox(QStringLiteral("---"), this)),
      progressBar(new QProgressBar(this)), label(new QLabel(QStringLiteral("---"), this))
{
    setFixedSize(690, 37);
    QFont rowFont = font();
    rowFont.setPixelSize(fontPixels);

    checkBox->setGeometry(10, 2, 290, 36);
    checkBox->setStyleSheet(QStringLiteral("QCheckBox { spacing: 12px; }"));
    checkBox->setFont(rowFont);
    checkBox->setChecked(true);
    setFocusProxy(checkBox);
    progressBar->setGeometry(300, 4, 270, 32);
    progressBar->setAccessibleName(tr("Upload progress"));
    label->setGeometry(580, 1, 100, 36);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    label->setFont(rowFont);
    showDevice(*device);
}

void MonitorUpdateWidget::updateMonitor(const QString &filename)
{
    label->clear();
    if (!checkBox->isChecked())
        return;
    upload::retire(ftp);
    ftp = new QFtp(this);
    connect(ftp, &QFtp::done, this, &MonitorUpdateWidget::ftpDone);
    connect(ftp, &QFtp::dataTransferProgress, this, &MonitorUpdateWidget::updateDataTransferProgress);
    label->setText(tr("Downloading..."));
    if (upload::queue(ftp, address.toString(), filename))
        emit updateStarted();
}

void MonitorUpdateWidget::updateCounter(const ScreenDevice &screen)
{
    if (screen.address == address)
        showDevice(screen);
}

void MonitorUpdateWidget::showDevice(const ScreenDevice &screen)
{
    const bool isTransferring = ftp != nullptr && ftp->state() == QFtp::LoggedIn;
    if (rowtext::hasReadout(screen) && !isTransferring)
        label->setText(rowtext::readout(screen));
    const QString description = rowtext::description(screen);
    if (checkBox->text() == description)
        return;
    checkBox->setText(description);
    // Long serials and addresses reach beyond the row's fixed width.
    checkBox->setToolTip(Qt::convertFromPlainText(description, Qt::WhiteSpaceNormal));
}

void MonitorUpdateWidget::updateDataTransferProgress(qint64 readBytes, qint64 totalBytes)
{
    upload::showProgress(progressBar, readBytes, totalBytes);
}

void MonitorUpdateWidget::ftpDone(bool error)
{
    Q_UNUSED(error)
    label->setText(tr("Updating..."));
    emit updateComplete();
}

void MonitorUpdateWidget::abortUpdate()
{
    if (!ftp)
        return;
    // Cut off first: what the abort itself reports would count this row's end twice.
    QFtp *aborted = std::exchange(ftp, nullptr);
    aborted->disconnect(this);
    aborted->abort();
    aborted->close();
    upload::retire(aborted);
    label->setText(tr("Aborted."));
    progressBar->reset();
    emit updateComplete();
}
