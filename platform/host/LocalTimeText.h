#pragma once
// Local-time text for time stamps written from any thread.

#include <QByteArray>
#include <QtGlobal>

// "yyyy-MM-dd hh:mm:ss" of the given second since the epoch, in local time.
// Qt's date formatting is not used here: it goes through the system locale,
// whose first use in a process is not thread safe in Qt 5.15 (concurrent first
// callers can get an empty text), and stamps are made on gateway threads.
QByteArray localSecondText(qint64 secondsSinceEpoch);
