// Prints the monotonic clock, in nanoseconds, when a window has been painted for the first time, and ends the
// program.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>

class FirstPaint : public QObject
{
public:
    explicit FirstPaint(QWidget *window) : QObject(window) { window->installEventFilter(this); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            // Once the loop is back, the backing store has been flushed to the screen.
            QTimer::singleShot(0, this, [] {
                const auto now = std::chrono::steady_clock::now().time_since_epoch();
                std::printf("%lld\n", static_cast<long long>(std::chrono::nanoseconds(now).count()));
                QCoreApplication::quit();
            });
        }
        return false;
    }
};
