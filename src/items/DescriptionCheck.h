#pragma once
// Checks that the device descriptions the page is built from can be read:
// the device type list "DeviceItemInfo.xml" and each type's tab description.
// The readers themselves only say "failed"; this check finds the file and the
// line, so that the operator can be told which file to mend, and the types
// whose description cannot be read are no longer offered for creation.

#include <QString>
#include <QStringList>

class DescriptionCheck
{
public:
    struct Problem {
        QString file;   // full path
        QString shownName; // the path below the modules directory, for messages
        int line = 0;   // 0: the file is missing or cannot be opened
        QString reason; // the XML reader's own text
    };

    // True when the file below the modules directory is well-formed XML with
    // a root element; otherwise fills problem (when given).
    static bool readable(const QString &modulesDir, const QString &relativePath, Problem *problem = nullptr);
    // The translated message naming the file and the line.
    static QString message(const Problem &problem);
    // The tab description of one device type, below the modules directory.
    static QString typeDescriptionPath(const QString &deviceType);

    // Checks the list file and the description of every type; each problem is
    // logged once and kept as a translated message.
    void run(const QString &modulesDir, const QString &listFile, const QStringList &types);
    QStringList messages() const { return m_messages; }
    QStringList unreadableTypes() const { return m_unreadableTypes; }

private:
    void note(const Problem &problem);

    QStringList m_messages;
    QStringList m_unreadableTypes;
};
