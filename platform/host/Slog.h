#pragma once
// Host logging. Slog_LogPrint formats a printf-style record, writes it with a
// time stamp to the host's log file and, at or above the configured level, to
// stderr. Tests capture the formatted records through HostLog.

#include <QList>
#include <QString>

extern "C" void Slog_LogPrint(const char *tag, int level, const char *format, ...)
    __attribute__((format(printf, 3, 4)));

struct LogRecord {
    QString tag;
    int level = 0;
    QString message; // the formatted text, without time stamp
};

class HostLog
{
public:
    // Where records go; an empty path writes no file.
    static void setLogFile(const QString &path);
    static QString logFile();
    // Records of this level and above are echoed to stderr (default 5: none).
    static void setStderrLevel(int level);

    // Capture for tests: while enabled every record is also kept in memory.
    static void setCaptureEnabled(bool enabled);
    static QList<LogRecord> captured();
    static QStringList capturedMessages(); // messages only, in order
    static void clearCaptured();
};
