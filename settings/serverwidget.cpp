#include "settings/serverwidget.h"

ServerWidget::ServerWidget(QWidget *parent, udpHBClient *client) : QWidget(parent)
{
    Q_UNUSED(client)
}
