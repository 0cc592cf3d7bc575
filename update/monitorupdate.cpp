#include "update/monitorupdate.h"

#include "discovery/udphbclient.h"
#include "update/monitorupdatewidget.h"
#include "update/updatefile.h"

#include <QDebug>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <memory>
#include <utility>

namespace
{

constexpr QRect headingPlace(20, 18, 400, 30);
constexpr QRect buttonPlace(720, 26, 150, 40);

// The keyboard's focus goes along, so that the next key press does not meet something else.
void swapButtons(QPushButton *from, QPushButton *to)
{
    to->show();
    if (from->window()->focusWidget() == from)
        to->setFocus();
    from->hide();
}

} // namespace

MonitorUpdate::MonitorUpdate(udpHBClient *sharedClient, QString type, QWidget *parent)
    : QWidget(parent), client(sharedClient), deviceType(std::move(type)), heading(new QLabel(this)),
      startButton(new QPushButton(tr("&Start Update"), this)),
      abortButton(new QPushButton(tr("&Abort Update"), this))
{
    buildWidgets();
    connect(startButton, &QPushButton::clicked, this, &MonitorUpdate::startClicked);
    // Twice on purpose: a row without a client takes no notice of the second.
    connect(abortButton, &QPushButton::clicked, this, &MonitorUpdate::abortMon);
    connect(abortButton, &QPushButton::clicked, this, &MonitorUpdate::abortMon);
    connect(client, &udpHBClient::listUpdated, this, &MonitorUpdate::newMonitors);
    newMonitors();
}

void MonitorUpdate::buildWidgets()
{
    setStyleSheet(QStringLiteral("QScrollArea { background-color: transparent; } "
                                 "QWidget#devlist { background-color: transparent; }"));
    auto *scrollArea = new QScrollArea(this);
    scrollArea->setWidgetResizable(true);
    auto *list = new QWidget;
    list->setObjectName(QStringLiteral("devlist"));
    rows = new QVBoxLayout(list);
    rows->setContentsMargins(4, 4, 4, 4);
    rows->setSpacing(9);
    scrollArea->setWidget(list);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 60, 10, 10);
    layout->addWidget(scrollArea);

    heading->setGeometry(headingPlace);
    startButton->setGeometry(buttonPlace);
    abortButton->setGeometry(buttonPlace);
    abortButton->hide();
    // The buttons reach down over the edge of the list.
    startButton->raise();
    abortButton->raise();
}

void MonitorUpdate::newMonitors()
{
    // At once: rows that wait for their end pile up while many displays appear. A row that one of its own
    // signals is leading here from can go too, since it does nothing after it has emitted one.
    while (const std::unique_ptr<QLayoutItem> item{rows->takeAt(0)})
        delete item->widget();
    const QList<ScreenDevice> screens = client->screens();
    for (const ScreenDevice &screen : screens) {
        if (screen.type == deviceType)
            addRow(new MonitorUpdateWidget(&screen, rows->parentWidget()));
    }
    rows->addStretch();
    heading->setText(rows->count() > 1 ? tr("Select device for software update:")
                                       : tr("No %1 devices available for update.").arg(deviceType.toLower()));
}

void MonitorUpdate::addRow(MonitorUpdateWidget *row)
{
    rows->addWidget(row);
    // The keyboard comes to the choice of displays before it comes to the start.
    setTabOrder(row->focusProxy(), startButton);
    setTabOrder(startButton, abortButton);
    connect(this, &MonitorUpdate::updateMon, row, &MonitorUpdateWidget::updateMonitor);
    connect(this, &MonitorUpdate::abortMon, row, &MonitorUpdateWidget::abortUpdate);
    connect(row, &MonitorUpdateWidget::updateStarted, this, &MonitorUpdate::updateStarted);
    connect(row, &MonitorUpdateWidget::updateComplete, this, &MonitorUpdate::updateComplete);
    connect(client, &udpHBClient::screenUpdated, row, &MonitorUpdateWidget::updateCounter);
}

void MonitorUpdate::startClicked()
{
    fileDialog =
        updatefile::openDialog(this, tr("Kelvora Instrument Update"), updatefile::pattern(deviceType));
    connect(fileDialog, &QFileDialog::accepted, this, &MonitorUpdate::fileSelected);
}

void MonitorUpdate::fileSelected()
{
    if (!fileDialog)
        return;
    const QString path = updatefile::chosenPath(fileDialog);
    if (!updatefile::isValid(path, updatefile::pattern(deviceType))) {
        updatefile::showNotValid(this);
        return;
    }
    // The list must not be rebuilt under running uploads.
    disconnect(client, &udpHBClient::listUpdated, this, &MonitorUpdate::newMonitors);
    swapButtons(startButton, abortButton);
    // What an aborted update counted below zero would otherwise end this one before its last rows.
    runningUpdates = 0;
    emit updateMon(path);
}

void MonitorUpdate::updateStarted()
{
    ++runningUpdates;
    qDebug().noquote() << "Updates started:" << runningUpdates;
}

void MonitorUpdate::updateComplete()
{
    --runningUpdates;
    qDebug().noquote() << "Updates remaining:" << runningUpdates;
    if (runningUpdates > 0)
        return;
    // A finished row that is aborted counts down again, so this may be reached several times.
    connect(client, &udpHBClient::listUpdated, this, &MonitorUpdate::newMonitors, Qt::UniqueConnection);
    if (rows->count() > 0)
        swapButtons(abortButton, startButton);
    else
        abortButton->hide();
}
