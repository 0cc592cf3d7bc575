#include "update/monitorupdate.h"

MonitorUpdate::MonitorUpdate(udpHBClient *client, const QString &type, QWidget *parent) : QWidget(parent)
{
    Q_UNUSED(client)
    Q_UNUSED(type)
}
