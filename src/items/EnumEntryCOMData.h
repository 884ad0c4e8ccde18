#pragma once

#include "BaseItem.h"

#include <QStringList>

namespace CommunicationControl {

// A choice among the serial ports the gateway reports. The first entry is the
// translated prompt "请选择"; ports start at index 1. A port stored in the
// gateway that is no longer present stays listed and selected.
class EnumEntryCOMData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(QStringList coms READ coms NOTIFY comsChanged)
    Q_PROPERTY(int curIndex READ curIndex WRITE setCurIndex NOTIFY curIndexChanged)

public:
    EnumEntryCOMData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    QStringList coms() const { return m_coms; }
    Q_INVOKABLE void getComList();
    int curIndex() const { return m_curIndex; }
    void setCurIndex(int index);
    // Selects the named port, adding it to the list when it is not present.
    void selectPort(const QString &port);

    QString CurValue() const override;
    int SetModuleParam() override;

signals:
    void comsChanged();
    void curIndexChanged();

protected:
    bool hasGatewayValue() const override { return true; }
    void takeGatewayValue(const QByteArray &value) override { selectPort(QString::fromUtf8(value)); }

private:
    QStringList m_coms;
    int m_curIndex = 0;
};

} // namespace CommunicationControl
