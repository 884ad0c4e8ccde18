#pragma once

#include "BaseItem.h"

namespace CommunicationControl {

// A numeric gateway parameter with limits, a step and an optional message tip.
class IntegerData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(int currentValue READ currentValue WRITE setCurrentValue NOTIFY currentValueChanged)
    Q_PROPERTY(int minValue READ minValue NOTIFY minValueChanged)
    Q_PROPERTY(int maxValue READ maxValue NOTIFY maxValueChanged)
    Q_PROPERTY(int stepValue READ stepValue NOTIFY stepValueChanged)
    Q_PROPERTY(bool hasMessageTip READ hasMessageTip CONSTANT)
    Q_PROPERTY(QString messageTip READ messageTip CONSTANT)

public:
    IntegerData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    int currentValue() const { return m_currentValue; }
    void updateCurValue(int value);
    void setCurrentValue(int value);
    int minValue() const { return m_minValue; }
    void setMinValue(int value);
    int maxValue() const { return m_maxValue; }
    void setMaxValue(int value);
    int stepValue() const { return m_stepValue; }
    void setStepValue(int value);
    bool hasMessageTip() const { return m_hasMessageTip; }
    QString messageTip() const { return m_messageTip; }
    void setMessageTip(bool show, QString &tip);

    QString CurValue() const override { return QString::number(m_currentValue); }
    int GwSetModuleParam(int value);
    int SetModuleParam() override { return GwSetModuleParam(m_currentValue); }

signals:
    void currentValueChanged();
    void minValueChanged();
    void maxValueChanged();
    void stepValueChanged();

protected:
    bool hasGatewayValue() const override { return true; }
    void takeGatewayValue(const QByteArray &value) override;

private:
    QString reservedPortsTip();

    int m_currentValue = 0;
    int m_minValue = 0;
    int m_maxValue = 0;
    int m_stepValue = 0;
    bool m_hasMessageTip = false;
    QString m_messageTip;
};

} // namespace CommunicationControl
