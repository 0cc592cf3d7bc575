// The program's own pictures, compiled into it.
#pragma once

#include <QIcon>

/// The picture ":/icons/<name>": "ok", "warning", "error" or "logo".
QIcon builtinIcon(const QString &name);

/// The application's own icon, for title bars and task switchers.
QIcon applicationIcon();
