#include "app/verdict.h"

#include <QCoreApplication>

Verdict verdictOn(const Reachable &known)
{
    if (!known.hasScreens && !known.isN6Online)
        return {ConnectionQuality::Error,
                QCoreApplication::translate("connectionState",
                                            "Connection problem, check your network settings")};
    if (!known.hasScreens)
        return {ConnectionQuality::Good,
                QCoreApplication::translate("connectionState", "N6 connection ok, no screens connected")};
    //: One of the two texts that begin with a comma may follow. A server holds the settings of the system
    if (known.hasSeveralServers)
        return {ConnectionQuality::Warning,
                QCoreApplication::translate("connectionState", "Connection ok") +
                    QCoreApplication::translate("connectionState", ", but multiple servers configured")};
    if (known.hasServer)
        return {ConnectionQuality::Good, QCoreApplication::translate("connectionState", "Connection ok")};
    return {ConnectionQuality::Warning,
            QCoreApplication::translate("connectionState", "Connection ok") +
                QCoreApplication::translate("connectionState", ", but no N6 found")};
}

Verdict verdictOnFirstGeneration()
{
    //: Gen1: the first generation of the instruments, which this program cannot serve
    return {ConnectionQuality::Warning,
            QCoreApplication::translate("connectionState",
                                        "Found Gen1 devices, contact support for suitable software")};
}
