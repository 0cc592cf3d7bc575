// The update page of one display type.
#pragma once

#include <QWidget>

class udpHBClient;

class MonitorUpdate : public QWidget
{
    Q_OBJECT

public:
    /// type is "SCREEN", "SCREEN2" or "EINK"; the client must outlive the page.
    MonitorUpdate(udpHBClient *client, const QString &type, QWidget *parent);
};
