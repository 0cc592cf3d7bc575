#pragma once

#include <QObject>
#include <QVariant>

/// Hands on, from layer to layer down to the sockets, the session that a connection is to be made in.
inline void copyNetworkSession(const QObject *from, QObject *to)
{
    const char *const name = "_q_networksession";
    to->setProperty(name, from->property(name));
}
