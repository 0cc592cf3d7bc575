// The addresses of the boat network that the test runs in.
#pragma once

#include "tests/support/text.h"

#include <QHostAddress>

/// The address of the device with this host number.
inline QHostAddress boatAddress(int host)
{
    return QHostAddress(qEnvironmentVariable("KELVORA_BOAT_PREFIX", "127.0.0."_s) + QString::number(host));
}
