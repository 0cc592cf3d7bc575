// Texts of tests in few words.
#pragma once

#include <QString>

inline QString operator""_s(const char *text, std::size_t length)
{
    return QString::fromUtf8(text, static_cast<int>(length));
}
