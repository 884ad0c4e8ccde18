#pragma once
// The fake gateway as the QML tests see it (singleton "TestGateway" of
// "test.gateway" 1.0): scripting answers, adding modules, reloading the
// device list and reading back the calls that the page made.

#include <QObject>
#include <QString>

class QmlTestGateway : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    // Fresh gateway and an empty device list.
    Q_INVOKABLE void reset();
    Q_INVOKABLE int addModule(const QString &type, const QString &name);
    Q_INVOKABLE void setParam(int moduleId, const QString &key, const QString &value);
    Q_INVOKABLE void loadDevices();
    // Every call of `function` answers code (codes above 2^31 come as doubles).
    Q_INVOKABLE void answer(const QString &function, double code);
    Q_INVOKABLE void answerKey(const QString &function, const QString &key, double code);
    Q_INVOKABLE void clearCalls();
    Q_INVOKABLE int callCount(const QString &function) const;
    // Text of the last call of `function` (the sent string of WriteString).
    Q_INVOKABLE QString lastText(const QString &function) const;
    Q_INVOKABLE int lastModuleId(const QString &function) const;
    // How many SetModuleParam calls wrote key = value to the module.
    Q_INVOKABLE int setCount(int moduleId, const QString &key, const QString &value) const;
    Q_INVOKABLE QString param(int moduleId, const QString &key) const;
};
