#include "app/mainwindow.h"

#include "app/connectionstate.h"
#include "app/icons.h"
#include "discovery/devices.h"
#include "discovery/udphbclient.h"
#include "settings/serverwidget.h"
#include "update/monitorupdate.h"
#include "update/n6widget.h"

#include <QCoreApplication>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace
{

constexpr QSize minimumSizePx(770, 500);
constexpr QSize initialSizePx(900, 640);
constexpr QMargins marginsPx(4, 2, 2, 2);
constexpr int logoHeightPx = 70;
constexpr int n6Tab = 3;
constexpr int settingsTab = 4;

} // namespace

Mainwindow::Mainwindow(QWidget *parent)
    : QWidget(parent), client(new udpHBClient(udpHBClient::Active, this)), tabs(new QTabWidget(this)),
      logo(new QPushButton(this))
{
    setWindowTitle(QCoreApplication::applicationName() + QStringLiteral(" - v") +
                   QCoreApplication::applicationVersion());
    setWindowIcon(applicationIcon());
    setMinimumSize(minimumSizePx);
    resize(initialSizePx);

    connect(client, &udpHBClient::incompatibleDevice, this, &Mainwindow::disableTabs);
    connect(client, &udpHBClient::n6BeaconReceived, this, &Mainwindow::enableTabs);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(marginsPx);
    layout->addWidget(new connectionState(this, client));
    layout->addWidget(tabs);
    layout->addWidget(logo);

    addPages();

    logo->setStyleSheet(QStringLiteral("QPushButton { border:none; outline:none; background-color:black; }"));
    // A banner: nothing to press or to stop at.
    logo->setFocusPolicy(Qt::NoFocus);
    //: Only read aloud
    logo->setAccessibleName(tr("Logo"));
    logo->setIcon(builtinIcon(QStringLiteral("logo")));
}

// The pages may read the client to their last, so it must not go before them.
Mainwindow::~Mainwindow()
{
    qDeleteAll(findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly));
}

void Mainwindow::addPages()
{
    //: The titles of the five tabs, which share some 850 pixels. Screen, Screen2 and E-Ink are types of
    //: displays
    tabs->addTab(new MonitorUpdate(client, displaytype::screen, this), tr("Screen Updates"));
    tabs->addTab(new MonitorUpdate(client, displaytype::screen2, this), tr("Screen2 Updates"));
    tabs->addTab(new MonitorUpdate(client, displaytype::eink, this), tr("E-Ink Updates"));
    tabs->addTab(new N6Widget(this, client), tr("N6 Setup and Update"));
    tabs->addTab(new ServerWidget(this, client), tr("N6 Configuration"));
    tabs->setTabEnabled(n6Tab, false);
    tabs->setTabEnabled(settingsTab, false);
}

void Mainwindow::disableTabs()
{
    tabs->setEnabled(false);
}

void Mainwindow::enableTabs()
{
    if (!client->n6Online())
        return;
    tabs->setTabEnabled(n6Tab, true);
    tabs->setTabEnabled(settingsTab, true);
}

void Mainwindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    logo->setIconSize(QSize(width(), logoHeightPx));
}
