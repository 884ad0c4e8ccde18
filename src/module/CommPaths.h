#pragma once

#include <QString>

namespace CommPaths {
// Directory of the module descriptions, with a trailing slash:
// "/opt/lumora/lmModuleProxy/modules/", or $LM_MODULES_DIR when set.
QString modulesDir();
} // namespace CommPaths
