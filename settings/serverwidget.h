// The settings page: back up, restore and reset the settings that the N6 holds for the whole system.
#pragma once

#include <QWidget>

class udpHBClient;

class ServerWidget : public QWidget
{
    Q_OBJECT

public:
    /// The client must outlive the page.
    ServerWidget(QWidget *parent, udpHBClient *client);
};
