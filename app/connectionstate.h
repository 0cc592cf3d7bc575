#pragma once

#include "app/verdict.h"

#include <QWidget>

class QLabel;
class QPushButton;
class udpHBClient;

/// The strip on top of the window that says in one line whether the boat's instruments are reachable. It only
/// reads the heartbeat client, which the window owns.
class connectionState : public QWidget
{
    Q_OBJECT

public:
    /// The client must outlive the strip.
    connectionState(QWidget *parent, udpHBClient *sharedClient);

public slots:
    /// Shows what the client knows now.
    void changeConStat();
    /// Warns of first-generation devices; the warning stays for the rest of the run.
    void showIncompatible();

private:
    void showVerdict(const Verdict &verdict);
    void showQuality(ConnectionQuality quality);

    udpHBClient *client;
    bool incompatible = false;
    QPushButton *statusIcon;
    QLabel *statusText;
    QLabel *extraText;
};
