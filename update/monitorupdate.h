// The update page of one display type: lists its displays, one row each, and uploads one package to all
// ticked ones at once. The main window owns one page for each type.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

class MonitorUpdateWidget;
class QFileDialog;
class QLabel;
class QPushButton;
class QVBoxLayout;
class udpHBClient;

class MonitorUpdate : public QWidget
{
    Q_OBJECT

public:
    /// type is "SCREEN", "SCREEN2" or "EINK"; the client must outlive the page.
    MonitorUpdate(udpHBClient *sharedClient, QString type, QWidget *parent);

signals:
    /// Starts the upload of this file in every row.
    void updateMon(const QString &filename);
    /// Aborts the upload in every row.
    void abortMon();

public slots:
    /// Builds the rows anew from the client's list.
    void newMonitors();
    void startClicked();
    /// Checks the chosen file and starts.
    void fileSelected();
    /// A row began an upload.
    void updateStarted();
    /// A row ended or aborted its upload; the last one frees the list again.
    void updateComplete();

private:
    void buildWidgets();
    void addRow(MonitorUpdateWidget *row);

    udpHBClient *client;
    const QString deviceType;
    QLabel *heading;
    QPushButton *startButton;
    QPushButton *abortButton;
    QVBoxLayout *rows = nullptr;
    QPointer<QFileDialog> fileDialog;
    int runningUpdates = 0;
};
