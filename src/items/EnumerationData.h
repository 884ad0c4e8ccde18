#pragma once

#include "BaseItem.h"

#include <QStringList>

// One entry of an enumeration.
struct _S_EnumeraInfo_ {
    QString description;
    QString displayName;
    QString name;
    int32_t value = 0;
};

namespace CommunicationControl {

// A choice among the entries of its element; the gateway stores the chosen
// entry's value in decimal.
class EnumerationData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(QStringList enums READ enums WRITE setEnums NOTIFY enumsChanged)
    Q_PROPERTY(int curIndex READ curIndex WRITE setCurIndex NOTIFY curIndexChanged)
    Q_PROPERTY(bool hasMessageTip READ hasMessageTip CONSTANT)
    Q_PROPERTY(QString messageTip READ messageTip CONSTANT)

public:
    EnumerationData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    void setEntries(const QList<_S_EnumeraInfo_> &entries);
    const QList<_S_EnumeraInfo_> &entries() const { return m_entries; }
    int indexOfValue(int value) const;

    QStringList enums() const { return m_enums; }
    void setEnums(QStringList enums);
    int curIndex() const { return m_curIndex; }
    void updateCurIndex(int index);
    void setCurIndex(int index);
    bool hasMessageTip() const { return m_hasMessageTip; }
    QString messageTip() const { return m_messageTip; }
    void setMessageTip(bool show, QString &tip);

    QString CurValue() const override;
    int SetModuleParam(int index);
    int SetModuleParam() override { return SetModuleParam(m_curIndex); }

signals:
    void enumsChanged();
    void curIndexChanged();

protected:
    bool hasGatewayValue() const override { return true; }
    // A value that names no entry keeps the current index.
    void takeGatewayValue(const QByteArray &value) override;

private:
    QList<_S_EnumeraInfo_> m_entries;
    QStringList m_enums;
    int m_curIndex = 0;
    bool m_hasMessageTip = false;
    QString m_messageTip;
};

} // namespace CommunicationControl
