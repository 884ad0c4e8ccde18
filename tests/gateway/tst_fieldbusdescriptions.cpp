// The shipped descriptions of the fieldbus device types against the
// gateway: each address table takes the ids the gateway gives its
// direction, its soft-element limits (where given) are the gateway's area,
// and a new address with the description's defaults is one the gateway
// accepts. The two sides are kept by different hands; this keeps them one.
#include "FieldbusModule.h"
#include "GwErrorCodes.h"
#include "GwPlatform.h"
#include "ParamSchema.h"

#include <QtTest>
#include <tinyxml2.h>

namespace {
// The first element below `parent` (at any depth) with a child `child`
// whose text is `text`.
const tinyxml2::XMLElement *findWithChild(const tinyxml2::XMLElement *parent, const char *child, const char *text)
{
    for (auto *e = parent->FirstChildElement(); e; e = e->NextSiblingElement()) {
        const tinyxml2::XMLElement *c = e->FirstChildElement(child);
        if (c && c->GetText() && QByteArray(c->GetText()).trimmed() == text)
            return e;
        if (const tinyxml2::XMLElement *found = findWithChild(e, child, text))
            return found;
    }
    return nullptr;
}

QString descriptionFile(const QByteArray &type, const char *suffix)
{
    return QStringLiteral("%1/%2/%2%3").arg(qEnvironmentVariable("LM_MODULES_DIR"), QString::fromLatin1(type),
                                            QLatin1String(suffix));
}
} // namespace

class tst_FieldbusDescriptions : public QObject
{
    Q_OBJECT
private slots:
    void descriptions_agreeWithGateway_data();
    void descriptions_agreeWithGateway();
};

void tst_FieldbusDescriptions::descriptions_agreeWithGateway_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<int>("direction");
    for (const char *type : {"ProfinetModule", "EipModule"}) {
        QTest::addRow("%s read", type) << QByteArray(type) << GW_ADDRESS_READ;
        QTest::addRow("%s write", type) << QByteArray(type) << GW_ADDRESS_WRITE;
    }
}

void tst_FieldbusDescriptions::descriptions_agreeWithGateway()
{
    QFETCH(QByteArray, type);
    QFETCH(int, direction);
    StoredModule stored;
    stored.type = type;
    const ParamSchema *schema = ParamSchema::forModuleType(type);
    QVERIFY(schema);
    stored.params = schema->defaults();
    const FieldbusModule gateway(stored, *schema);

    tinyxml2::XMLDocument items;
    QCOMPARE(items.LoadFile(qPrintable(descriptionFile(type, "AlgorithmTab.xml"))), tinyxml2::XML_SUCCESS);
    const tinyxml2::XMLElement *table =
        findWithChild(items.RootElement(), "AddAddressType", QByteArray::number(direction).constData());
    QVERIFY2(table, "the description has a table of this direction");
    auto number = [table](const char *name, int *value) {
        const tinyxml2::XMLElement *e = table->FirstChildElement(name);
        return e && e->QueryIntText(value) == tinyxml2::XML_SUCCESS;
    };
    int low = 0, high = 0;
    QVERIFY(number("AddressLow", &low) && number("AddressHigh", &high));
    QCOMPARE(low, FieldbusModule::idRange(direction).low);
    QCOMPARE(high, FieldbusModule::idRange(direction).high);
    int min = 0, max = 0, first = 0, value = 0;
    QVERIFY(ParamSchema::parseConstraints(
        stored.params.value(direction == GW_ADDRESS_READ ? "ReadAddressConstraints" : "WriteAddressConstraints"),
        &min, &max, &first));
    if (number("SoftElementAddressMinValue", &value))
        QCOMPARE(value, min);
    if (number("SoftElementAddressMaxValue", &value))
        QCOMPARE(value, max);
    if (number("SoftElementAddressDefaultValue", &value))
        QCOMPARE(value, first);

    // A new address as the add dialog starts it.
    tinyxml2::XMLDocument defaults;
    QCOMPARE(defaults.LoadFile(qPrintable(descriptionFile(type, "AddressAlgorithmTab.xml"))), tinyxml2::XML_SUCCESS);
    ParamMap address;
    for (auto *e = defaults.RootElement()->FirstChildElement(); e; e = e->NextSiblingElement()) {
        const tinyxml2::XMLElement *cur = e->FirstChildElement("CurValue");
        const tinyxml2::XMLElement *def = e->FirstChildElement("DefaultValue");
        const char *text = cur && cur->GetText() ? cur->GetText() : def ? def->GetText() : nullptr;
        if (e->Attribute("Name") && text)
            address.insert(e->Attribute("Name"), QByteArray(text).trimmed());
    }
    QVERIFY(address.contains("SoftElementAddress") && address.contains("SoftElementNum"));
    const ParamSchema *addressSchema = ParamSchema::forAddressOf(type);
    for (auto it = address.cbegin(); it != address.cend(); ++it)
        QVERIFY2(addressSchema->validate(it.key(), it.value()) == GW_OK, it.key().constData());
    QCOMPARE(gateway.validateAddress(direction, address), GW_OK);
}

QTEST_GUILESS_MAIN(tst_FieldbusDescriptions)
#include "tst_fieldbusdescriptions.moc"
