// The one-way commands that the N6 takes on UDP port protocol::commandPort: values in, datagram bytes out.
// The N6 never answers one.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// The two serial ports of the N6, which number their modes differently.
enum class N6Port { Port1, Port2 };

/// One mode that a serial port offers.
struct N6PortMode {
    QString name; ///< as shown to the user
    int code;     ///< as sent to and reported by the N6
};

/// The modes of a port, in the order in which they are offered to the user.
const QVector<N6PortMode> &n6PortModes(N6Port port);

/// The code of the mode with exactly this name; 0 for a name that the port does not offer.
int n6PortModeCode(N6Port port, const QString &name);

/// The position in n6PortModes() of the mode with this code, or -1 when the port has no such code.
int n6PortModeIndex(N6Port port, int code);

/// Asks the N6 to write its settings archive.
QByteArray n6BackupCommand();

/// Asks the N6 to take over the settings archive that was uploaded.
QByteArray n6RestoreCommand();

/// Resets the N6 with this serial to factory state: the serial in Latin-1, padded with zero bytes to 17 bytes
/// in all. A serial of more than 16 characters is sent whole, and the datagram is then longer.
QByteArray n6FactoryResetCommand(const QString &serial);

/// Sets the mode of a serial port; code is a value of n6PortModes().
QByteArray n6PortModeCommand(N6Port port, int code);
