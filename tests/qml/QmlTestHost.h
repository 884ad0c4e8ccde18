#pragma once
// What the page's host gives it, as the QML tests see it (singleton "TestHost"
// of "test.host" 1.0): the developer switch LmDevPages in the root context,
// and the warnings logged while a test ran (QML binding and type errors among
// them), so that a test can fail on any.

#include "HostConfig.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <mutex>

class QmlTestHost : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    // Publishes the switch, off.
    void attach(QQmlEngine *engine)
    {
        m_context = engine->rootContext();
        setDevPages(QString());
    }

    Q_INVOKABLE void setDevPages(const QString &value)
    {
        if (m_context)
            m_context->setContextProperty(QStringLiteral("LmDevPages"), value);
    }
    // The page's language for views made afterwards ("en", "zh_CN").
    Q_INVOKABLE void setLanguage(const QString &language) { HostConfig::setLanguage(language); }
    // The warnings since the last call. The first call of each test case
    // puts the recorder in front of the test log's handler, which the test
    // log installs when a test case starts and removes when it ends; the
    // recorder hands every message on, so ignoreWarning keeps working.
    Q_INVOKABLE QStringList takeWarnings()
    {
        std::lock_guard<std::mutex> lock(mutex());
        const QtMessageHandler current = qInstallMessageHandler(record);
        if (current != record)
            previousHandler() = current;
        QStringList taken;
        taken.swap(warnings());
        return taken;
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        QtMessageHandler next = nullptr;
        {
            std::lock_guard<std::mutex> lock(mutex());
            if (type != QtDebugMsg && type != QtInfoMsg)
                warnings().append(message);
            next = previousHandler();
        }
        if (next)
            next(type, context, message);
    }
    static QtMessageHandler &previousHandler()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
    static std::mutex &mutex()
    {
        static std::mutex m;
        return m;
    }
    static QStringList &warnings()
    {
        static QStringList list;
        return list;
    }

    QPointer<QQmlContext> m_context;
};
