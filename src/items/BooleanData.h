#pragma once

#include "BaseItem.h"

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
    int GwGetModuleParam() override;
    int GwSetModuleParam(bool value);
    int SetModuleParam() override { return GwSetModuleParam(m_curValue); }

signals:
    void curValueChanged();

private:
    bool m_curValue = false;
};

} // namespace CommunicationControl
