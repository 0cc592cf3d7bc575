#include "app/connectionstate.h"

#include "app/icons.h"
#include "discovery/udphbclient.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace
{

constexpr int firstVerdictMs = 6000;
constexpr int heightPx = 50;
constexpr int gapPx = 40;
constexpr int fontPx = 16;
constexpr QSize iconSizePx(26, 26);

QLabel *newLabel(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setPixelSize(fontPx);
    label->setFont(font);
    label->setAlignment(Qt::AlignLeft | Qt::AlignHCenter | Qt::AlignVCenter);
    return label;
}

} // namespace

connectionState::connectionState(QWidget *parent, udpHBClient *sharedClient)
    : QWidget(parent), client(sharedClient), statusIcon(new QPushButton(this)),
      statusText(newLabel(tr("Not connected"), this)), extraText(newLabel(QString(), this))
{
    setFixedHeight(heightPx);
    statusIcon->setStyleSheet(QStringLiteral("QPushButton{border:none}"));
    statusIcon->setIconSize(iconSizePx);
    showQuality(ConnectionQuality::Error);
    // It only shows a picture of what the text says: nothing to press or to stop at.
    statusIcon->setFocusPolicy(Qt::NoFocus);

    auto *layout = new QHBoxLayout(this);
    layout->addWidget(statusIcon);
    layout->addWidget(statusText);
    layout->addSpacing(gapPx);
    layout->addWidget(extraText);
    layout->addStretch();

    connect(client, &udpHBClient::n6BeaconReceived, this, &connectionState::changeConStat);
    connect(client, &udpHBClient::listUpdated, this, &connectionState::changeConStat);
    connect(client, &udpHBClient::incompatibleDevice, this, &connectionState::showIncompatible);
    // A verdict even when nothing is heard.
    QTimer::singleShot(firstVerdictMs, Qt::CoarseTimer, this, &connectionState::changeConStat);
}

void connectionState::changeConStat()
{
    if (incompatible)
        return;
    Reachable known;
    known.hasScreens = !client->screens().isEmpty();
    known.isN6Online = client->n6Online();
    known.hasServer = !client->serverAddress().isNull();
    known.hasSeveralServers = client->multipleServersDetected();
    showVerdict(verdictOn(known));
}

void connectionState::showIncompatible()
{
    incompatible = true;
    showVerdict(verdictOnFirstGeneration());
}

void connectionState::showVerdict(const Verdict &verdict)
{
    // Under many heartbeats the verdict is mostly the one already shown.
    if (statusText->text() == verdict.text)
        return;
    statusText->setText(verdict.text);
    showQuality(verdict.quality);
}

void connectionState::showQuality(ConnectionQuality quality)
{
    switch (quality) {
    case ConnectionQuality::Good:
        statusIcon->setIcon(builtinIcon(QStringLiteral("ok")));
        //: Only read aloud, like the next two: what the icon of the connection shows
        statusIcon->setAccessibleName(tr("State: good"));
        break;
    case ConnectionQuality::Warning:
        statusIcon->setIcon(builtinIcon(QStringLiteral("warning")));
        statusIcon->setAccessibleName(tr("State: warning"));
        break;
    case ConnectionQuality::Error:
        statusIcon->setIcon(builtinIcon(QStringLiteral("error")));
        statusIcon->setAccessibleName(tr("State: error"));
        break;
    }
}
