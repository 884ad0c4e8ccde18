#include "ProfinetFixedButton.h"

#include "ErrorCodeText.h"
#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <QVariantMap>
#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorProfinetFixedButton(QObject *parent)
{
    return new (std::nothrow) ProfinetFixedButton(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterProfinetFixedButton("ProfinetFixedButton", gwObjectCreatorProfinetFixedButton);
} // namespace

ProfinetFixedButton::ProfinetFixedButton(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("ProfinetFixedButton.qml"));
    registerItemDataType<ProfinetFixedButtonData>("lm.cpp.ProfinetFixedButton", "ProfinetFixedButtonData");
}

void ProfinetFixedButton::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    QVariantMap values;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "ReadAddressId"))
            values.insert(QStringLiteral("readAddressId"), xmlInt(child));
        if (isNamed(child, "WriteAddressId"))
            values.insert(QStringLiteral("writeAddressId"), xmlInt(child));
        if (isNamed(child, "WindowTitle"))
            values.insert(QStringLiteral("windowTitle"), lumoraTr(xmlText(child)));
        if (isNamed(child, "ReadAddressString"))
            values.insert(QStringLiteral("readAddressText"), lumoraTr(xmlText(child)));
        if (isNamed(child, "WriteAddressString"))
            values.insert(QStringLiteral("writeAddressText"), lumoraTr(xmlText(child)));
    });
    ProfinetFixedButtonData *data = read ? makeData<ProfinetFixedButtonData>(info) : nullptr;
    if (!data)
        return;
    if (values.contains(QStringLiteral("readAddressId")))
        data->setReadAddressId(values.value(QStringLiteral("readAddressId")).toInt());
    if (values.contains(QStringLiteral("writeAddressId")))
        data->setWriteAddressId(values.value(QStringLiteral("writeAddressId")).toInt());
    if (values.contains(QStringLiteral("windowTitle")))
        data->setWindowTitle(values.value(QStringLiteral("windowTitle")).toString());
    if (values.contains(QStringLiteral("readAddressText")))
        data->setReadAddressText(values.value(QStringLiteral("readAddressText")).toString());
    if (values.contains(QStringLiteral("writeAddressText")))
        data->setWriteAddressText(values.value(QStringLiteral("writeAddressText")).toString());
}

} // namespace CommunicationControl
