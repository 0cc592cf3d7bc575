#include "discovery/interfaces.h"

#include <algorithm>
#include <iterator>

namespace interfaces
{
namespace
{

// Joining or sending fails on an interface that has no IPv4 address.
bool hasIpv4(const QNetworkInterface &candidate)
{
    const auto entries = candidate.addressEntries();
    return std::any_of(entries.begin(), entries.end(), [](const QNetworkAddressEntry &entry) {
        return entry.ip().protocol() == QAbstractSocket::IPv4Protocol;
    });
}

template <typename Accept>
std::vector<QNetworkInterface> select(Accept accept)
{
    const auto all = QNetworkInterface::allInterfaces();
    std::vector<QNetworkInterface> chosen;
    std::copy_if(all.begin(), all.end(), std::back_inserter(chosen), [&](const QNetworkInterface &candidate) {
        return candidate.isValid() && accept(candidate) && hasIpv4(candidate);
    });
    return chosen;
}

} // namespace

bool listensOn(QNetworkInterface::InterfaceFlags flags, const QString &name)
{
    return asksOn(flags) && flags.testFlag(QNetworkInterface::IsRunning) &&
           !name.startsWith(QLatin1String("virtual"), Qt::CaseInsensitive);
}

bool asksOn(QNetworkInterface::InterfaceFlags flags)
{
    return flags.testFlag(QNetworkInterface::IsUp) && flags.testFlag(QNetworkInterface::CanMulticast) &&
           !flags.testFlag(QNetworkInterface::IsLoopBack);
}

std::vector<QNetworkInterface> listening()
{
    return select([](const QNetworkInterface &candidate) {
        return listensOn(candidate.flags(), candidate.humanReadableName());
    });
}

std::vector<QNetworkInterface> asking()
{
    return select([](const QNetworkInterface &candidate) { return asksOn(candidate.flags()); });
}

} // namespace interfaces
