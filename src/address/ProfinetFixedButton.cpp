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

void ProfinetFixedButton::setDeviceID(int id)
{
    if (m_data)
        m_data->setModuID(uint(id));
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
    if (!read)
        return;
    m_data = new (std::nothrow) ProfinetFixedButtonData(info, parent());
    if (!m_data)
        return;
    setBaseData(m_data);
    if (values.contains(QStringLiteral("readAddressId")))
        m_data->setReadAddressId(values.value(QStringLiteral("readAddressId")).toInt());
    if (values.contains(QStringLiteral("writeAddressId")))
        m_data->setWriteAddressId(values.value(QStringLiteral("writeAddressId")).toInt());
    if (values.contains(QStringLiteral("windowTitle")))
        m_data->setWindowTitle(values.value(QStringLiteral("windowTitle")).toString());
    if (values.contains(QStringLiteral("readAddressText")))
        m_data->setReadAddressText(values.value(QStringLiteral("readAddressText")).toString());
    if (values.contains(QStringLiteral("writeAddressText")))
        m_data->setWriteAddressText(values.value(QStringLiteral("writeAddressText")).toString());
}

} // namespace CommunicationControl
