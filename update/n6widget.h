// The page of the N6 instrument: who it is, the modes of its serial ports, its web interface and its own
// update.
#pragma once

#include <QElapsedTimer>
#include <QHostAddress>
#include <QPointer>
#include <QWidget>

#include <memory>

class QFileDialog;
class QUdpSocket;
class Upload;
class udpHBClient;
enum class N6Port;
struct N6Device;

namespace Ui
{
class N6Control;
}

class N6Widget : public QWidget
{
    Q_OBJECT

public:
    /// The client must outlive the page.
    N6Widget(QWidget *parent, udpHBClient *sharedClient);
    ~N6Widget() override;

public slots:
    /// Shows what the N6's latest heartbeat said; never sends anything.
    void updateGUI();
    /// Sends the chosen mode of port 1 to the N6.
    void setMode1();
    /// Sends the chosen mode of port 2 to the N6.
    void setMode2();
    void openWebinterface();
    void startClicked();
    /// Checks the chosen file and uploads it.
    void fileSelected();
    /// The N6 installs what it got and restarts, whether the tool heard of the end or not.
    void ftpDone(bool error);
    /// Both in bytes.
    void updateDataTransferProgress(qint64 readBytes, qint64 totalBytes);

protected:
    /// Keeps the mouse wheel from choosing a port mode.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showIdentity(const N6Device &n6);
    void showModes(const N6Device &n6);
    void sendMode(N6Port port, int code);
    void startUpload(const QString &fileName);

    udpHBClient *client;
    std::unique_ptr<Ui::N6Control> form;
    QHostAddress address;
    QUdpSocket *socket;
    QElapsedTimer uploadEnd;
    QPointer<QFileDialog> fileDialog;
    Upload *upload;
};
