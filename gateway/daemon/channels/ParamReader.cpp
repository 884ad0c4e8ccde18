#include "ParamReader.h"

QByteArray ParamReader::value(const char *key)
{
    const auto it = m_params.constFind(key);
    if (it == m_params.constEnd()) {
        m_ok = false;
        return {};
    }
    return it.value();
}

int ParamReader::integer(const char *key)
{
    bool converted = false;
    const int number = value(key).toInt(&converted);
    m_ok = m_ok && converted;
    return number;
}

quint16 ParamReader::port(const char *key)
{
    bool converted = false;
    const quint16 number = value(key).toUShort(&converted);
    m_ok = m_ok && converted;
    return number;
}

QHostAddress ParamReader::ipv4(const char *key)
{
    QHostAddress address;
    const bool converted = address.setAddress(QString::fromLatin1(value(key)))
        && address.protocol() == QAbstractSocket::IPv4Protocol;
    m_ok = m_ok && converted;
    return address;
}

bool ParamReader::boolean(const char *key)
{
    return value(key).compare("true", Qt::CaseInsensitive) == 0;
}

QByteArray ParamReader::text(const char *key)
{
    return value(key);
}
