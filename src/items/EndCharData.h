#pragma once

#include "BaseItem.h"

namespace CommunicationControl {

// The frame end of a stream device, shown and typed with \r and \n escapes
// ("\r\n" is CR LF) and stored in the gateway as the bytes themselves.
class EndCharData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(QString curValue READ curValue WRITE setCurValue NOTIFY curValueChanged)
    Q_PROPERTY(int maxLength READ maxLength WRITE setMaxLength NOTIFY maxLengthChanged)

public:
    EndCharData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    QString curValue() const { return m_curValue; }
    void updateCurValue(const QString &value);
    void setCurValue(const QString &value);
    int maxLength() const { return m_maxLength; }
    void setMaxLength(int length);

    QString CurValue() const override { return m_curValue; }
    int GwSetModuleParam(const QString &shown);
    int SetModuleParam() override { return GwSetModuleParam(m_curValue); }

signals:
    void curValueChanged();
    void maxLengthChanged();

protected:
    bool hasGatewayValue() const override { return true; }
    void takeGatewayValue(const QByteArray &value) override;

private:
    QString m_curValue;
    int m_maxLength = 0;
};

} // namespace CommunicationControl

// "\r" -> CR, then "\n" -> LF; encoded as UTF-8 with the module's bounded copy.
void endCharQString2byte(QString text, char *buffer, int size);
// CR -> "\r", then LF -> "\n", reading NUL-terminated UTF-8.
QString endCharByte2QString(const char *bytes);
