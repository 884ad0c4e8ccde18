#pragma once
// Host translation: looks keys up in the host's Qt translation files
// (commmanager_en.qm / commmanager_zh_CN.qm, compiled into this library's
// resources) for the language of HostConfig. The tables are loaded on first use
// and again when the configured language changes. Keys and texts are UTF-8, so
// Chinese keys work as they are. No QCoreApplication is needed; any thread may
// translate.

#include <QString>

class LanguageHelper
{
public:
    // The translation of key in context, or the key itself when there is none.
    static QString Translate(const char *context, const char *key);
    // Loads the translations for "en" or "zh_CN"; false when none is found.
    static bool load(const QString &language);
};
