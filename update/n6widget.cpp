#include "update/n6widget.h"

N6Widget::N6Widget(QWidget *parent, udpHBClient *client) : QWidget(parent)
{
    Q_UNUSED(client)
}
