#include "HostConfig.h"
#include "IocContainar.h"
#include "ModuleRegistry.h"

#include <QtTest>
#include <cstring>

using namespace LmCore;

class tst_ModuleRegistry : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void moduleList_listsOnlyThatType();
    void addModule_twice_secondAnswersStatus3();
    void runParam_data();
    void runParam();

private:
    std::shared_ptr<ModuleRegistry> m_registry;
};

void tst_ModuleRegistry::init()
{
    m_registry = ModuleRegistry::installDefault();
    QCOMPARE(LmCommon::IocContainar::Instance().Resolve<ICommandService>().get(), m_registry.get());
}

void tst_ModuleRegistry::moduleList_listsOnlyThatType()
{
    AddModuleCommand add;
    add.moduleNumber = 10999;
    std::snprintf(add.moduleName, sizeof(add.moduleName), "%s", "CommManagerModule");
    QCOMPARE(m_registry->Execute(add).status, int32_t(CMD_STATUS_SUCCESS));

    QueryCommand<MODULE_INFO_LIST_CONDITION_BY_TYPE__, MODULE_INFO_LIST__> query;
    query.condition.moduleType = 3;
    QCOMPARE(m_registry->Execute(query).status, int32_t(CMD_STATUS_SUCCESS));
    QCOMPARE(query.answer.count, 1);
    QCOMPARE(query.answer.entries[0].moduleId, 10999);

    QueryCommand<MODULE_INFO_LIST_CONDITION_BY_TYPE__, MODULE_INFO_LIST__> other;
    other.condition.moduleType = 7;
    m_registry->Execute(other);
    QCOMPARE(other.answer.count, 0);
}

void tst_ModuleRegistry::addModule_twice_secondAnswersStatus3()
{
    AddModuleCommand add;
    add.moduleNumber = 10999;
    QCOMPARE(m_registry->Execute(add).status, int32_t(CMD_STATUS_SUCCESS));
    const COMMAND_RESULT__ again = m_registry->Execute(add);
    QCOMPARE(again.status, int32_t(CMD_STATUS_ERROR));
    QVERIFY(std::strlen(again.message) > 0);
    QCOMPARE(m_registry->modules().size(), 1);
}

void tst_ModuleRegistry::runParam_data()
{
    QTest::addColumn<int>("module");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("port");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("value");
    QTest::newRow("gateway port") << 11000 << "GetProxyInitPort" << "40123" << 1 << "40123";
    QTest::newRow("no port configured") << 11000 << "GetProxyInitPort" << "" << 3 << "";
    QTest::newRow("unknown parameter") << 11000 << "Other" << "40123" << 3 << "";
    QTest::newRow("other module") << 11001 << "GetProxyInitPort" << "40123" << 3 << "";
}

void tst_ModuleRegistry::runParam()
{
    QFETCH(int, module);
    QFETCH(QString, name);
    QFETCH(QString, port);
    QFETCH(int, status);
    QFETCH(QString, value);
    HostConfig::setGatewayPort(port);
    QueryCommand<RUN_PARAM_CONDITION__, ILMX_MODULE_PARAM__> query;
    query.condition.moduleNumber = module;
    std::snprintf(query.condition.paramName, sizeof(query.condition.paramName), "%s", name.toUtf8().constData());
    QCOMPARE(m_registry->Execute(query).status, status);
    QCOMPARE(QString::fromUtf8(query.answer.paramValue), value);
}

QTEST_GUILESS_MAIN(tst_ModuleRegistry)
#include "tst_moduleregistry.moc"
