#pragma once

#include "BaseItem.h"

#include <QStringList>

namespace CommunicationControl {

// An IPv4 address parameter: a local address of this host (isHostIP, chosen
// from ipList) or a target address typed by the operator.
class IPStringData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(QString ipString READ ipString WRITE setIPString NOTIFY ipStringChanged)
    Q_PROPERTY(QStringList ipList READ ipList NOTIFY ipListChanged)
    Q_PROPERTY(bool isHostIP READ isHostIP CONSTANT)

public:
    IPStringData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    QString ipString() const { return m_ipString; }
    void updateIPString(const QString &ip);
    // Writes only a canonical IPv4 address; anything else is logged and refused.
    Q_INVOKABLE bool setIPString(const QString &ip);
    QStringList ipList() const { return m_ipList; }
    bool isHostIP() const { return m_isHostIP; }

    // Parses as IPv4 and prints back exactly the same text.
    static bool IsIPv4(const QString &text);

    QString CurValue() const override { return m_ipString; }
    int GwSetModuleParam(const QString &ip);
    // Writes the address when it has one; an empty field leaves the gateway's default.
    int SetModuleParam() override { return IsIPv4(m_ipString) ? GwSetModuleParam(m_ipString) : 0; }

signals:
    void ipStringChanged();
    void ipListChanged();

protected:
    bool hasGatewayValue() const override { return true; }
    void takeGatewayValue(const QByteArray &value) override { updateIPString(QString::fromUtf8(value)); }

private:
    void GwGetLocalIpList();
    void GetQtLocalIpList();

    QString m_ipString;
    QStringList m_ipList;
    bool m_isHostIP = false;
};

} // namespace CommunicationControl
