#include "update/n6widget.h"

#include "discovery/n6commands.h"
#include "discovery/protocol.h"
#include "discovery/udphbclient.h"
#include "ui_n6control.h"
#include "update/transferbar.h"
#include "update/updatefile.h"
#include "update/upload.h"

#include <QDebug>
#include <QDesktopServices>
#include <QFileDialog>
#include <QUdpSocket>
#include <QUrl>

namespace
{

// How long the end of an upload stays on the page, at least.
constexpr int uploadEndShownMs = 4000;

QString filePattern()
{
    return updatefile::pattern(QStringLiteral("N6"));
}

void fillModes(QComboBox *box, N6Port port)
{
    for (const N6PortMode &mode : n6PortModes(port))
        box->addItem(mode.name);
}

} // namespace

N6Widget::N6Widget(QWidget *parent, udpHBClient *sharedClient)
    : QWidget(parent), client(sharedClient), form(std::make_unique<Ui::N6Control>()),
      socket(new QUdpSocket(this)), upload(new Upload(this))
{
    form->setupUi(this);
    fillModes(form->comboBox_port1, N6Port::Port1);
    fillModes(form->comboBox_port2, N6Port::Port2);
    form->label_Alarm->hide();
    for (QComboBox *box : {form->comboBox_port1, form->comboBox_port2}) {
        box->setEnabled(false);
        box->installEventFilter(this);
    }
    form->resultLabel->clear();
    form->progressBar->setTextVisible(false);

    connect(client, &udpHBClient::n6BeaconReceived, this, &N6Widget::updateGUI);
    connect(form->comboBox_port1, qOverload<int>(&QComboBox::currentIndexChanged), this, &N6Widget::setMode1);
    connect(form->comboBox_port2, qOverload<int>(&QComboBox::currentIndexChanged), this, &N6Widget::setMode2);
    connect(form->UpdateFirmware, &QPushButton::pressed, this, &N6Widget::startClicked);
    connect(form->webButton, &QPushButton::pressed, this, &N6Widget::openWebinterface);
    connect(upload, &Upload::progress, this, &N6Widget::updateDataTransferProgress);
    connect(upload, &Upload::ended, this, &N6Widget::ftpDone);
}

N6Widget::~N6Widget() = default;

void N6Widget::updateGUI()
{
    const N6Device n6 = client->n6Device();
    address = n6.address;
    form->comboBox_port1->setEnabled(n6.online);
    form->comboBox_port2->setEnabled(n6.online);
    showIdentity(n6);
    showModes(n6);
}

void N6Widget::showIdentity(const N6Device &n6)
{
    if (!n6.online) {
        form->label_serial->setText(tr("no device found"));
        form->label_version->clear();
        form->label_model->clear();
        return;
    }
    if (uploadEnd.isValid() && uploadEnd.elapsed() > uploadEndShownMs) {
        form->resultLabel->clear();
        form->progressBar->setTextVisible(false);
        form->progressBar->reset();
        uploadEnd.invalidate();
    }
    //: Serial number and model of the N6
    form->label_serial->setText(tr("%1   (%2)").arg(n6.serial, n6ModelName(n6.model)));
    //: Versions of the N6's software and firmware
    form->label_version->setText(tr("%1   (FW %2)").arg(n6.applicationVersion, n6.firmwareVersion));
    form->label_model->setText(displayAddress(n6.address));
}

// Cut off from sending meanwhile: what the N6 reported must never go back to it as a command.
void N6Widget::showModes(const N6Device &n6)
{
    QComboBox *const port1 = form->comboBox_port1;
    QComboBox *const port2 = form->comboBox_port2;

    disconnect(port1, nullptr, this, nullptr);
    const int port1Index = n6PortModeIndex(N6Port::Port1, n6.port1Mode);
    // A code that port 1 does not know says nothing, except for -1: no mode at all.
    if (port1Index >= 0 || n6.port1Mode == -1)
        port1->setCurrentIndex(port1Index);
    connect(port1, qOverload<int>(&QComboBox::currentIndexChanged), this, &N6Widget::setMode1);

    disconnect(port2, nullptr, this, nullptr);
    port2->setCurrentIndex(n6PortModeIndex(N6Port::Port2, n6.port2Mode));
    connect(port2, qOverload<int>(&QComboBox::currentIndexChanged), this, &N6Widget::setMode2);
}

// A wheel that is turned over the page would send a command for each notch. It goes on to what lies behind;
// an open list is a window of its own and scrolls.
bool N6Widget::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Wheel)
        return QWidget::eventFilter(watched, event);
    event->ignore();
    return true;
}

void N6Widget::setMode1()
{
    const int code = n6PortModeCode(N6Port::Port1, form->comboBox_port1->currentText());
    qDebug().noquote() << "Setting N6 Port1 mode to" << code;
    sendMode(N6Port::Port1, code);
}

void N6Widget::setMode2()
{
    const int code = n6PortModeCode(N6Port::Port2, form->comboBox_port2->currentText());
    qDebug().noquote() << "Setting N6 Port2 mode to" << code;
    sendMode(N6Port::Port2, code);
}

void N6Widget::sendMode(N6Port port, int code)
{
    socket->writeDatagram(n6PortModeCommand(port, code), address, protocol::commandPort);
}

void N6Widget::openWebinterface()
{
    if (!address.isNull())
        QDesktopServices::openUrl(QUrl(QStringLiteral("http://%1/").arg(displayAddress(address))));
}

void N6Widget::startClicked()
{
    if (address.isNull())
        return;
    //: A kind of files
    fileDialog = updatefile::newDialog(this, tr("Kelvora N6 Update"), filePattern());
    connect(fileDialog, &QFileDialog::accepted, this, &N6Widget::fileSelected);
    fileDialog->open();
}

void N6Widget::fileSelected()
{
    if (!fileDialog)
        return;
    const QString path = updatefile::chosenPath(fileDialog);
    if (updatefile::isValid(path, filePattern()))
        startUpload(path);
    else
        updatefile::showNotValid(this);
}

void N6Widget::startUpload(const QString &fileName)
{
    form->resultLabel->clear();
    if (address.isNull())
        return;
    // The end of an earlier upload must not clear the status of this one.
    uploadEnd.invalidate();
    form->progressBar->reset();
    //: The file is on its way from this computer to the N6
    form->resultLabel->setText(tr("Downloading..."));
    if (upload->start(client->n6Device().address.toString(), fileName))
        qDebug().noquote() << "Updates started";
}

void N6Widget::updateDataTransferProgress(qint64 readBytes, qint64 totalBytes)
{
    form->progressBar->setTextVisible(true);
    transferbar::show(form->progressBar, readBytes, totalBytes);
}

void N6Widget::ftpDone(bool error)
{
    Q_UNUSED(error)
    //: The file was sent; the N6 may be installing it
    form->resultLabel->setText(tr("Updating..."));
    form->progressBar->setTextVisible(false);
    uploadEnd.start();
    qDebug().noquote() << "Updates send";
}
