#pragma once
// Host UI core: the context model, and error boxes.

#include <QList>
#include <QString>

class ContextModel;

struct MessageBoxRecord {
    QString text;
    int type = 0;
};

class QUICore
{
public:
    static QUICore *QUICoreInstance();
    ContextModel *contextModel() const { return m_contextModel; }

    // Shows a modal error box (interactive mode) or records it (tests).
    static void ShowMessageBoxError(const QString &text, int type);

    static void setInteractive(bool interactive); // default false: record only
    static QList<MessageBoxRecord> shownMessageBoxes();
    static void clearShownMessageBoxes();

private:
    QUICore();
    ContextModel *m_contextModel;
};
