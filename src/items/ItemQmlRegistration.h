#pragma once
// Registers an item's data model class for QML once, however many proxies of
// that kind are built ("lm.cpp.<Proxy>" 1.0, type name "<Proxy>Data").

#include <QtQml>
#include <mutex>

template <typename Data>
void registerItemDataType(const char *uri, const char *typeName)
{
    static std::once_flag once;
    std::call_once(once, [uri, typeName] {
        qmlRegisterUncreatableType<Data>(uri, 1, 0, typeName, QStringLiteral("made by its item proxy"));
    });
}
