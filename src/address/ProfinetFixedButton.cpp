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
        // "ItemWidth" is the panel's business; the cell has its fixed width.
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
    data->setReadAddressId(values.value(QStringLiteral("readAddressId"), data->readAddressId()).toInt());
    data->setWriteAddressId(values.value(QStringLiteral("writeAddressId"), data->writeAddressId()).toInt());
    data->setWindowTitle(values.value(QStringLiteral("windowTitle")).toString());
    data->setReadAddressText(values.value(QStringLiteral("readAddressText")).toString());
    data->setWriteAddressText(values.value(QStringLiteral("writeAddressText")).toString());
    data->CreateFixedAddress();
}

void ProfinetFixedButton::setDeviceID(int id)
{
    if (ProfinetFixedButtonData *model = data())
        model->setDeviceId(id);
}

} // namespace CommunicationControl
