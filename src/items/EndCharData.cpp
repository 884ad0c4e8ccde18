#include "EndCharData.h"

#include "CommLog.h"
#include "GwParamRecord.h"

namespace {
constexpr int kEndCharBufferSize = GwParamRecord::kCopyLimit;
}

void endCharQString2byte(QString text, char *buffer, int size)
{
    text.replace(QLatin1String("\\r"), QLatin1String("\r"));
    text.replace(QLatin1String("\\n"), QLatin1String("\n"));
    const QByteArray bytes = text.toUtf8();
    GwParamRecord::boundedCopy(buffer, size, bytes.constData(), bytes.size());
}

QString endCharByte2QString(const char *bytes)
{
    if (!bytes)
        return QString();
    QString text = QString::fromUtf8(bytes);
    text.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return text;
}

namespace CommunicationControl {

EndCharData::EndCharData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void EndCharData::updateCurValue(const QString &value)
{
    m_curValue = value;
    emit curValueChanged();
}

void EndCharData::setCurValue(const QString &value)
{
    const QString old = m_curValue;
    updateCurValue(accepted(GwSetModuleParam(value)) ? value : old);
}

void EndCharData::setMaxLength(int length)
{
    m_maxLength = length;
    emit maxLengthChanged();
}

void EndCharData::takeGatewayValue(const QByteArray &value)
{
    updateCurValue(endCharByte2QString(value.constData()));
}

int EndCharData::GwSetModuleParam(const QString &shown)
{
    char bytes[kEndCharBufferSize] = {};
    endCharQString2byte(shown, bytes, sizeof(bytes));
    return writeParamLogged(QByteArray(bytes), COMM_LOG_SITE);
}

} // namespace CommunicationControl
