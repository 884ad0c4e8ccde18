#pragma once

#include "BaseItem.h"

namespace CommunicationControl {

// A gateway parameter that is shown but never written.
class ReadOnlyTextData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(QString curValue READ curValue NOTIFY curValueChanged)

public:
    ReadOnlyTextData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    QString curValue() const { return m_curValue; }
    void updateCurValue(const QString &value);

    QString CurValue() const override { return m_curValue; }

signals:
    void curValueChanged();

protected:
    bool hasGatewayValue() const override { return true; }
    void takeGatewayValue(const QByteArray &value) override { updateCurValue(QString::fromUtf8(value)); }

private:
    QString m_curValue;
};

} // namespace CommunicationControl
