#include "DeviceItemBuilder.h"

#include "BaseItemProxy.h"
#include "CommDevice.h"
#include "CommLog.h"
#include "CommPaths.h"
#include "GwXMLNodeItemFactory.h"
#include "ModuXMLManage.h"

#include <QFile>
#include <cstring>
#include <new>
#include <tinyxml2.h>

namespace {
constexpr char kDeviceListFile[] = "DeviceItemInfo.xml";
} // namespace

const QStringList &DeviceItemBuilder::communicationTypes()
{
    static const QStringList types = {QStringLiteral("EipModule"),       QStringLiteral("ProfinetModule"),
                                      QStringLiteral("TcpClientModule"), QStringLiteral("TcpServerModule"),
                                      QStringLiteral("UdpModule"),       QStringLiteral("SerialModule")};
    return types;
}

QString DeviceItemBuilder::deviceListFileName()
{
    return QLatin1String(kDeviceListFile);
}

DeviceItemBuilder::DeviceItemBuilder(QObject *deviceParent)
    : m_deviceParent(deviceParent)
{
}

DeviceItemBuilder::~DeviceItemBuilder()
{
    destroyPendingDevice();
}

QStringList DeviceItemBuilder::InitDeviceItemInfoXML() const
{
    QStringList types;
    tinyxml2::XMLDocument doc(true, tinyxml2::PRESERVE_WHITESPACE);
    const QByteArray path = QFile::encodeName(CommPaths::modulesDir() + QLatin1String(kDeviceListFile));
    doc.LoadFile(path.constData());
    tinyxml2::XMLElement *root = doc.FirstChildElement();
    if (!root)
        return types;
    for (tinyxml2::XMLElement *items = root->FirstChildElement(); items; items = items->NextSiblingElement())
        if (std::strcmp(items->Name(), "Items") == 0)
            CheckCommOrControlDevice(items->FirstChildElement(), types);
    return types;
}

// Control devices ("Mode" 1) and types that are not communication devices are
// not offered.
void DeviceItemBuilder::CheckCommOrControlDevice(tinyxml2::XMLElement *first, QStringList &types)
{
    if (!first)
        return;
    QString name;
    bool controlDevice = false;
    for (tinyxml2::XMLElement *e = first; e; e = e->NextSiblingElement()) {
        if (std::strcmp(e->Name(), "Name") == 0)
            name = e->GetText() ? QString::fromUtf8(e->GetText()) : QString();
        else if (std::strcmp(e->Name(), "Mode") == 0)
            controlDevice = e->IntText(0) == 1;
    }
    if (!controlDevice && !name.isEmpty() && communicationTypes().contains(name))
        types.append(name);
}

bool DeviceItemBuilder::loadAlgorithmTabXML(const QString &deviceType)
{
    _S_TABXML_EVENTS_ events;
    events.itemCallback = [this](void *element, QString typeName) { ProcessItemsCallback(element, typeName); };
    destroyPendingDevice();
    m_pending = new (std::nothrow) CommDevice(deviceType, m_deviceParent);
    if (!m_pending)
        return false;
    const QByteArray type = deviceType.toUtf8();
    const int rc = m_pending->Init();
    if (rc != 0) {
        COMM_LOG(CommLogInfo, "[%s]CommDevice Init failed, error=0x%x", type.constData(), unsigned(rc));
        return false;
    }
    COMM_LOG(CommLogDetail, "loadAlgorithmTabXML[%s]", type.constData());
    const int parsed = ModuXMLManage::Instance()->ParseModuTabXML(deviceType, CommPaths::modulesDir(), events);
    if (parsed == -1) {
        COMM_LOG(CommLogInfo, "[%s]ParseModuTabXML failed, error=0x%x", type.constData(), unsigned(parsed));
        return false;
    }
    return true;
}

void DeviceItemBuilder::ProcessItemsCallback(void *element, const QString &typeName)
{
    auto *e = static_cast<tinyxml2::XMLElement *>(element);
    if (!e)
        return;
    const char *name = e->Attribute("Name");
    CreateControlItems(e, typeName, name ? QString::fromUtf8(name) : QString());
}

void DeviceItemBuilder::CreateControlItems(tinyxml2::XMLElement *element, const QString &typeName,
                                           const QString &name)
{
    if (!m_pending)
        return;
    QObject *created = GwXMLNodeItemFactory::Instance().CreateNodeItem(typeName, m_pending);
    if (!created || !element)
        return;
    auto *proxy = qobject_cast<BaseItemProxy *>(created);
    if (!proxy)
        return;
    COMM_LOG(CommLogDetail, "CreateControlItems<%s Name=%s>", typeName.toUtf8().constData(), name.toUtf8().constData());
    proxy->CreateControl(element);
    m_pending->AddDeviceItem(proxy);
}

QVector<BaseItemProxy *> DeviceItemBuilder::itemList(const QString &deviceType) const
{
    if (m_pending && m_pending->deviceType() == deviceType)
        return m_pending->items();
    return {};
}

CommDevice *DeviceItemBuilder::takePendingDevice()
{
    CommDevice *device = m_pending;
    m_pending = nullptr;
    return device;
}

void DeviceItemBuilder::destroyPendingDevice()
{
    delete m_pending;
    m_pending = nullptr;
}
