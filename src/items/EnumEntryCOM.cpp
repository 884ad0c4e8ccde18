#include "EnumEntryCOM.h"

#include "GwXMLNodeItemFactory.h"
#include "ItemQmlRegistration.h"

#include <new>
#include <tinyxml2.h>

namespace CommunicationControl {

QObject *gwObjectCreatorEnumEntryCOM(QObject *parent)
{
    return new (std::nothrow) EnumEntryCOM(parent);
}

namespace {
GwNodeItemRegistration g_gwCreatorRegisterEnumEntryCOM("EnumEntryCOM", gwObjectCreatorEnumEntryCOM);
} // namespace

EnumEntryCOM::EnumEntryCOM(QObject *parent)
    : BaseItemProxy(parent)
{
    setQmlName(QStringLiteral("EnumEntryCOM.qml"));
    registerItemDataType<EnumEntryCOMData>("lm.cpp.EnumEntryCOM", "EnumEntryCOMData");
}

void EnumEntryCOM::setDeviceID(int id)
{
    if (m_data)
        m_data->setModuID(uint(id));
}

void EnumEntryCOM::CreateControl(tinyxml2::XMLElement *element)
{
    _S_Comm_BasicDefaultInfo_ info;
    QString current;
    const bool read = readItemElement(element, info, [&](tinyxml2::XMLElement *child) {
        if (isNamed(child, "CurValue"))
            current = xmlText(child);
    });
    if (!read)
        return;
    m_data = new (std::nothrow) EnumEntryCOMData(info, parent());
    if (!m_data)
        return;
    setBaseData(m_data);
    m_data->getComList();
    m_data->selectPort(current);
}

} // namespace CommunicationControl
