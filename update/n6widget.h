// The page of the N6 instrument: who it is, its port modes, its web interface and its own update.
#pragma once

#include <QWidget>

class udpHBClient;

class N6Widget : public QWidget
{
    Q_OBJECT

public:
    /// The client must outlive the page.
    N6Widget(QWidget *parent, udpHBClient *client);
};
