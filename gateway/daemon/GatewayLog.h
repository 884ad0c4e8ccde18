#pragma once

#include <QFile>
#include <QMutex>
#include <QString>

// The gateway's log: every Qt message of the process, to a file that is
// rotated by size (the file and kKeptFiles older ones, "<file>.1" the
// newest of those) or, without a file, to standard error. A line equal to
// the one before it is not written again; the next different line (or the
// end of the log) is preceded by "last message repeated N times".
class GatewayLog
{
public:
    static constexpr qint64 kDefaultMaxBytes = 1024 * 1024;
    static constexpr int kKeptFiles = 3;

    // Empty `path`: standard error. False when the file cannot be opened.
    bool open(const QString &path, qint64 maxBytes = kDefaultMaxBytes);
    // Routes the process's Qt messages here until uninstall().
    void install();
    void uninstall();
    // Writes one message (the text without its time stamp and type, which
    // the message pattern adds, decides whether it repeats).
    void write(QtMsgType type, const QMessageLogContext &context, const QString &message);
    // Writes a pending repeat count.
    void flush();
    ~GatewayLog();

private:
    void writeLine(const QByteArray &line);
    void rotate();

    QMutex m_mutex;
    QFile m_file;
    QString m_path;
    qint64 m_maxBytes = kDefaultMaxBytes;
    QString m_last;
    int m_repeats = 0;
};
