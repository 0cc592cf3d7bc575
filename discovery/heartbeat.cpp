#include "discovery/heartbeat.h"

#include <QtEndian>

#include <cmath>
#include <limits>
#include <optional>

namespace heartbeat
{
namespace
{

// Offsets and sizes in bytes; all numbers are little-endian.
constexpr int kindOffset = 0;
constexpr int serialOffset = 1;
constexpr int serialSize = 16;
constexpr int validOffset = 17;
constexpr int trafficSize = 18;
constexpr int firmwareOffset = 18;
constexpr int firmwareSize = 6;
constexpr int luxOffset = 24;
// The N6 measures no light and reuses the tail of that slot for its model and port modes.
constexpr int modelOffset = 29;
constexpr int port1Offset = 30;
constexpr int port2Offset = 31;
constexpr int voltageOffset = 32;
constexpr int lsFlagOffset = 36;
constexpr int serverFlagOffset = 37;
constexpr int gyroStatusOffset = 37;
constexpr int firstLengthOffset = 38;
constexpr int shortestRecord = 40;
constexpr int longestFirstGeneration = 38;

enum Kind : quint8 {
    ScreenKind = 0x00,
    Screen2Kind = 0x20,
    EinkKind = 0x50,
    GyroKind = 0x72,
    N6Kind = 0xC6,
};

template <typename T>
T numberAt(const QByteArray &datagram, int offset)
{
    return qFromLittleEndian<T>(datagram.constData() + offset);
}

QString paddedText(const QByteArray &datagram, int offset, int size)
{
    const char *text = datagram.constData() + offset;
    return QString::fromUtf8(text, static_cast<int>(qstrnlen(text, static_cast<uint>(size))));
}

// std::round takes halves away from zero, also those of enormous values, which an integer type could not
// hold.
double twoDecimals(double value)
{
    constexpr double largestWithFraction =
        4503599627370496.0; // 2^52: doubles beyond have no decimals to round
    return std::abs(value) < largestWithFraction ? std::round(value * 100.0) / 100.0 : value;
}

double cleanVoltage(float volts)
{
    if (std::isnan(volts))
        return std::numeric_limits<double>::quiet_NaN();
    return volts > 0.0F ? twoDecimals(static_cast<double>(volts)) : 0.0;
}

double cleanLux(double lux)
{
    return lux > 0.0 ? twoDecimals(lux) : 0.0;
}

struct Versions {
    QString system;
    QString application;
};

// The two length-prefixed texts at the end; nothing when the heartbeat is invalid or too short for them.
std::optional<Versions> readVersions(const QByteArray &datagram)
{
    if (datagram.size() < shortestRecord || datagram.at(validOffset) == 0)
        return std::nullopt;
    const int firstLength = numberAt<qint8>(datagram, firstLengthOffset);
    const int secondLengthOffset = firstLengthOffset + 1 + firstLength;
    if (firstLength < 0 || secondLengthOffset >= datagram.size())
        return std::nullopt;
    const int secondLength = numberAt<qint8>(datagram, secondLengthOffset);
    if (secondLength < 0 || secondLengthOffset + 1 + secondLength > datagram.size())
        return std::nullopt;
    return Versions{QString::fromLatin1(datagram.constData() + firstLengthOffset + 1, firstLength),
                    QString::fromLatin1(datagram.constData() + secondLengthOffset + 1, secondLength)};
}

template <typename Record>
Record commonRecord(const QByteArray &datagram, const Versions &versions)
{
    Record record;
    record.serial = paddedText(datagram, serialOffset, serialSize);
    record.systemVersion = versions.system;
    record.applicationVersion = versions.application;
    record.supplyVoltage = cleanVoltage(numberAt<float>(datagram, voltageOffset));
    return record;
}

ScreenDevice screenRecord(const QByteArray &datagram, const Versions &versions, QLatin1String type)
{
    auto screen = commonRecord<ScreenDevice>(datagram, versions);
    screen.type = type;
    screen.firmwareVersion = paddedText(datagram, firmwareOffset, firmwareSize);
    screen.ambientLux = cleanLux(numberAt<double>(datagram, luxOffset));
    screen.lsFlag = datagram.at(lsFlagOffset) != 0;
    screen.isServer = datagram.at(serverFlagOffset) != 0;
    return screen;
}

// E-ink displays measure no voltage, name no firmware and never hold the settings, whatever those bytes say.
ScreenDevice einkRecord(const QByteArray &datagram, const Versions &versions)
{
    ScreenDevice screen = screenRecord(datagram, versions, displaytype::eink);
    screen.firmwareVersion.clear();
    screen.supplyVoltage = std::numeric_limits<double>::quiet_NaN();
    screen.isServer = false;
    return screen;
}

N6Device n6Record(const QByteArray &datagram, const Versions &versions)
{
    auto n6 = commonRecord<N6Device>(datagram, versions);
    n6.firmwareVersion = paddedText(datagram, firmwareOffset, firmwareSize);
    n6.model = numberAt<qint8>(datagram, modelOffset);
    n6.port1Mode = numberAt<qint8>(datagram, port1Offset);
    n6.port2Mode = numberAt<qint8>(datagram, port2Offset);
    return n6;
}

GyroDevice gyroRecord(const QByteArray &datagram, const Versions &versions)
{
    auto gyro = commonRecord<GyroDevice>(datagram, versions);
    gyro.status = numberAt<qint8>(datagram, gyroStatusOffset);
    return gyro;
}

// Older devices share the kind of "SCREEN" and are told apart by their serial. The first generation also
// sends shorter heartbeats; only those are reported. A "VHUB" alone is none of the tool's business.
std::optional<Decoded> decodeLegacy(const QByteArray &datagram)
{
    const QString serial = paddedText(datagram, serialOffset, serialSize);
    const bool reportable = serial.contains(QLatin1String("TZ582")) || serial.contains(QLatin1String("VK38"));
    if (reportable && datagram.size() <= longestFirstGeneration)
        return Incompatible{};
    if (reportable || serial.contains(QLatin1String("VHUB")))
        return Ignored{};
    return std::nullopt;
}

} // namespace

bool isTraffic(const QByteArray &datagram)
{
    return datagram.size() >= trafficSize;
}

Decoded decode(const QByteArray &datagram)
{
    if (!isTraffic(datagram))
        return Ignored{};
    const auto kind = numberAt<quint8>(datagram, kindOffset);
    if (kind == ScreenKind) {
        if (const auto legacy = decodeLegacy(datagram))
            return *legacy;
    }
    const auto versions = readVersions(datagram);
    if (!versions)
        return Ignored{};
    switch (kind) {
    case ScreenKind:
        return screenRecord(datagram, *versions, displaytype::screen);
    case Screen2Kind:
        return screenRecord(datagram, *versions, displaytype::screen2);
    case EinkKind:
        return einkRecord(datagram, *versions);
    case GyroKind:
        return gyroRecord(datagram, *versions);
    case N6Kind:
        return n6Record(datagram, *versions);
    default:
        return Ignored{};
    }
}

} // namespace heartbeat
