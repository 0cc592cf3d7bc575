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
      //: A button, 150 pixels wide
      startButton(new QPushButton(tr("&Start Update"), this)),
      //: A button, 150 pixels wide
      abortButton(new QPushButton(tr("&Abort Update"), this))
{
    buildWidgets();
    connect(startButton, &QPushButton::clicked, this, &MonitorUpdate::startClicked);
    // Twice on purpose: a row without a client takes no notice of the second.
    connect(abortButton, &QPushButton::clicked, this, &MonitorUpdate::abortMon);
    connect(abortButton, &QPushButton::clicked, this, &MonitorUpdate::abortMon);
    connect(client, &udpHBClient::listUpdated, this, &MonitorUpdate::followList);
    connect(client, &udpHBClient::screenUpdated, this, &MonitorUpdate::followType);
    newMonitors();
}

void MonitorUpdate::buildWidgets()
{
    // A frame that is seen, as on Windows, would cross the button.
    setStyleSheet(
        QStringLiteral("QScrollArea { background-color: transparent; border: 1px solid transparent; } "
                       "QWidget#devlist { background-color: transparent; }"));
    auto *scrollArea = new QScrollArea(this);
    scrollArea->setWidgetResizable(true);
    auto *list = new QWidget;
    list->setObjectName(QStringLiteral("devlist"));
    rows = new QVBoxLayout(list);
    rows->setContentsMargins(4, 4, 4, 4);
    rows->setSpacing(9);
    rows->addStretch();
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

// Choosing -> Idle, Updating;  Idle -> Choosing, Updating;  Updating -> Idle, Updating
void MonitorUpdate::enter(State next)
{
    const State previous = std::exchange(state, next);
    if (state == State::Updating)
        swapButtons(startButton, abortButton);
    else if (previous == State::Updating)
        swapButtons(abortButton, startButton);
    else if (previous == State::Choosing)
        newMonitors();
}

void MonitorUpdate::followList()
{
    // A display that leaves is forgotten, also while its row has to stay.
    const QSet<QHostAddress> known = std::exchange(refused, {});
    const QList<ScreenDevice> screens = client->screens();
    for (const ScreenDevice &screen : screens) {
        if (known.contains(screen.address))
            refused += screen.address;
    }
    if (state == State::Idle)
        newMonitors();
}

// A display of another type may have taken over an address, which the client does not report as a change of
// its list. It must not get this page's packages.
void MonitorUpdate::followType(const ScreenDevice &screen)
{
    if (shown.contains(screen.address) != (screen.type == deviceType))
        followList();
}

// A row that looks like one built anew is kept: building is what costs when many displays appear. The client
// adds displays at the end of its list, so the rows to be kept are in its order.
void MonitorUpdate::newMonitors()
{
    const QHostAddress focused = focusedDisplay();
    const QList<ScreenDevice> screens = client->screens();
    int place = 0;
    for (const ScreenDevice &screen : screens) {
        if (screen.type != deviceType)
            continue;
        const MonitorUpdateWidget *row = rowAt(place);
        for (; row && !isCurrent(row, screen); row = rowAt(place))
            removeRow(place);
        if (!row && addRow(screen)->deviceAddress() == focused)
            rowAt(place)->setFocus();
        ++place;
    }
    while (rowAt(place))
        removeRow(place);
    //: 400 pixels wide, as the text for no devices, where %1 is a type of displays: screen, screen2 or eink
    heading->setText(place > 0 ? tr("Select device for software update:")
                               : tr("No %1 devices available for update.").arg(deviceType.toLower()));
}

// Null behind the last row, where the stretch is.
MonitorUpdateWidget *MonitorUpdate::rowAt(int place) const
{
    return static_cast<MonitorUpdateWidget *>(rows->itemAt(place)->widget());
}

bool MonitorUpdate::isCurrent(const MonitorUpdateWidget *row, const ScreenDevice &screen) const
{
    return row->deviceAddress() == screen.address && row->isAsNew() &&
           row->isTicked() != refused.contains(screen.address);
}

QHostAddress MonitorUpdate::focusedDisplay() const
{
    const QWidget *const focused = window()->focusWidget();
    const auto *const row = qobject_cast<MonitorUpdateWidget *>(focused ? focused->parentWidget() : nullptr);
    return row ? row->deviceAddress() : QHostAddress();
}

MonitorUpdateWidget *MonitorUpdate::addRow(const ScreenDevice &screen)
{
    const int place = rows->count() - 1;
    auto *row = new MonitorUpdateWidget(&screen, rows->parentWidget());
    shown += screen.address;
    row->setTicked(!refused.contains(screen.address));
    rows->insertWidget(place, row);
    // A row that is shown has the whole list laid out at once; the list does that by itself, once for all
    // rows of a turn of the event loop.
    rows->setEnabled(false);
    row->show();
    rows->setEnabled(true);
    // The keyboard comes to the choice of displays before it comes to the start.
    setTabOrder(row->focusProxy(), startButton);
    setTabOrder(startButton, abortButton);
    connect(row, &MonitorUpdateWidget::tickChanged, this, [this, address = screen.address](bool ticked) {
        if (ticked)
            refused -= address;
        else
            refused += address;
    });
    connect(this, &MonitorUpdate::updateMon, row, &MonitorUpdateWidget::updateMonitor);
    connect(this, &MonitorUpdate::abortMon, row, &MonitorUpdateWidget::abortUpdate);
    connect(row, &MonitorUpdateWidget::updateStarted, this, &MonitorUpdate::updateStarted);
    connect(row, &MonitorUpdateWidget::updateComplete, this, &MonitorUpdate::updateComplete);
    connect(client, &udpHBClient::screenUpdated, row, &MonitorUpdateWidget::updateCounter);
    return row;
}

// At once: rows that wait for their end would pile up while many displays appear. A row that one of its own
// signals is leading here from can go too, since it does nothing after it has emitted one.
void MonitorUpdate::removeRow(int place)
{
    shown -= rowAt(place)->deviceAddress();
    const std::unique_ptr<QLayoutItem> item{rows->takeAt(place)};
    delete item->widget();
}

void MonitorUpdate::startClicked()
{
    if (state != State::Idle)
        return;
    fileDialog =
        //: A kind of files
        updatefile::newDialog(this, tr("Kelvora Instrument Update"), updatefile::pattern(deviceType));
    connect(fileDialog, &QFileDialog::accepted, this, &MonitorUpdate::fileSelected);
    connect(fileDialog, &QFileDialog::rejected, this, &MonitorUpdate::endChoice);
    enter(State::Choosing);
    fileDialog->open();
}

void MonitorUpdate::endChoice()
{
    if (state == State::Choosing)
        enter(State::Idle);
}

void MonitorUpdate::fileSelected()
{
    if (!fileDialog)
        return;
    const QString path = updatefile::chosenPath(fileDialog);
    if (!updatefile::isValid(path, updatefile::pattern(deviceType))) {
        endChoice();
        updatefile::showNotValid(this);
        return;
    }
    enter(State::Updating);
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
    // A finished row that is aborted counts down again, so this may be reached several times.
    if (runningUpdates <= 0 && state == State::Updating)
        enter(State::Idle);
}
