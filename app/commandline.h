// What the user said in the command line, beside the toolkit's own options.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace commandline
{

struct Options {
    std::optional<QString> logFile;
    QString language; ///< such as "de"; empty for the desktop's
    bool wantsHelp = false;
    bool wantsVersion = false;
    QString error; ///< what is wrong with the arguments, for the user; empty for nothing
};

/// Reads the arguments, of which the first is the program's name.
Options parse(const QStringList &arguments);

/// The arguments of main, of which only ASCII is kept: what they ask for can be told before there is an
/// application object, but no name of a file.
QStringList asciiArguments(int count, const char *const *values);

/// Answers what was asked for, the help or the version, and ends the program. Needs an application object,
/// but no display.
[[noreturn]] void answer(const Options &options);

/// Tells the user the reason and the options, and ends the program with status 2.
[[noreturn]] void refuse(const QString &reason);

} // namespace commandline
