// What a display's row says of it.
#pragma once

#include "discovery/devices.h"

namespace rowtext
{

/// Whether displays of this type report a supply voltage and so have a readout; e-ink displays do not.
bool hasReadout(const ScreenDevice &screen);

/// Supply voltage and ambient light, in two lines.
QString readout(const ScreenDevice &screen);

/// Who the display is and which versions it runs, in two lines.
QString description(const ScreenDevice &screen);

} // namespace rowtext
