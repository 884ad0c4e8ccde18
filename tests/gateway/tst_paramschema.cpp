// The parameter rules of every module type and fieldbus address: each key's
// default, the edges of its range and the code that refuses a value past
// them. These are the rules the stream devices rely on without checking.
#include "GwErrorCodes.h"
#include "ParamSchema.h"

#include <QtTest>

using ParamMap = QMap<QByteArray, QByteArray>;

namespace {
// "EipModule" for a module type's schema, "EipModule address" for the
// schema of its addresses.
const ParamSchema *schemaNamed(const QByteArray &name)
{
    const QByteArray suffix = " address";
    return name.endsWith(suffix) ? ParamSchema::forAddressOf(name.chopped(suffix.size()))
                                 : ParamSchema::forModuleType(name);
}
} // namespace

class tst_ParamSchema : public QObject
{
    Q_OBJECT
private slots:
    void validate_data();
    void validate();
    void defaults_data();
    void defaults();
};

void tst_ParamSchema::validate_data()
{
    QTest::addColumn<QByteArray>("schema");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<quint32>("code");
    auto row = [](const QByteArray &schema, const QByteArray &key, const QByteArray &value, quint32 code,
                  const char *what) {
        QTest::addRow("%s %s %s", schema.constData(), key.constData(), what) << schema << key << value << code;
    };

    // Integers: both ends accepted, one past either end refused.
    struct Range {
        const char *schema;
        const char *key;
        int min;
        int max;
        quint32 refusal;
    };
    const Range ranges[] = {
        {"TcpClientModule", "TargetPort", 1, 65535, GW_ERR_INVALID_PORT},
        {"TcpClientModule", "ReconnectInterval", 100, 600000, GW_ERR_INVALID_VALUE},
        {"InsightModule", "ReconnectInterval", 100, 600000, GW_ERR_INVALID_VALUE},
        {"TcpServerModule", "LocalPort", 1, 65535, GW_ERR_INVALID_PORT},
        {"TcpServerModule", "MaxConnections", 1, 64, GW_ERR_INVALID_VALUE},
        {"UdpModule", "LocalPort", 1, 65535, GW_ERR_INVALID_PORT},
        {"UdpModule", "TargetPort", 1, 65535, GW_ERR_INVALID_PORT},
        {"SerialModule", "BaudRate", 50, 4000000, GW_ERR_INVALID_VALUE},
        {"ProfinetModule", "Heartbeat", 100, 60000, GW_ERR_INVALID_VALUE},
        {"EipModule", "Heartbeat", 100, 60000, GW_ERR_INVALID_VALUE},
        {"EipModule", "InputAssembly", 1, 65535, GW_ERR_INVALID_VALUE},
        {"EipModule", "OutputAssembly", 1, 65535, GW_ERR_INVALID_VALUE},
        {"ProfinetModule address", "IntDataType", 1, 3, GW_ERR_INVALID_VALUE},
        {"EipModule address", "IntDataType", 1, 2, GW_ERR_INVALID_VALUE},
        {"ProfinetModule address", "SoftElementAddress", 0, 65535, GW_ERR_INVALID_VALUE},
        {"EipModule address", "SoftElementNum", 1, 256, GW_ERR_INVALID_VALUE},
        {"ProfinetModule address", "OverTime", 0, 600000, GW_ERR_INVALID_VALUE},
    };
    for (const Range &r : ranges) {
        row(r.schema, r.key, QByteArray::number(r.min), GW_OK, "lowest");
        row(r.schema, r.key, QByteArray::number(r.max), GW_OK, "highest");
        row(r.schema, r.key, QByteArray::number(qint64(r.min) - 1), r.refusal, "below");
        row(r.schema, r.key, QByteArray::number(qint64(r.max) + 1), r.refusal, "above");
    }
    row("UdpModule", "TargetPort", "80a", GW_ERR_INVALID_VALUE, "not a number");
    row("SerialModule", "BaudRate", QByteArray(640, '1'), GW_ERR_VALUE_TOO_LONG, "over the value field");

    // Choices: QSerialPort's codes only.
    row("SerialModule", "DataBits", "5", GW_OK, "fewest");
    row("SerialModule", "DataBits", "9", GW_ERR_INVALID_VALUE, "too many");
    row("SerialModule", "Parity", "2", GW_OK, "even");
    row("SerialModule", "Parity", "1", GW_ERR_INVALID_VALUE, "unused code");
    row("SerialModule", "StopBits", "3", GW_OK, "one and a half");
    row("SerialModule", "StopBits", "0", GW_ERR_INVALID_VALUE, "none");
    row("SerialModule", "FlowControl", "3", GW_ERR_INVALID_VALUE, "unknown");

    // Texts: up to their length.
    row("TcpServerModule", "EndChar", QByteArray(8, ';'), GW_OK, "longest");
    row("UdpModule", "EndChar", QByteArray(9, ';'), GW_ERR_VALUE_TOO_LONG, "too long");
    row("SerialModule", "PortName", QByteArray(256, 'p'), GW_ERR_VALUE_TOO_LONG, "too long");
    row("ProfinetModule", "StationName", QByteArray(241, 's'), GW_ERR_VALUE_TOO_LONG, "too long");
    row("EipModule address", "AddressName", QByteArray(511, 'a'), GW_OK, "longest");

    // Addresses: a canonical dotted quad; a local one must be of this host.
    row("TcpClientModule", "TargetIP", "10.0.0.1", GW_OK, "dotted quad");
    row("TcpClientModule", "TargetIP", "1.2.3", GW_ERR_INVALID_IP, "short form");
    row("UdpModule", "TargetIP", "192.168.001.10", GW_ERR_INVALID_IP, "leading zero");
    row("UdpModule", "TargetIP", "::1", GW_ERR_INVALID_IP, "IPv6");
    row("UdpModule", "TargetIP", " 10.0.0.1", GW_ERR_INVALID_IP, "with a blank");
    row("TcpServerModule", "LocalIP", "127.0.0.1", GW_OK, "loopback");
    row("UdpModule", "LocalIP", "0.0.0.0", GW_OK, "any");
    row("TcpServerModule", "LocalIP", "192.0.2.1", GW_ERR_INVALID_VALUE, "not of this host");
    row("ProfinetModule", "LocalIP", "local", GW_ERR_INVALID_IP, "not an address");

    // Booleans: the two words, lower case or capitalised.
    row("TcpClientModule", "AutoReconnect", "False", GW_OK, "capitalised");
    row("TcpClientModule", "AutoReconnect", "TRUE", GW_ERR_INVALID_VALUE, "upper case");
    row("ProfinetModule address", "Upload", "1", GW_ERR_INVALID_VALUE, "a number");

    // Address constraints: "label;min;max;first" with min <= first <= max.
    row("EipModule", "ReadAddressConstraints", "InputAssembly;10;20;10", GW_OK, "well formed");
    row("EipModule", "ReadAddressConstraints", "Input;10;5;7", GW_ERR_INVALID_VALUE, "max below min");
    row("ProfinetModule", "WriteAddressConstraints", "WriteAddress;0;9;10", GW_ERR_INVALID_VALUE, "first past max");
    row("ProfinetModule", "WriteAddressConstraints", "WriteAddress;0;9", GW_ERR_INVALID_VALUE, "three fields");

    // Keys of another type, or of nobody.
    row("UdpModule", "BaudRate", "9600", GW_ERR_UNKNOWN_KEY, "of another type");
    row("EipModule", "IntDataType", "1", GW_ERR_UNKNOWN_KEY, "of its addresses");
    row("TcpServerModule", "ConnectState", "true", GW_ERR_UNKNOWN_KEY, "is no stored parameter");
}

void tst_ParamSchema::validate()
{
    QFETCH(QByteArray, schema);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, value);
    QFETCH(quint32, code);
    const ParamSchema *rules = schemaNamed(schema);
    QVERIFY(rules);
    QCOMPARE(rules->validate(key, value), code);
}

void tst_ParamSchema::defaults_data()
{
    QTest::addColumn<QByteArray>("schema");
    QTest::addColumn<ParamMap>("expected"); // empty: the type has no schema
    // Every stream device ends its frames with CR LF unless told otherwise.
    const auto stream = [](ParamMap keys) {
        keys.insert("EndChar", "\r\n");
        return keys;
    };
    const ParamMap client = stream(
        {{"TargetIP", "127.0.0.1"}, {"TargetPort", "8000"}, {"ReconnectInterval", "3000"}, {"AutoReconnect", "true"}});
    const ParamMap address{{"IntDataType", "1"}, {"SoftElementAddress", "0"}, {"SoftElementNum", "1"},
                           {"OverTime", "1000"},  {"PollEnable", "true"},       {"Upload", "false"},
                           {"AddressName", ""}};
    QTest::newRow("TCP client") << QByteArray("TcpClientModule") << client;
    QTest::newRow("Insight, a TCP client") << QByteArray("InsightModule") << client;
    QTest::newRow("TCP server") << QByteArray("TcpServerModule")
                                << stream({{"LocalIP", "0.0.0.0"}, {"LocalPort", "8000"}, {"MaxConnections", "8"}});
    QTest::newRow("UDP") << QByteArray("UdpModule")
                         << stream({{"LocalIP", "0.0.0.0"},
                                    {"LocalPort", "8001"},
                                    {"TargetIP", "127.0.0.1"},
                                    {"TargetPort", "8002"}});
    QTest::newRow("serial") << QByteArray("SerialModule")
                            << stream({{"PortName", ""},
                                       {"BaudRate", "9600"},
                                       {"DataBits", "8"},
                                       {"Parity", "0"},
                                       {"StopBits", "1"},
                                       {"FlowControl", "0"}});
    QTest::newRow("PROFINET") << QByteArray("ProfinetModule")
                              << ParamMap{{"StationName", "lumora-vision"},
                                          {"LocalIP", "0.0.0.0"},
                                          {"Heartbeat", "1000"},
                                          {"ReadAddressConstraints", "ReadAddress;0;1439;0"},
                                          {"WriteAddressConstraints", "WriteAddress;0;1439;0"}};
    QTest::newRow("EtherNet/IP") << QByteArray("EipModule")
                                 << ParamMap{{"InputAssembly", "100"},
                                             {"OutputAssembly", "150"},
                                             {"LocalIP", "0.0.0.0"},
                                             {"Heartbeat", "1000"},
                                             {"ReadAddressConstraints", "OutputAssembly;0;495;0"},
                                             {"WriteAddressConstraints", "InputAssembly;0;495;0"}};
    QTest::newRow("PROFINET address") << QByteArray("ProfinetModule address") << address;
    QTest::newRow("EtherNet/IP address") << QByteArray("EipModule address") << address;
    QTest::newRow("unknown type") << QByteArray("SerialPortModule") << ParamMap{};
    QTest::newRow("stream device has no addresses") << QByteArray("UdpModule address") << ParamMap{};
}

// Every key has its default, and every default passes its own rule.
void tst_ParamSchema::defaults()
{
    QFETCH(QByteArray, schema);
    QFETCH(ParamMap, expected);
    const ParamSchema *rules = schemaNamed(schema);
    if (expected.isEmpty()) {
        QVERIFY(!rules);
        return;
    }
    QVERIFY(rules);
    QCOMPARE(rules->defaults(), expected);
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QVERIFY2(rules->validate(it.key(), it.value()) == GW_OK, it.key().constData());
}

QTEST_GUILESS_MAIN(tst_ParamSchema)
#include "tst_paramschema.moc"
