#include "IntegerData.h"

#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GwPlatform.h"

#include <cstdlib>
#include <memory>
#include <new>

namespace CommunicationControl {

namespace {
constexpr char kReservedPortTip[] = "Reserved_Port_Tip";
constexpr int kFirstPortBufferSize = 1024;
} // namespace

IntegerData::IntegerData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void IntegerData::updateCurValue(int value)
{
    m_currentValue = value;
    emit currentValueChanged();
}

// The gateway decides (an item of a device not yet created in it takes the
// value at once, BaseItem::writeParam); a refusal puts the old value back.
void IntegerData::setCurrentValue(int value)
{
    Q_ASSERT(device());
    const int old = m_currentValue;
    updateCurValue(accepted(GwSetModuleParam(value)) ? value : old);
}

void IntegerData::setMinValue(int value)
{
    m_minValue = value;
    emit minValueChanged();
}

void IntegerData::setMaxValue(int value)
{
    m_maxValue = value;
    emit maxValueChanged();
}

void IntegerData::setStepValue(int value)
{
    m_stepValue = value;
    emit stepValueChanged();
}

void IntegerData::takeGatewayValue(const QByteArray &value)
{
    updateCurValue(int(std::strtol(value.constData(), nullptr, 10)));
}

int IntegerData::GwSetModuleParam(int value)
{
    return writeParamLogged(QByteArray::number(value), COMM_LOG_SITE);
}

void IntegerData::setMessageTip(bool show, QString &tip)
{
    m_hasMessageTip = show;
    m_messageTip = tip == QLatin1String(kReservedPortTip) ? reservedPortsTip() : tip;
}

// "Ports in use: 8000,8001" from the gateway; its own failure text otherwise.
QString IntegerData::reservedPortsTip()
{
    int size = kFirstPortBufferSize;
    for (int attempt = 0; attempt < 2; ++attempt) {
        std::unique_ptr<char[]> buffer(new (std::nothrow) char[size_t(size) + 1]());
        if (!buffer)
            break;
        int needed = 0;
        const uint32_t rc = GW_PF_GetReservedPorts(buffer.get(), size, &needed);
        if (rc == GW_OK)
            return lumoraTr(QStringLiteral("Lang_ReservedPorts")) + QString::fromUtf8(buffer.get());
        if (rc != GW_ERR_BUFFER_TOO_SMALL || needed <= size) {
            COMM_LOG(CommLogInfo, "GW_PF_GetReservedPorts failed, error=%x", rc);
            break;
        }
        size = needed;
    }
    return lumoraTr(QStringLiteral("Lang_GetReservedPorts_Failed"));
}

} // namespace CommunicationControl
