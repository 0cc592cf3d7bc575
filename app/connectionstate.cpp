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
    showIcon();
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
    const bool hasScreens = !client->screens().isEmpty();
    if (!hasScreens && !client->n6Online())
        showStatus(QStringLiteral("error"), tr("Connection problem, check your network settings"));
    else if (!hasScreens)
        showStatus(QStringLiteral("ok"), tr("N6 connection ok, no screens connected"));
    else if (client->multipleServersDetected())
        showStatus(QStringLiteral("warning"), tr("Connection ok") + tr(", but multiple servers configured"));
    else if (!client->serverAddress().isNull())
        showStatus(QStringLiteral("ok"), tr("Connection ok"));
    else
        showStatus(QStringLiteral("warning"), tr("Connection ok") + tr(", but no N6 found"));
}

void connectionState::showIncompatible()
{
    incompatible = true;
    showStatus(QStringLiteral("warning"), tr("Found Gen1 devices, contact support for suitable software"));
}

void connectionState::showStatus(const QString &icon, const QString &text)
{
    // Under many heartbeats the verdict is mostly the one already shown.
    if (shownIcon == icon && statusText->text() == text)
        return;
    shownIcon = icon;
    showIcon();
    statusText->setText(text);
}

void connectionState::showIcon()
{
    statusIcon->setIcon(builtinIcon(shownIcon));
    statusIcon->setAccessibleName(shownIcon == QLatin1String("ok")        ? tr("State: good")
                                  : shownIcon == QLatin1String("warning") ? tr("State: warning")
                                                                          : tr("State: error"));
}
