#include "EnumEntryCOMData.h"

#include "CommLog.h"
#include "ErrorCodeText.h"
#include "GwPlatform.h"

#include <cstring>
#include <memory>
#include <new>

namespace CommunicationControl {

namespace {
constexpr int kSerialListBufferSize = 1024;
}

EnumEntryCOMData::EnumEntryCOMData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void EnumEntryCOMData::getComList()
{
    std::unique_ptr<char[]> buffer(new (std::nothrow) char[kSerialListBufferSize + 1]());
    if (!buffer)
        return;
    int length = 0;
    const uint32_t rc = GW_PF_GetSerialList(buffer.get(), kSerialListBufferSize, &length);
    if (rc != GW_OK) {
        COMM_LOG(CommLogInfo, "GW_PF_GetSerialList failed, error=%x", rc);
        return;
    }
    if (length == 0)
        return;
    const int size = length < 0 ? int(strnlen(buffer.get(), kSerialListBufferSize)) : qMin(length, kSerialListBufferSize);
    const QString current = CurValue();
    QStringList coms{lumoraTr(QStringLiteral("请选择"))};
    for (const QString &port : QString::fromUtf8(buffer.get(), size).split(QLatin1Char('\t'), Qt::SkipEmptyParts))
        coms.append(port);
    m_coms = coms;
    emit comsChanged();
    selectPort(current);
}

void EnumEntryCOMData::selectPort(const QString &port)
{
    if (m_coms.isEmpty())
        m_coms.append(lumoraTr(QStringLiteral("请选择")));
    int index = port.isEmpty() ? 0 : m_coms.indexOf(port, 1);
    if (index < 0) {
        m_coms.append(port);
        emit comsChanged();
        index = m_coms.size() - 1;
    }
    m_curIndex = index;
    emit curIndexChanged();
}

QString EnumEntryCOMData::CurValue() const
{
    return m_curIndex > 0 && m_curIndex < m_coms.size() ? m_coms.at(m_curIndex) : QString();
}

void EnumEntryCOMData::setCurIndex(int index)
{
    m_curIndex = index;
    SetModuleParam();
    emit curIndexChanged();
}

// Writes the chosen port (a failure is not undone: the choice stays shown).
int EnumEntryCOMData::SetModuleParam()
{
    const QByteArray port = CurValue().toUtf8();
    const int rc = writeParam(port);
    if (rc != 0)
        COMM_LOG(CommLogInfo, "GwSetModuleParam [%s] failed, error=%x", port.constData(), unsigned(rc));
    return rc;
}

} // namespace CommunicationControl
