#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>

// The fixed parameter set of a module type (or of a fieldbus address):
// every key with its default and the rule its text value must follow. This
// is the one place of these rules: a value is checked here before it is
// stored, and the devices only convert what they are given (ParamReader).
class ParamSchema
{
public:
    enum class Kind { Integer, Port, Ip, LocalIp, Bool, Text, Choice, Constraints };
    // Stored: a setting, kept in the database. ReadOnly: shown by the
    // device (its state, counters, peers); writing it is refused. Action: a
    // write makes the device do something and nothing is stored.
    enum class Access { Stored, ReadOnly, Action };

    struct Key {
        QByteArray name;
        QByteArray defaultValue;
        Kind kind;
        int min = 0;          // Integer; Text/bytes: unused
        int max = 0;          // Integer upper bound; Text: maximum length in bytes
        QList<int> choices{}; // Choice
        Access access = Access::Stored;
        bool integerValued() const { return kind == Kind::Integer || kind == Kind::Port || kind == Kind::Choice; }
    };

    // The schema of a module type, or nullptr for an unknown type.
    static const ParamSchema *forModuleType(const QByteArray &type);
    // The schema of one address of a fieldbus module type (nullptr if none).
    static const ParamSchema *forAddressOf(const QByteArray &type);

    const Key *find(const QByteArray &name) const;
    // Longest value a parameter record can carry (640-byte field with its
    // NUL): also the most a read-only value such as "Peers" shows.
    static constexpr int kMaxValueBytes = 639;

    // GW_OK, or GW_ERR_UNKNOWN_KEY / GW_ERR_INVALID_VALUE / GW_ERR_INVALID_PORT
    // / GW_ERR_INVALID_IP / GW_ERR_VALUE_TOO_LONG, or GW_ERR_NOT_SUPPORTED for
    // a read-only key.
    quint32 validate(const QByteArray &name, const QByteArray &value) const;
    // The stored keys with their defaults.
    QMap<QByteArray, QByteArray> defaults() const;
    Access access(const QByteArray &name) const;
    const QList<Key> &keys() const { return m_keys; }

    // Parses "label;min;max;default" into its three numbers.
    static bool parseConstraints(const QByteArray &text, int *min, int *max, int *first);
    // Whether an address's "SoftElementAddress" and "SoftElementNum" lie in
    // the area that `constraints` gives, each element taking
    // `unitsPerElement` units of the address axis (as the address tables
    // count them); a key that is missing is not checked. GW_OK,
    // GW_ERR_INVALID_VALUE (not a number, no element, more than an address
    // holds) or GW_ERR_ADDRESS_RANGE.
    static quint32 checkAddressRange(const QByteArray &constraints, int unitsPerElement,
                                     const QMap<QByteArray, QByteArray> &address);

    explicit ParamSchema(QList<Key> keys) : m_keys(std::move(keys)) {}

private:
    QList<Key> m_keys;
};
