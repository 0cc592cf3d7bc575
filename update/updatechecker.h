// Where update packages lie on this computer.
#pragma once

#include <QDir>

namespace UpdateChecker
{

/// The folder in which a file dialog starts to look for update packages, computed anew and created where that
/// is possible. Where nothing can be created the result may not exist; file dialogs cope with that by
/// themselves.
QDir updateDirectory();

} // namespace UpdateChecker
