#include "app/mainwindow.h"

#include "app/connectionstate.h"
#include "app/icons.h"
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

constexpr int activeMode = 0;
constexpr int logoHeight = 70;
constexpr int n6Tab = 3;
constexpr int settingsTab = 4;

} // namespace

Mainwindow::Mainwindow(QWidget *parent)
    : QWidget(parent), client(new udpHBClient(activeMode, this)), tabs(new QTabWidget(this)),
      logo(new QPushButton(this))
{
    setWindowTitle(QCoreApplication::applicationName() + QStringLiteral(" - v") +
                   QCoreApplication::applicationVersion());
    setWindowIcon(applicationIcon());
    setMinimumSize(770, 500);
    resize(900, 640);

    connect(client, &udpHBClient::incompatibleDevice, this, &Mainwindow::disableTabs);
    connect(client, &udpHBClient::n6BeaconReceived, this, &Mainwindow::enableTabs);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 2, 2, 2);
    layout->addWidget(new connectionState(this, client));
    layout->addWidget(tabs);
    layout->addWidget(logo);

    addPages();

    logo->setStyleSheet(QStringLiteral("QPushButton { border:none; outline:none; background-color:black; }"));
    logo->setIcon(builtinIcon(QStringLiteral("logo")));
}

void Mainwindow::addPages()
{
    tabs->addTab(new MonitorUpdate(client, QStringLiteral("SCREEN"), this), tr("Screen Updates"));
    tabs->addTab(new MonitorUpdate(client, QStringLiteral("SCREEN2"), this), tr("Screen2 Updates"));
    tabs->addTab(new MonitorUpdate(client, QStringLiteral("EINK"), this), tr("E-Ink Updates"));
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
    logo->setIconSize(QSize(width(), logoHeight));
}
