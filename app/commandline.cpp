#include "app/commandline.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace
{

constexpr int misuseStatus = 2;

struct CommandLine {
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

// Not kept: its texts are in the language that was loaded when it was made.
class Parser : public QCommandLineParser
{
public:
    Parser()
    {
        // The toolkit's options are words behind one dash.
        setSingleDashWordOptionMode(ParseAsLongOptions);
        addOptions({log, language, help, version});
    }

    const QCommandLineOption log{QStringLiteral("log"),
                                 CommandLine::tr("Write what the tool hears and does to FILE."),
                                 QStringLiteral("FILE")};
    const QCommandLineOption language{
        QStringLiteral("language"),
        CommandLine::tr("Use this language, such as \"de\", instead of the desktop's."),
        QStringLiteral("LANGUAGE")};
    const QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                                  CommandLine::tr("Show these options and exit.")};
    const QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                                     CommandLine::tr("Show the version and exit.")};
};

} // namespace

commandline::Options commandline::parse(const QStringList &arguments)
{
    Parser parser;
    Options options;
    if (!parser.parse(arguments))
        options.error = parser.errorText();
    else if (!parser.positionalArguments().isEmpty())
        options.error =
            CommandLine::tr("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst());
    if (parser.isSet(parser.log))
        options.logFile = parser.value(parser.log);
    options.language = parser.value(parser.language);
    options.wantsHelp = parser.isSet(parser.help);
    options.wantsVersion = parser.isSet(parser.version);
    return options;
}

QStringList commandline::asciiArguments(int count, const char *const *values)
{
    QStringList arguments;
    // Through no codec: the locale's is chosen by the application object.
    for (int i = 0; i < count; ++i)
        arguments += QString::fromLatin1(values[i]);
    return arguments;
}

void commandline::answer(const Options &options)
{
    if (options.wantsVersion && !options.wantsHelp)
        Parser().showVersion();
    Parser().showHelp();
}

void commandline::refuse(const QString &reason)
{
    Parser parser;
    // Part of the help, since where there is no standard error the toolkit shows the help in a box.
    parser.setApplicationDescription(reason);
    parser.showHelp(misuseStatus);
}
