// What the connection strip says of what the heartbeat client knows: values in, a verdict out.
#pragma once

#include <QString>

enum class ConnectionQuality { Good, Warning, Error };

/// What the client knows, as far as the strip is concerned.
struct Reachable {
    bool hasScreens = false;
    bool isN6Online = false;
    bool hasServer = false;
    bool hasSeveralServers = false;
};

struct Verdict {
    ConnectionQuality quality;
    QString text; ///< translated, for the user
};

/// Once displays are there, the N6's own state no longer counts: what matters is whether anything holds the
/// settings.
Verdict verdictOn(const Reachable &known);

/// The verdict on a boat with first-generation devices, whatever else is there.
Verdict verdictOnFirstGeneration();
