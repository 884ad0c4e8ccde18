#pragma once

#include "BaseItem.h"
#include "GwParamRecord.h"

namespace CommunicationControl {

// An on/off gateway parameter ("true"/"false"); its triggers run on every change.
class BooleanData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(bool curValue READ curValue WRITE setCurValue NOTIFY curValueChanged)

public:
    BooleanData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    bool curValue() const { return m_curValue; }
    void updateCurValue(bool value);
    void setCurValue(bool value);

    QString CurValue() const override;
    int GwSetModuleParam(bool value);
    int SetModuleParam() override { return GwSetModuleParam(m_curValue); }

signals:
    void curValueChanged();

protected:
    bool hasGatewayValue() const override { return true; }
    void takeGatewayValue(const QByteArray &value) override { updateCurValue(GwParamRecord::isTrueText(value)); }

private:
    bool m_curValue = false;
};

} // namespace CommunicationControl
