#include "LanguageHelper.h"

#include "HostConfig.h"

#include <QTranslator>
#include <memory>
#include <mutex>

namespace {
struct TranslatorState {
    std::mutex mutex;
    QString loadedLanguage;
    std::unique_ptr<QTranslator> translator;
};

TranslatorState &state()
{
    static TranslatorState s;
    return s;
}

QString normalised(const QString &language)
{
    return language.startsWith(QLatin1String("zh")) ? QStringLiteral("zh_CN") : QStringLiteral("en");
}

// The translations are compiled into this library's resources.
bool loadLocked(TranslatorState &s, const QString &language)
{
    const QString lang = normalised(language);
    auto translator = std::make_unique<QTranslator>();
    const bool ok = translator->load(QStringLiteral(":/translations/commmanager_%1.qm").arg(lang));
    s.translator = ok ? std::move(translator) : nullptr;
    s.loadedLanguage = language;
    return ok;
}
} // namespace

bool LanguageHelper::load(const QString &language)
{
    TranslatorState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    return loadLocked(s, language);
}

QString LanguageHelper::Translate(const char *context, const char *key)
{
    if (!key)
        return QString();
    const QString language = HostConfig::language();
    TranslatorState &s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    if (!s.translator || s.loadedLanguage != language)
        loadLocked(s, language);
    const QString text = s.translator ? s.translator->translate(context, key) : QString();
    return text.isEmpty() ? QString::fromUtf8(key) : text;
}
