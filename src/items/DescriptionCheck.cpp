#include "DescriptionCheck.h"

#include "CommLog.h"
#include "ErrorCodeText.h"

#include <QFile>
#include <tinyxml2.h>

bool DescriptionCheck::readable(const QString &modulesDir, const QString &relativePath, Problem *problem)
{
    const QString path = modulesDir + relativePath;
    tinyxml2::XMLDocument doc;
    const tinyxml2::XMLError err = doc.LoadFile(QFile::encodeName(path).constData());
    if (err == tinyxml2::XML_SUCCESS && doc.RootElement())
        return true;
    if (problem) {
        problem->file = path;
        problem->shownName = relativePath;
        const bool unopened = err == tinyxml2::XML_ERROR_FILE_NOT_FOUND
            || err == tinyxml2::XML_ERROR_FILE_COULD_NOT_BE_OPENED || err == tinyxml2::XML_ERROR_FILE_READ_ERROR;
        problem->line = unopened ? 0 : qMax(1, doc.ErrorLineNum());
        problem->reason = err == tinyxml2::XML_SUCCESS ? QStringLiteral("no root element")
                                                       : QString::fromUtf8(tinyxml2::XMLDocument::ErrorIDToName(err));
    }
    return false;
}

QString DescriptionCheck::message(const Problem &problem)
{
    if (problem.line == 0)
        return lumoraTr(QStringLiteral("Lang_DescriptionMissing")).arg(problem.shownName);
    return lumoraTr(QStringLiteral("Lang_DescriptionUnreadable")).arg(problem.shownName).arg(problem.line).arg(problem.reason);
}

QString DescriptionCheck::typeDescriptionPath(const QString &deviceType)
{
    return deviceType + QLatin1Char('/') + deviceType + QStringLiteral("AlgorithmTab.xml");
}

void DescriptionCheck::run(const QString &modulesDir, const QString &listFile, const QStringList &types)
{
    m_messages.clear();
    m_unreadableTypes.clear();
    Problem problem;
    if (!readable(modulesDir, listFile, &problem))
        note(problem);
    for (const QString &type : types) {
        if (readable(modulesDir, typeDescriptionPath(type), &problem))
            continue;
        m_unreadableTypes.append(type);
        note(problem);
    }
}

void DescriptionCheck::note(const Problem &problem)
{
    COMM_LOG(CommLogInfo, "device description %s cannot be read, line %d: %s", problem.file.toUtf8().constData(),
             problem.line, problem.reason.toUtf8().constData());
    m_messages.append(message(problem));
}
