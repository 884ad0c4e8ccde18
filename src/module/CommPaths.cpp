#include "CommPaths.h"

#include <QByteArray>

namespace {
constexpr char kDefaultModulesDir[] = "/opt/lumora/lmModuleProxy/modules/";
}

QString CommPaths::modulesDir()
{
    QString dir = QString::fromLocal8Bit(qgetenv("LM_MODULES_DIR"));
    if (dir.isEmpty())
        return QString::fromLatin1(kDefaultModulesDir);
    if (!dir.endsWith(QLatin1Char('/')))
        dir += QLatin1Char('/');
    return dir;
}
