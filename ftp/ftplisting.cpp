#include "ftp/ftplisting.h"

#include <QLocale>
#include <QRegularExpression>

#include <array>

namespace
{

// Longer than any path; the dates of such a line take long to reject.
constexpr int longestLine = 1024;
constexpr qint64 clockToleranceSeconds = 86400;
constexpr int lastYearOfOldCentury = 1970;

struct DateFormat {
    QLatin1String format;
    bool hasYear;
};

// Servers write English months whatever the user's locale.
QDateTime readDate(const QString &text, QLatin1String format)
{
    return QLocale::c().toDateTime(text, format);
}

// The year goes into the text, for 29 February can be read only with a year that has one.
QDateTime readDateWithoutYear(const QString &text, QLatin1String format, const QDateTime &now)
{
    const auto inYear = [&](int year) {
        return QLocale::c().toDateTime(text + QLatin1Char(' ') + QString::number(year),
                                       format + QLatin1String(" yyyy"));
    };
    const QDateTime thisYear = inYear(now.date().year());
    if (!thisYear.isValid())
        return inYear(now.date().year() - 1);
    return now.secsTo(thisYear) > clockToleranceSeconds ? thisYear.addYears(-1) : thisYear;
}

QDateTime readUnixDate(QString text, const QDateTime &now)
{
    static const std::array<DateFormat, 6> formats{{{QLatin1String("MMM dd  yyyy"), true},
                                                    {QLatin1String("MMM dd hh:mm"), false},
                                                    {QLatin1String("MMM  d  yyyy"), true},
                                                    {QLatin1String("MMM  d hh:mm"), false},
                                                    {QLatin1String("MMM  d yyyy"), true},
                                                    {QLatin1String("MMM dd yyyy"), true}}};
    text.replace(0, 1, text.at(0).toUpper());
    for (const DateFormat &candidate : formats) {
        QDateTime date = candidate.hasYear ? readDate(text, candidate.format)
                                           : readDateWithoutYear(text, candidate.format, now);
        if (date.isValid())
            return date;
    }
    return {};
}

int readPermissions(const QString &letters)
{
    const QLatin1String expected("rwxrwxrwx");
    int permissions = 0;
    for (int i = 0, bit = QUrlInfo::ReadOwner; i < expected.size(); ++i, bit >>= 1) {
        if (letters.at(i) == expected.at(i))
            permissions |= bit;
    }
    return permissions;
}

std::optional<QUrlInfo> parseUnixLine(const QString &line, const QDateTime &now)
{
    // Nothing that was matched is given back (the doubled plus signs), or a long row of blanks would be
    // shared out among the columns in every way. Owner and group may be missing where there are blanks
    // enough.
    static const QRegularExpression pattern(
        QStringLiteral("^([\\-dl])([a-zA-Z\\-]{9,9})\\s++\\d++"
                       "(?|\\s++(\\S++)\\s++(\\S++)|\\s++(\\S++)\\s()|\\s()\\s++(\\S++)|\\s()\\s())"
                       "\\s++(\\d++)\\s++(\\S++\\s++\\S++\\s++\\S++)\\s++(\\S.*)"));
    const QRegularExpressionMatch match = pattern.match(line);
    if (!match.hasMatch())
        return std::nullopt;
    const QChar type = match.capturedRef(1).at(0);
    const bool isLink = type == QLatin1Char('l');
    QString name = match.captured(7);
    const int arrow = name.indexOf(QLatin1String(" ->"));
    if (isLink && arrow >= 0)
        name.truncate(arrow);

    QUrlInfo info;
    info.setName(name);
    info.setDir(isLink || type == QLatin1Char('d'));
    info.setFile(type == QLatin1Char('-'));
    info.setSymLink(isLink);
    info.setPermissions(readPermissions(match.captured(2)));
    info.setOwner(match.captured(3));
    info.setGroup(match.captured(4));
    info.setSize(match.capturedRef(5).toLongLong());
    info.setLastModified(readUnixDate(match.captured(6), now));
    return info;
}

QDateTime readDosDate(const QString &text)
{
    const QDateTime date = readDate(text, QLatin1String("MM-dd-yy  hh:mmAP"));
    return date.date().year() <= lastYearOfOldCentury ? date.addYears(100) : date;
}

std::optional<QUrlInfo> parseDosLine(const QString &line)
{
    static const QRegularExpression pattern(QStringLiteral(
        "^(\\d\\d-\\d\\d-\\d\\d\\d?\\d?\\ \\ \\d\\d:\\d\\d[AP]M)\\s++(<DIR>|\\d++)\\s++(\\S.*)$"));
    const QRegularExpressionMatch match = pattern.match(line);
    if (!match.hasMatch())
        return std::nullopt;
    const bool isDir = match.capturedRef(2) == QLatin1String("<DIR>");

    QUrlInfo info;
    info.setName(match.captured(3));
    info.setDir(isDir);
    info.setFile(!isDir);
    info.setSymLink(info.name().endsWith(QLatin1String(".lnk"), Qt::CaseInsensitive));
    if (!isDir)
        info.setSize(match.capturedRef(2).toLongLong());
    info.setLastModified(readDosDate(match.captured(1)));
    return info;
}

} // namespace

std::optional<QUrlInfo> ftplisting::parseLine(const QString &line, const QDateTime &now)
{
    const int length = line.endsWith(QLatin1String("\r\n"))
                           ? line.size() - 2
                           : line.size() - int(line.endsWith(QLatin1Char('\n')));
    if (length > longestLine)
        return std::nullopt;
    // Blanks at its end belong to the name, and a line that begins with one is no entry.
    const QString text = line.left(length);
    const std::optional<QUrlInfo> info = parseUnixLine(text, now);
    return info ? info : parseDosLine(text);
}
