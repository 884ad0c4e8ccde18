#include "Slog.h"
#include "LocalTimeText.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {
constexpr int kMaxRecord = 8192; // longer records are cut

struct LogState {
    std::mutex mutex;
    QString path;
    FILE *file = nullptr;
    bool openFailed = false; // until the path changes: no retry per record
    int stderrLevel = 5;
    bool capture = false;
    QList<LogRecord> captured;
    qint64 cachedSecond = -1;
    QByteArray cachedSecondText;
};

LogState &state()
{
    static LogState s;
    return s;
}

// "yyyy-MM-dd hh:mm:ss.zzz"; the text of the current second is cached because
// every local-time conversion re-reads the time zone when TZ is unset.
QByteArray timeStamp(LogState &s)
{
    const qint64 ms = QDateTime::currentMSecsSinceEpoch();
    const qint64 second = ms / 1000;
    if (second != s.cachedSecond) {
        s.cachedSecond = second;
        s.cachedSecondText = localSecondText(second);
    }
    char millis[8];
    std::snprintf(millis, sizeof(millis), ".%03d", int(ms % 1000));
    return s.cachedSecondText + QByteArray(millis);
}

void openFile(LogState &s)
{
    if (s.file || s.openFailed || s.path.isEmpty())
        return;
    QDir().mkpath(QFileInfo(s.path).absolutePath());
    s.file = std::fopen(QFile::encodeName(s.path).constData(), "a");
    if (!s.file) {
        s.openFailed = true;
        std::fprintf(stderr, "cannot open log file %s\n", QFile::encodeName(s.path).constData());
    }
}

// Length of text once a multi-byte UTF-8 sequence cut by the buffer end is
// dropped, so that a long record never ends in half a character.
size_t utf8CutLength(const char *text, size_t length)
{
    size_t lead = length;
    while (lead > 0 && (static_cast<unsigned char>(text[lead - 1]) & 0xC0) == 0x80)
        --lead;
    if (lead == 0)
        return length;
    const auto first = static_cast<unsigned char>(text[lead - 1]);
    if (first < 0xC0)
        return length; // the last byte is ASCII or a stray continuation
    const size_t needed = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    return length - (lead - 1) >= needed ? length : lead - 1;
}
} // namespace

extern "C" void Slog_LogPrint(const char *tag, int level, const char *format, ...)
{
    if (!format)
        return;
    char buffer[kMaxRecord];
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(buffer, sizeof(buffer), format, args);
    va_end(args);
    if (n < 0)
        return;
    if (n >= kMaxRecord)
        buffer[utf8CutLength(buffer, kMaxRecord - 1)] = '\0';
    const char *safeTag = tag ? tag : "";

    LogState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    const QByteArray stamp = timeStamp(s);
    openFile(s);
    if (s.file) {
        std::fprintf(s.file, "%s %d %s %s\n", stamp.constData(), level, safeTag, buffer);
        std::fflush(s.file);
    }
    if (level >= s.stderrLevel)
        std::fprintf(stderr, "%s %d %s %s\n", stamp.constData(), level, safeTag, buffer);
    if (s.capture)
        s.captured.append({QString::fromUtf8(safeTag), level, QString::fromUtf8(buffer)});
}

void HostLog::setLogFile(const QString &path)
{
    LogState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    if (s.file) {
        std::fclose(s.file);
        s.file = nullptr;
    }
    s.openFailed = false;
    s.path = path;
}

QString HostLog::logFile()
{
    LogState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    return s.path;
}

void HostLog::setStderrLevel(int level)
{
    LogState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    s.stderrLevel = level;
}

void HostLog::setCaptureEnabled(bool enabled)
{
    LogState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    s.capture = enabled;
}

QList<LogRecord> HostLog::captured()
{
    LogState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    return s.captured;
}

QStringList HostLog::capturedMessages()
{
    QStringList out;
    for (const LogRecord &r : captured())
        out.append(r.message);
    return out;
}

void HostLog::clearCaptured()
{
    LogState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    s.captured.clear();
}
