#pragma once

#include <QWidget>

class QPushButton;
class QTabWidget;
class udpHBClient;

/// The tool's one window: the connection strip, the five pages as tabs, and the maker's banner. It owns the
/// heartbeat client that all of them share.
class Mainwindow : public QWidget
{
    Q_OBJECT

public:
    /// Starts looking for the boat at once. Takes its title from the application's name and version.
    explicit Mainwindow(QWidget *parent = nullptr);
    ~Mainwindow() override;

public slots:
    /// Locks all pages for the rest of the run: this tool cannot serve a boat with first-generation devices.
    void disableTabs();
    /// Unlocks the pages of the N6 while it is online; never locks them again.
    void enableTabs();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void addPages();

    udpHBClient *client;
    QTabWidget *tabs;
    QPushButton *logo;
};
