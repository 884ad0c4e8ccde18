#pragma once
// Base of every parameter item's data model: the common attributes read from
// the item element, the enable rules, and the triggers through which a change
// of this item's value shows or hides other items of the same device.

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <cstdint>

class CommDevice;
class BaseItem;
struct CommLogSite;

// Common attributes of one parameter item, read from its XML element.
struct _S_Comm_BasicDefaultInfo_ {
    int32_t itemKind = 2;
    QString displayName;
    QString description;
    QString name; // the item's gateway parameter key
    QString accessMode;
    QString spareTextA;
    QString typeName; // the element's tag name
    QString spareTextB;
    bool customVisible = true;
    bool generate = true;
    bool supportChangeEnable = false;
};

// One action of a trigger.
struct S_SetterNodeInfo {
    QString operation;  // "VisibleOperation" / "HiddenOperation"
    QString params;     // "True", other text, or empty
    QString targetName; // object name (parameter key) of the item acted on
    QPointer<BaseItem> target; // resolved on first use
};

// One trigger: conditions on this item's value and the setters to apply.
struct S_TriggersNodeInfo {
    bool anyMatch = false;
    QList<S_SetterNodeInfo> setters;
    QMap<QString, QString> conditions; // property name -> expected value
};

class BaseItem : public QObject
{
    Q_OBJECT
    Q_PROPERTY(uint moduID READ moduID WRITE setModuID NOTIFY moduIDChanged)
    Q_PROPERTY(QString description READ description NOTIFY descriptionChanged)
    Q_PROPERTY(QString displayName READ displayName NOTIFY displayNameChanged)
    Q_PROPERTY(bool visibility READ visibility WRITE setVisibility NOTIFY visibilityChanged)
    Q_PROPERTY(bool enable READ enable WRITE setEnable NOTIFY enableChanged)
    Q_PROPERTY(QString accessMode READ accessMode NOTIFY accessModeChanged)

public:
    BaseItem(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    uint moduID() const { return m_moduID; }
    void setModuID(uint id);
    QString description() const; // translated
    QString displayName() const; // translated
    QString accessMode() const { return m_accessMode; }
    bool visibility() const { return m_visibility; }
    void setVisibility(bool visible); // always notifies
    bool enable() const { return m_enable; }
    void setEnable(bool enable);
    bool supportEnable() const { return m_supportEnable; }
    void setSupportEnable(bool enable);
    bool alwaysDisable() const { return m_alwaysDisable; }
    void setAlwaysDisable(bool disable);

    const _S_Comm_BasicDefaultInfo_ &info() const { return m_info; }
    // The device that owns the item (its QObject parent), or null.
    CommDevice *device() const;

    void SetTriggers(const QList<S_TriggersNodeInfo> &triggers);
    const QList<S_TriggersNodeInfo> &triggers() const { return m_triggers; }
    void TriggerAssociatedEvents();

    // The current value as text, compared by trigger conditions.
    virtual QString CurValue() const;
    // Writes the current value to the gateway; returns the gateway code.
    virtual int SetModuleParam();
    // Reads the item's value (key = its name) from its device's module and
    // takes it with takeGatewayValue(); returns the gateway code. An item
    // without a gateway value reads nothing and returns 0.
    virtual int GwGetModuleParam();

signals:
    void moduIDChanged();
    void descriptionChanged();
    void displayNameChanged();
    void visibilityChanged();
    void accessModeChanged();
    void enableChanged();
    // A translated message for the operator; the type is a MessageBoxType.
    void messageBox(int nMsgBoxType, QString strMsg);

protected:
    // Items that hold a gateway parameter under their name say so and take
    // the text that GwGetModuleParam read.
    virtual bool hasGatewayValue() const { return false; }
    virtual void takeGatewayValue(const QByteArray &value);

    // Whether the item's device exists in the gateway: its module id (set by
    // the device's setDeviceID) is a gateway id, not 0 as on a device that the
    // Create dialog is still preparing.
    bool inGateway() const { return int(m_moduID) >= 1; }
    // Writes value under the item's name to its own moduID and returns the
    // gateway code; a refusal is shown to the operator. pendingIsSuccess:
    // 0xE000010C ("takes effect when next opened") counts as accepted. The
    // caller logs a failure with its own text. Before the item is in the
    // gateway nothing is written and 0 is returned: the value is taken, and
    // the device's setModuleParams writes it when the device is created.
    int writeParam(const QByteArray &value, bool pendingIsSuccess = true);
    // writeParam with a failure logged as "GW_PF_SetModuleParam failed,
    // error=%x" for the caller's site: the write of the items that follow the
    // Integer's pattern.
    int writeParamLogged(const QByteArray &value, const CommLogSite &site);
    static bool accepted(int rc, bool pendingIsSuccess = true);

private:
    bool triggerMatched(const S_TriggersNodeInfo &trigger) const;
    BaseItem *resolveTarget(S_SetterNodeInfo &setter) const;

    _S_Comm_BasicDefaultInfo_ m_info;
    uint m_moduID = 0;
    QString m_description;
    QString m_displayName;
    QString m_accessMode;
    bool m_visibility = true;
    bool m_enable = true;
    bool m_supportEnable = false;
    bool m_alwaysDisable = false;
    QList<S_TriggersNodeInfo> m_triggers;
};
