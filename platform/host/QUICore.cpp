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

void showCritical(const QString &text)
{
    QMessageBox::critical(nullptr, QStringLiteral("Lumora"), text);
}
} // namespace

// The context model lives as long as the process; its signals are delivered on
// the GUI thread, whichever thread asked for the core first.
QUICore::QUICore()
    : m_contextModel(new ContextModel)
{
    if (QCoreApplication *app = QCoreApplication::instance())
        m_contextModel->moveToThread(app->thread());
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
    // A real box only where widgets can be shown; widgets live on the GUI
    // thread, so a call from any other thread is queued there.
    QCoreApplication *app = qobject_cast<QApplication *>(QCoreApplication::instance());
    if (!interactive || !app)
        return;
    if (QThread::currentThread() == app->thread())
        showCritical(text);
    else
        QMetaObject::invokeMethod(app, [text] { showCritical(text); }, Qt::QueuedConnection);
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
