// One display's row on an update page: who it is, whether to update it, how far that is. The page owns the
// rows and replaces them as the list of displays changes, except during an update.
#pragma once

#include <QHostAddress>
#include <QString>
#include <QWidget>

class QCheckBox;
class QLabel;
class QProgressBar;
class Upload;
struct ScreenDevice;

class MonitorUpdateWidget : public QWidget
{
    Q_OBJECT

public:
    /// The record is only read here: during an update the display may time out while its row stays.
    MonitorUpdateWidget(const ScreenDevice *device, QWidget *parent);

    /// Which display the row is for.
    const QHostAddress &deviceAddress() const { return address; }
    /// Whether the user wants this display updated; a new row is ticked.
    bool isTicked() const;
    void setTicked(bool ticked);
    /// Nothing of an update was shown here yet: the row looks like one that is made now.
    bool isAsNew() const { return isNew; }

signals:
    /// By the user or by setTicked().
    void tickChanged(bool ticked);
    /// An upload began with a file that could be opened.
    void updateStarted();
    /// The upload ended, well or not, or was aborted.
    void updateComplete();

public slots:
    /// Uploads the file to the display if the row is ticked, in place of any upload of before.
    void updateMonitor(const QString &filename);
    /// Refreshes the row from a heartbeat; those of other displays are ignored.
    void updateCounter(const ScreenDevice &screen);
    /// Ends the upload at once; without one nothing happens.
    void abortUpdate();
    /// Both in bytes.
    void updateDataTransferProgress(qint64 readBytes, qint64 totalBytes);
    /// The display installs what it got and restarts, whether the tool heard of the end or not.
    void ftpDone(bool error);

private:
    void showDevice(const ScreenDevice &screen);

    const QHostAddress address;
    QCheckBox *checkBox;
    QProgressBar *progressBar;
    QLabel *label;
    Upload *upload;
    bool isNew = true;
};
