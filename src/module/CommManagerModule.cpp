#include "CommManagerModule.h"

#include "CommLog.h"
#include "DevicesManager.h"
#include "ErrorCodeText.h"
#include "GwCallbacks.h"
#include "GwPlatform.h"
#include "QGlobalEventFilter.h"
#include "RecvEventManager.h"

#include "ContextModel.h"
#include "ICommandService.h"
#include "IocContainar.h"
#include "LanguageHelper.h"
#include "QUICore.h"

#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QScreen>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace LmCore;

namespace {
constexpr int32_t kModuleType = 3;
constexpr int32_t kModuleNumber = 10999;
constexpr int32_t kProxyModuleNumber = 11000;
constexpr int kDongleType = 101;
constexpr char kGatewayAddress[] = "127.0.0.1";
constexpr char kPageUrl[] = "qrc:/QmlFiles/CommManagerModuleDialog.qml";

void showError(const QString &text)
{
    QUICore::ShowMessageBoxError(text, 0);
}

std::shared_ptr<ICommandService> commandService()
{
    return LmCommon::IocContainar::Instance().Resolve<ICommandService>();
}
} // namespace

CommManagerModule::CommManagerModule(QWindow *parent)
    : QQuickView(parent)
{
    ContextModel *context = QUICore::QUICoreInstance()->contextModel();
    connect(context, &ContextModel::Sig_loadSolBegin, this, [this](const QString &) {
        COMM_LOG(CommLogInfo, "Sig_loadSolBegin callback enter");
        onHostLeaves();
        COMM_LOG(CommLogInfo, "Sig_loadSolBegin callback leave");
    });
    connect(context, &ContextModel::Sig_ServerSeized, this, [this](const QString &) {
        COMM_LOG(CommLogInfo, "Sig_ServerSeized callback enter");
        onHostLeaves();
        COMM_LOG(CommLogInfo, "Sig_ServerSeized callback leave");
    });
}

void CommManagerModule::onHostLeaves()
{
    DeInit();
    if (isVisible())
        hide();
}

int CommManagerModule::registerWithHost(const CommLogSite &site)
{
    const auto service = commandService();
    QueryCommand<MODULE_INFO_LIST_CONDITION_BY_TYPE__, MODULE_INFO_LIST__> query;
    query.condition.moduleType = kModuleType;
    COMMAND_RESULT__ result{};
    if (service) {
        result = service->Execute(query);
    } else {
        result.status = CMD_STATUS_FAILED;
        result.errorCode = int32_t(GW_ERR_GENERAL);
        std::snprintf(result.message, sizeof(result.message), "%s", "no command service");
    }
    if (result.status != CMD_STATUS_SUCCESS) {
        COMM_LOG_AT(site, CommLogInfo, "query communication failed.error=%d,status=%d,message=%s", result.errorCode,
                 result.status, result.message);
        showError(lumoraTr(QStringLiteral("Lang_QueryCommMgrFailed")) + QStringLiteral(": ")
                  + errorCodeText(result.errorCode));
        return result.errorCode;
    }
    if (query.answer.count == 0 || !query.answer.entries) {
        AddModuleCommand add;
        add.moduleNumber = kModuleNumber;
        std::snprintf(add.moduleName, sizeof(add.moduleName), "%s", "CommManagerModule");
        std::snprintf(add.displayName, sizeof(add.displayName), "%s", "通信管理");
        const COMMAND_RESULT__ added = service->Execute(add);
        if (added.status == CMD_STATUS_ERROR) {
            COMM_LOG_AT(site, CommLogInfo, "add communication module failed.error=%d,status=%d,message=%s", added.errorCode,
                     added.status, added.message);
            showError(lumoraTr(QStringLiteral("Lang_CommMagrCreateFailed")));
            return added.errorCode;
        }
    } else {
        COMM_LOG_AT(site, CommLogDetail, "communication already existed. moduleID=%d", query.answer.entries[0].moduleId);
    }
    return 0;
}

int CommManagerModule::queryGatewayPort(QString &port, const CommLogSite &site)
{
    const auto service = commandService();
    QueryCommand<RUN_PARAM_CONDITION__, ILMX_MODULE_PARAM__> query;
    query.condition.moduleNumber = kProxyModuleNumber;
    std::snprintf(query.condition.paramName, sizeof(query.condition.paramName), "%s", "GetProxyInitPort");
    const COMMAND_RESULT__ result = service->Execute(query);
    if (result.status == CMD_STATUS_ERROR) {
        COMM_LOG_AT(site, CommLogInfo, "GetProxyInitPort faile.error=%d,status=%d,message=%s", result.errorCode,
                 result.status, result.message);
        showError(lumoraTr(QStringLiteral("Lang_GetProxyInitPortFailed")));
        return result.errorCode;
    }
    port = QString::fromUtf8(query.answer.paramValue,
                             int(strnlen(query.answer.paramValue, sizeof(query.answer.paramValue))));
    return 0;
}

int CommManagerModule::Init(QString, QString)
{
    COMM_LOG(CommLogInfo, "CommManagerModule Init enter");
    if (m_inited) {
        COMM_LOG(CommLogInfo, "CommManagerModule already Inited, leave");
        return 0;
    }
    if (const int rc = registerWithHost(COMM_LOG_SITE))
        return rc;
    QString port;
    if (const int rc = queryGatewayPort(port, COMM_LOG_SITE))
        return rc;

    const QByteArray portText = port.toUtf8();
    COMM_LOG(CommLogInfo, "GW_PF_Init start, 127.0.0.1:%s, dongle type=101", portText.constData());
    const int portNumber = int(std::strtol(portText.constData(), nullptr, 10));
    GW_PF_SetLogCallBack(LogCallBack, nullptr);
    const uint32_t rc = GW_PF_Init(1, kGatewayAddress, portNumber, kDongleType);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_Init failed,127.0.0.1:%s, dongle type=101. error=%x", portText.constData(), rc);
        showError(lumoraTr(QStringLiteral("Lang_GWSDKInitFailed")));
        return int(rc);
    }
    COMM_LOG(CommLogInfo, "GW_PF_Init succ");
    m_inited = true;

    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setModality(Qt::NonModal);
    setResizeMode(QQuickView::SizeRootObjectToView);
    publishToQml();
    if (!source().isEmpty())
        setSource(QUrl());
    setSource(QUrl(QString::fromLatin1(kPageUrl)));
    DevicesManager::Instance()->LoadDevices();
    GW_PF_SetResultCallback(ResultCallBack, nullptr);
    GW_PF_SetRecvEventCalBack(nullptr, nullptr);
    GW_PF_SetEventCalBack(EventCallBack, nullptr);
    centreOnPrimaryScreen();
    return 0;
}

void CommManagerModule::publishToQml()
{
    rootContext()->setContextProperty(QStringLiteral("MainWindow"), this);
    qmlRegisterSingletonInstance("comm.devicesManager", 1, 0, "DevicesManager", DevicesManager::Instance());
    qmlRegisterSingletonInstance("comm.recvEventManager", 1, 0, "RecvEventManager", RecvEventManager::Instance());
    qmlRegisterType<QGlobalEventFilter>("comm.GlobalEventFilter", 1, 0, "GlobalEventFilter");
}

void CommManagerModule::centreOnPrimaryScreen()
{
    QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    // The available area's origin is deliberately not added.
    const QRect area = screen->availableGeometry();
    setPosition((area.width() - width()) / 2, (area.height() - height()) / 2);
}

void CommManagerModule::DeInit()
{
    COMM_LOG(CommLogInfo, "CommManagerModule DeInit enter");
    if (!m_inited) {
        COMM_LOG(CommLogInfo, "CommManagerModule already DeInited, leave");
        return;
    }
    const uint32_t rc = GW_PF_DeInit();
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "CommManagerModule DeInit failed error=%x, leave", rc);
        return;
    }
    if (!source().isEmpty())
        setSource(QUrl());
    m_inited = false;
    COMM_LOG(CommLogInfo, "CommManagerModule DeInit succ, leave");
}

void CommManagerModule::ViewHide()
{
    hide();
    emit Sig_closeClicked();
}

void CommManagerModule::repaintWindow()
{
    PrivateRequestUpdate();
}

void CommManagerModule::PrivateRequestUpdate()
{
    if (QWindow *parentWindow = parent())
        parentWindow->requestUpdate();
}

bool CommManagerModule::event(QEvent *event)
{
    if (event->type() == QEvent::Move)
        PrivateRequestUpdate();
    return QQuickWindow::event(event);
}
