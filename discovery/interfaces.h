// Which network interfaces take part. The two rules differ on purpose: asking costs nothing and may reach
// devices over a link that is only just coming up, while listening on virtual adapters would bring every
// heartbeat twice.
#pragma once

#include <QNetworkInterface>

#include <vector>

namespace interfaces
{

/// Whether heartbeats are listened for on an IPv4 interface with these flags and this human-readable name.
bool listensOn(QNetworkInterface::InterfaceFlags flags, const QString &name);

/// Whether requests are sent on an IPv4 interface with these flags.
bool asksOn(QNetworkInterface::InterfaceFlags flags);

/// The machine's interfaces with an IPv4 address that are listened on, each once.
std::vector<QNetworkInterface> listening();

/// The machine's interfaces with an IPv4 address that requests are sent on, each once.
std::vector<QNetworkInterface> asking();

} // namespace interfaces
