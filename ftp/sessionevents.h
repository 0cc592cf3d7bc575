// What a slot may do while one of the client's signals calls it: run an event loop, abort, or delete the
// client. The layers of the client stay right by two rules.
//
// What a socket, a timer or a device of the caller tells is never connected directly. It is connected and
// posted through the SessionEvents of the session, and so is the start of a command. So no socket has one of
// its signals on the stack when a slot of the caller runs, and may be deleted at once. And while such a slot
// runs an event loop, what arrives waits until it has returned: one event after the other, in the order in
// which they came.
//
// After a signal that may reach the caller, only a QPointer taken before it tells whether the emitter is
// still there. As the events wait, nothing else can have changed but by an abort.
//
// What must outlive the client for a moment, the sockets of an abandoned upload, is owned by a Farewell.
#pragma once

#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <utility>

class SessionEvents : public QObject
{
public:
    using QObject::QObject;

    /// Has the handler called, as an event of this session, after each such signal; no more when the source
    /// or the context is gone.
    template <typename Source, typename Signal, typename Handler>
    void connectQueued(const Source *source, Signal signal, const QObject *context, Handler handler)
    {
        const QPointer<const QObject> origin = source;
        QObject::connect(
            source, signal, context,
            [this, origin, guard = QPointer<const QObject>(context), handler](auto... arguments) {
                deliver([=] {
                    if (origin && guard)
                        handler(arguments...);
                });
            },
            Qt::QueuedConnection);
    }

    /// Has the handler called, as an event of this session, when the event loop runs next; not when the
    /// context is gone by then.
    template <typename Handler>
    void post(QObject *context, Handler handler)
    {
        QMetaObject::invokeMethod(
            context,
            [this, guard = QPointer<QObject>(context), handler] {
                deliver([=] {
                    if (guard)
                        handler();
                });
            },
            Qt::QueuedConnection);
    }

private:
    void deliver(std::function<void()> event)
    {
        waiting.push_back(std::move(event));
        if (isDelivering)
            return;
        isDelivering = true;
        const QPointer<SessionEvents> self = this;
        while (self && !waiting.empty()) {
            const std::function<void()> next = std::move(waiting.front());
            waiting.pop_front();
            next();
        }
        if (self)
            isDelivering = false;
    }

    std::deque<std::function<void()>> waiting;
    bool isDelivering = false;
};
