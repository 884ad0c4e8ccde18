#include "BaseItem.h"

#include "CommDevice.h"
#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GwParamRecord.h"
#include "LanguageHelper.h"
#include "MessageBoxType.h"

namespace {
const QString kCurValue = QStringLiteral("CurValue");
const QString kVisibleOperation = QStringLiteral("VisibleOperation");
const QString kHiddenOperation = QStringLiteral("HiddenOperation");
const QString kTrue = QStringLiteral("True");

struct VisibilityAction {
    bool act = false;
    bool visible = false;
};

// What one setter does to its target's visibility, given whether its trigger
// matched and whether the item that owns the trigger is itself visible.
VisibilityAction visibilityAction(const QString &operation, const QString &param, bool matched, bool own)
{
    const bool paramTrue = (param == kTrue);
    if (operation == kVisibleOperation) {
        if (param.isEmpty())
            return {!(matched && !own), matched};
        if (matched)
            return {!(paramTrue && !own), paramTrue};
        return {own || paramTrue, !paramTrue};
    }
    if (operation == kHiddenOperation && param.isEmpty())
        return {own || matched, !matched};
    return {};
}
} // namespace

BaseItem::BaseItem(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : QObject(parent)
    , m_info(info)
    , m_description(info.description)
    , m_displayName(info.displayName)
    , m_accessMode(info.accessMode)
    , m_visibility(info.customVisible)
    , m_supportEnable(info.supportChangeEnable)
{
    setObjectName(info.name);
}

void BaseItem::setModuID(uint id)
{
    if (id == m_moduID)
        return;
    m_moduID = id;
    emit moduIDChanged();
}

QString BaseItem::description() const
{
    return LanguageHelper::Translate("Lumora", m_description.toUtf8().constData());
}

QString BaseItem::displayName() const
{
    return LanguageHelper::Translate("Lumora", m_displayName.toUtf8().constData());
}

void BaseItem::setVisibility(bool visible)
{
    m_visibility = visible;
    emit visibilityChanged();
}

void BaseItem::setEnable(bool enable)
{
    m_enable = m_alwaysDisable ? false : enable;
    emit enableChanged();
}

void BaseItem::setSupportEnable(bool enable)
{
    if (!enable)
        setEnable(true);
    else if (m_supportEnable)
        setEnable(false);
}

void BaseItem::setAlwaysDisable(bool disable)
{
    m_alwaysDisable = disable;
    if (disable) {
        m_enable = false;
        emit enableChanged();
    }
}

CommDevice *BaseItem::device() const
{
    return qobject_cast<CommDevice *>(parent());
}

void BaseItem::SetTriggers(const QList<S_TriggersNodeInfo> &triggers)
{
    m_triggers = triggers;
}

QString BaseItem::CurValue() const
{
    return QString();
}

int BaseItem::SetModuleParam()
{
    return 0;
}

int BaseItem::GwGetModuleParam()
{
    if (!hasGatewayValue())
        return 0;
    const CommDevice *owner = device();
    const int moduleId = owner ? owner->deviceID() : int(m_moduID);
    QByteArray value;
    const uint32_t rc = GwParamRecord::readOne(moduleId, objectName().toUtf8(), value);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetModuleParam failed, error=%x", rc);
        return int(rc);
    }
    takeGatewayValue(value);
    return 0;
}

void BaseItem::takeGatewayValue(const QByteArray &)
{
}

bool BaseItem::accepted(int rc, bool pendingIsSuccess)
{
    return rc == 0 || (pendingIsSuccess && quint32(rc) == GW_ERR_PENDING_REOPEN);
}

int BaseItem::writeParam(const QByteArray &value, bool pendingIsSuccess)
{
    if (!inGateway())
        return 0;
    const uint32_t rc = GwParamRecord::writeOne(int(m_moduID), objectName().toUtf8(), value);
    if (!accepted(int(rc), pendingIsSuccess))
        emit messageBox(MessageBoxType::Error, errorCodeText(int(rc)));
    return int(rc);
}

int BaseItem::writeParamLogged(const QByteArray &value, const CommLogSite &site)
{
    const int rc = writeParam(value);
    if (rc != 0)
        COMM_LOG_AT(site, CommLogInfo, "GW_PF_SetModuleParam failed, error=%x", unsigned(rc));
    return rc;
}

// With the any-match flag clear only the first condition counts; with it set,
// any one matching condition suffices. Only "CurValue" can be tested.
bool BaseItem::triggerMatched(const S_TriggersNodeInfo &trigger) const
{
    if (trigger.conditions.isEmpty())
        return true;
    for (auto it = trigger.conditions.cbegin(); it != trigger.conditions.cend(); ++it) {
        if (it.key() == kCurValue && CurValue().compare(it.value(), Qt::CaseInsensitive) == 0)
            return true;
        if (!trigger.anyMatch)
            return false;
    }
    return false;
}

BaseItem *BaseItem::resolveTarget(S_SetterNodeInfo &setter) const
{
    if (!setter.target && parent())
        setter.target = parent()->findChild<BaseItem *>(setter.targetName, Qt::FindChildrenRecursively);
    return setter.target;
}

void BaseItem::TriggerAssociatedEvents()
{
    // Targets shown by a matching trigger of this evaluation stay shown.
    QMap<QString, bool> shownByMatch;
    for (S_TriggersNodeInfo &trigger : m_triggers) {
        const bool matched = triggerMatched(trigger);
        for (S_SetterNodeInfo &setter : trigger.setters) {
            BaseItem *target = resolveTarget(setter);
            if (!target)
                continue;
            const VisibilityAction action = visibilityAction(setter.operation, setter.params, matched, m_visibility);
            if (!action.act)
                continue;
            if (!action.visible && shownByMatch.value(setter.targetName))
                continue;
            target->setVisibility(action.visible);
            if (action.visible && matched)
                shownByMatch.insert(setter.targetName, true);
        }
    }
}
