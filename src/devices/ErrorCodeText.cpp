#include "ErrorCodeText.h"

#include "LanguageHelper.h"

QString errorCodeKey(int code)
{
    return QStringLiteral("0x") + QString::number(quint32(code), 16).toUpper();
}

QString ERRORCODE_TR(int code, bool &untranslated)
{
    const QString key = errorCodeKey(code);
    const QString text = LanguageHelper::Translate("ErrorCode", key.toUtf8().constData());
    untranslated = (text == key);
    return text;
}

QString errorCodeText(int code)
{
    bool untranslated = false;
    return ERRORCODE_TR(code, untranslated);
}

QString lumoraTr(const QString &key)
{
    return LanguageHelper::Translate("Lumora", key.toUtf8().constData());
}
