#include "QmlTestGateway.h"

#include "DevicesManager.h"
#include "FakeGateway.h"

void QmlTestGateway::reset()
{
    FakeGateway::instance().reset();
    DevicesManager::Instance()->LoadDevices();
    DevicesManager::Instance()->sendDataNormalDevice()->setHexEnable(false);
    DevicesManager::Instance()->sendDataNormalDevice()->setText(QStringLiteral("TestData"));
    FakeGateway::instance().clearCalls();
}

int QmlTestGateway::addModule(const QString &type, const QString &name)
{
    return FakeGateway::instance().addModule(type.toUtf8(), name.toUtf8());
}

void QmlTestGateway::setParam(int moduleId, const QString &key, const QString &value)
{
    FakeGateway::instance().setParam(moduleId, key.toUtf8(), value.toUtf8());
}

void QmlTestGateway::loadDevices()
{
    DevicesManager::Instance()->LoadDevices();
}

void QmlTestGateway::answer(const QString &function, double code)
{
    FakeGateway::instance().answer(function, quint32(code));
}

void QmlTestGateway::answerKey(const QString &function, const QString &key, double code)
{
    FakeGateway::instance().answerKey(function, key.toUtf8(), quint32(code));
}

void QmlTestGateway::clearCalls()
{
    FakeGateway::instance().clearCalls();
}

int QmlTestGateway::callCount(const QString &function) const
{
    return FakeGateway::instance().calls(function).size();
}

QString QmlTestGateway::lastText(const QString &function) const
{
    return QString::fromUtf8(FakeGateway::instance().lastCall(function).text);
}

int QmlTestGateway::lastModuleId(const QString &function) const
{
    return FakeGateway::instance().lastCall(function).moduleId;
}

int QmlTestGateway::setCount(int moduleId, const QString &key, const QString &value) const
{
    return FakeGateway::instance().setCount(moduleId, key.toUtf8(), value.toUtf8());
}

QString QmlTestGateway::param(int moduleId, const QString &key) const
{
    return QString::fromUtf8(FakeGateway::instance().param(moduleId, key.toUtf8()));
}
