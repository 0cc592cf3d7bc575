#include "update/monitorupdatewidget.h"

#include "discovery/devices.h"
#include "update/rowtext.h"
#include "update/transferbar.h"
#include "update/upload.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QTextDocument>

namespace
{

constexpr int fontPixels = 12;

} // namespace

MonitorUpdateWidget::MonitorUpdateWidget(const ScreenDevice *device, QWidget *parent)
    : QWidget(parent), address(device->address), checkBox(new QCheckBox(QStringLiteral("---"), this)),
      progressBar(new QProgressBar(this)), label(new QLabel(QStringLiteral("---"), this)),
      upload(new Upload(this))
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
    //: Only read aloud
    progressBar->setAccessibleName(tr("Upload progress"));
    label->setGeometry(580, 1, 100, 36);
    label->setFont(rowFont);
    label->setWordWrap(true);
    showDevice(*device);
    connect(checkBox, &QCheckBox::toggled, this, &MonitorUpdateWidget::tickChanged);
    connect(upload, &Upload::progress, this, &MonitorUpdateWidget::updateDataTransferProgress);
    connect(upload, &Upload::ended, this, &MonitorUpdateWidget::ftpDone);
}

bool MonitorUpdateWidget::isTicked() const
{
    return checkBox->isChecked();
}

void MonitorUpdateWidget::setTicked(bool ticked)
{
    checkBox->setChecked(ticked);
}

void MonitorUpdateWidget::updateMonitor(const QString &filename)
{
    isNew = false;
    label->clear();
    if (!isTicked())
        return;
    progressBar->reset();
    //: In 100 pixels, or two such lines: the file is on its way from this computer to the device
    label->setText(tr("Downloading..."));
    if (upload->start(address.toString(), filename))
        emit updateStarted();
}

void MonitorUpdateWidget::updateCounter(const ScreenDevice &screen)
{
    if (screen.address == address)
        showDevice(screen);
}

void MonitorUpdateWidget::showDevice(const ScreenDevice &screen)
{
    if (rowtext::hasReadout(screen) && !upload->isTransferring())
        label->setText(rowtext::readout(screen));
    const QString description = rowtext::description(screen);
    // A single "&" in what the display sent would make the next letter a keyboard shortcut.
    const QString shown = QString(description).replace(QLatin1Char('&'), QLatin1String("&&"));
    if (checkBox->text() == shown)
        return;
    checkBox->setText(shown);
    // Long serials and addresses reach beyond the row's fixed width.
    checkBox->setToolTip(Qt::convertFromPlainText(description, Qt::WhiteSpaceNormal));
}

void MonitorUpdateWidget::updateDataTransferProgress(qint64 readBytes, qint64 totalBytes)
{
    isNew = false;
    transferbar::show(progressBar, readBytes, totalBytes);
}

void MonitorUpdateWidget::ftpDone(bool error)
{
    Q_UNUSED(error)
    isNew = false;
    //: The file was sent; the device may be installing it. In 100 pixels, or two such lines
    label->setText(tr("Updating..."));
    emit updateComplete();
}

void MonitorUpdateWidget::abortUpdate()
{
    if (!upload->abort())
        return;
    //: The user has stopped the update of this display
    label->setText(tr("Aborted."));
    progressBar->reset();
    emit updateComplete();
}
