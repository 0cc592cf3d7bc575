// The language of the program's texts.
#pragma once

#include <QString>

namespace language
{

/// Has the application speak this language, such as "de" or "de_CH"; when empty, the first of the user's own
/// that there is a translation for. Without any the texts stay as they are in the sources, in English. Called
/// before any text is made.
void load(const QString &name);

} // namespace language
