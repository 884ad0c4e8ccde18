#pragma once
// What the module's lists shared with gateway threads are guarded and copied
// with. Each source that includes this gets its own copy (internal linkage):
// the ThreadSanitizer control build of a thread test compiles one source with
// COMM_TSAN_CONTROL, which turns its guard into one that locks nothing, to
// prove that the test reports an access without the lock.

#include <QString>
#include <QStringList>
#include <mutex>

namespace {
#ifdef COMM_TSAN_CONTROL
struct CheckedLockGuard {
    explicit CheckedLockGuard(std::mutex &) {}
};
#else
using CheckedLockGuard = std::lock_guard<std::mutex>;
#endif

// A copy that shares no list storage with the original, so that a change
// under the lock never detaches a buffer that a reader on another thread
// holds (inside Qt, where ThreadSanitizer cannot see the reference count).
inline QStringList detachedCopy(const QStringList &list)
{
    QStringList copy;
    copy.reserve(list.size());
    for (const QString &entry : list)
        copy.append(entry);
    return copy;
}

// A text that shares no buffer with the original, for the same reason.
inline QString deepCopy(const QString &text)
{
    return QString(text.constData(), text.size());
}
} // namespace
