#include "AddressDataSet.h"

#include "ErrorCodeText.h"
#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <QVariantMap>
#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorAddressDataSet(QObject *parent)
{
    return new (std::nothrow) AddressDataSet(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterAddressDataSet("AddressDataSet", gwObjectCreatorAddressDataSet);
GwNodeItemRegistration g_gwCreatorRegisterAddressDataSetA("AddressDataSetA", gwObjectCreatorAddressDataSet);
} // namespace

AddressDataSet::AddressDataSet(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("AddressDataSet.qml"));
    registerItemDataType<AddressDataSetData>("lm.cpp.AddressDataSet", "AddressDataSetData");
}

void AddressDataSet::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    QVariantMap values;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "AddAddressType"))
            values.insert(QStringLiteral("addressType"), xmlInt(child));
        if (isNamed(child, "AddressLow"))
            values.insert(QStringLiteral("addressLow"), xmlInt(child));
        if (isNamed(child, "AddressHigh"))
            values.insert(QStringLiteral("addressHigh"), xmlInt(child));
        if (isNamed(child, "SoftElementAddressMinValue"))
            values.insert(QStringLiteral("softAddressMin"), xmlInt(child));
        if (isNamed(child, "SoftElementAddressMaxValue"))
            values.insert(QStringLiteral("softAddressMax"), xmlInt(child));
        if (isNamed(child, "SoftElementAddressDefaultValue"))
            values.insert(QStringLiteral("softAddressDefault"), xmlInt(child));
    });
    AddressDataSetData *data = read ? makeData<AddressDataSetData>(info) : nullptr;
    if (!data)
        return;
    if (values.contains(QStringLiteral("addressType")))
        data->setAddressType(values.value(QStringLiteral("addressType")).toInt());
    if (values.contains(QStringLiteral("addressLow")))
        data->setAddressLow(values.value(QStringLiteral("addressLow")).toInt());
    if (values.contains(QStringLiteral("addressHigh")))
        data->setAddressHigh(values.value(QStringLiteral("addressHigh")).toInt());
    if (values.contains(QStringLiteral("softAddressMin")))
        data->setSoftAddressMin(values.value(QStringLiteral("softAddressMin")).toInt());
    if (values.contains(QStringLiteral("softAddressMax")))
        data->setSoftAddressMax(values.value(QStringLiteral("softAddressMax")).toInt());
    if (values.contains(QStringLiteral("softAddressDefault")))
        data->setSoftAddressDefault(values.value(QStringLiteral("softAddressDefault")).toInt());
}

} // namespace CommunicationControl
