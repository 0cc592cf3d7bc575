// The update page of one display type: lists its displays, one row each, and uploads one package to all
// ticked ones at once. The main window owns one page for each type.
#pragma once

#include <QHostAddress>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QWidget>

class MonitorUpdateWidget;
class QFileDialog;
class QLabel;
class QPushButton;
class QVBoxLayout;
class udpHBClient;
struct ScreenDevice;

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
    /// Makes the rows those of the client's list: each looks as if built anew, but the user's choice and the
    /// keyboard's focus stay with their display.
    void newMonitors();
    /// Lets the user choose a package. Nothing while a choice or an update is under way.
    void startClicked();
    /// Checks the chosen file and starts.
    void fileSelected();
    /// A row began an upload.
    void updateStarted();
    /// A row ended or aborted its upload; the last one frees the list again.
    void updateComplete();

private:
    enum class State {
        Idle,     ///< the rows follow the client's list
        Choosing, ///< the file dialog is open: what the user does not see must not get the file
        Updating, ///< uploads run, or have been started with no row ticked
    };

    void buildWidgets();
    void enter(State next);
    void followList();
    void followType(const ScreenDevice &screen);
    void endChoice();
    MonitorUpdateWidget *rowAt(int place) const;
    bool isCurrent(const MonitorUpdateWidget *row, const ScreenDevice &screen) const;
    QHostAddress focusedDisplay() const;
    MonitorUpdateWidget *addRow(const ScreenDevice &screen);
    void removeRow(int place);

    udpHBClient *client;
    const QString deviceType;
    QLabel *heading;
    QPushButton *startButton;
    QPushButton *abortButton;
    QVBoxLayout *rows = nullptr;
    QPointer<QFileDialog> fileDialog;
    QSet<QHostAddress> shown; // the displays that have a row
    State state = State::Idle;
    int runningUpdates = 0;
    /// The displays in the client's list that the user does not want updated.
    QSet<QHostAddress> refused;
};
