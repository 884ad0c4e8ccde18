#include "QUICore.h"

#include "ContextModel.h"

#include <QApplication>
#include <QMessageBox>
#include <QThread>
#include <mutex>

namespace {
std::mutex g_boxMutex;
QList<MessageBoxRecord> g_boxes;
bool g_interactive = false;
} // namespace

QUICore::QUICore()
    : m_contextModel(new ContextModel)
{
}

QUICore *QUICore::QUICoreInstance()
{
    static QUICore core;
    return &core;
}

void QUICore::ShowMessageBoxError(const QString &text, int type)
{
    bool interactive;
    {
        std::lock_guard<std::mutex> lock(g_boxMutex);
        g_boxes.append({text, type});
        interactive = g_interactive;
    }
    // A real box only where widgets can be shown, and only from the GUI thread.
    if (interactive && qobject_cast<QApplication *>(QCoreApplication::instance())
        && QThread::currentThread() == QCoreApplication::instance()->thread()) {
        QMessageBox::critical(nullptr, QStringLiteral("Lumora"), text);
    }
}

void QUICore::setInteractive(bool interactive)
{
    std::lock_guard<std::mutex> lock(g_boxMutex);
    g_interactive = interactive;
}

QList<MessageBoxRecord> QUICore::shownMessageBoxes()
{
    std::lock_guard<std::mutex> lock(g_boxMutex);
    return g_boxes;
}

void QUICore::clearShownMessageBoxes()
{
    std::lock_guard<std::mutex> lock(g_boxMutex);
    g_boxes.clear();
}
