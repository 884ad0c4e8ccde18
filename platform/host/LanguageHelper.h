#pragma once
// Host translation: looks keys up in the host's Qt translation files
// (commmanager_en.qm / commmanager_zh_CN.qm) for the configured language.

#include <QString>

class LanguageHelper
{
public:
    // The translation of key in context, or the key itself when there is none.
    static QString Translate(const char *context, const char *key);
    // Loads the translations for "en" or "zh_CN"; false when none is found.
    static bool load(const QString &language);
};
