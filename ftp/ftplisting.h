// Reading of directory listings: one line in, an entry or nothing out.
#pragma once

#include "ftp/qurlinfo.h"

#include <optional>

namespace ftplisting
{

/// The entry that a line in Unix or DOS format describes, line end or not; nothing for any other line and for
/// one of more than 1024 characters. Dates without a year are taken as the last such date up to a day after
/// now.
std::optional<QUrlInfo> parseLine(const QString &line, const QDateTime &now = QDateTime::currentDateTime());

} // namespace ftplisting
