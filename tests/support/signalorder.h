// The names of a heartbeat client's signals, in the order in which they came.
#pragma once

#include "discovery/udphbclient.h"

#include <QStringList>

#include <utility>

class SignalOrder
{
public:
    explicit SignalOrder(udpHBClient &client)
    {
        const auto note = [this](const char *name) { return [this, name] { names += QLatin1String(name); }; };
        QObject::connect(&client, &udpHBClient::serverChanged, note("serverChanged"));
        QObject::connect(&client, &udpHBClient::serverRemoved, note("serverRemoved"));
        QObject::connect(&client, &udpHBClient::listUpdated, note("listUpdated"));
        QObject::connect(&client, &udpHBClient::screenUpdated, note("screenUpdated"));
        QObject::connect(&client, &udpHBClient::screenRemoved, note("screenRemoved"));
        QObject::connect(&client, &udpHBClient::n6BeaconReceived, note("n6"));
        QObject::connect(&client, &udpHBClient::gyroBeaconReceived, note("gyro"));
        QObject::connect(&client, &udpHBClient::incompatibleDevice, note("incompatible"));
        QObject::connect(&client, &udpHBClient::multipleServers, note("multipleServers"));
    }

    /// What came since the last call, separated by blanks.
    QString take() { return std::exchange(names, {}).join(QLatin1Char(' ')); }

private:
    QStringList names;
};
