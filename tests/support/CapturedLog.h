#pragma once
// The captured host log as tests compare it: each record with its source line
// left out, "[CommManager] [Init] GW_PF_Init succ", so that a record is matched
// exactly by its tag, the function it names and its text.

#include "Slog.h"

#include <QRegularExpression>
#include <QStringList>

inline QStringList capturedLogLines()
{
    static const QRegularExpression lineNumber(QStringLiteral("^(\\[[^\\]]*\\] \\[[^\\]@]*)@\\d+\\]"));
    QStringList lines;
    for (const QString &message : HostLog::capturedMessages())
        lines.append(QString(message).replace(lineNumber, QStringLiteral("\\1]")));
    return lines;
}
