#include "ModuleStore.h"

#include <QDir>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSet>
#include <QSqlQuery>
#include <QVariant>
#include <atomic>

namespace {
constexpr char kFileName[] = "gateway.db";

const char *const kSchema[] = {
    "CREATE TABLE IF NOT EXISTS meta(key TEXT PRIMARY KEY, value INTEGER NOT NULL)",
    "CREATE TABLE IF NOT EXISTS modules(id INTEGER PRIMARY KEY, type TEXT NOT NULL, name BLOB NOT NULL,"
    " open INTEGER NOT NULL DEFAULT 0)",
    "CREATE TABLE IF NOT EXISTS params(module INTEGER NOT NULL, address INTEGER NOT NULL, key TEXT NOT NULL,"
    " value BLOB NOT NULL, PRIMARY KEY(module, address, key))",
    "CREATE TABLE IF NOT EXISTS addresses(module INTEGER NOT NULL, id INTEGER NOT NULL,"
    " direction INTEGER NOT NULL, name BLOB NOT NULL, PRIMARY KEY(module, id))",
    "INSERT OR IGNORE INTO meta(key, value) VALUES('next_module_id', 1)",
};

QString uniqueConnectionName()
{
    static std::atomic<int> counter{0};
    return QStringLiteral("gateway-store-%1").arg(++counter);
}
} // namespace

ModuleStore::ModuleStore() : m_connection(uniqueConnectionName()) {}

ModuleStore::~ModuleStore()
{
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        if (db.isValid())
            db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
}

bool ModuleStore::open(const QString &stateDir)
{
    if (!QDir().mkpath(stateDir)) {
        m_lastError = QStringLiteral("cannot create %1").arg(stateDir);
        return false;
    }
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(QDir(stateDir).filePath(QLatin1String(kFileName)));
    if (!db.open()) {
        m_lastError = db.lastError().text();
        return false;
    }
    if (!exec(QStringLiteral("PRAGMA journal_mode=WAL")) || !exec(QStringLiteral("PRAGMA synchronous=FULL")))
        return false;
    return transaction([this] {
        for (const char *sql : kSchema)
            if (!exec(QLatin1String(sql)))
                return false;
        return true;
    });
}

bool ModuleStore::exec(const QString &sql, const QVariantList &values)
{
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    if (!query.prepare(sql)) {
        m_lastError = query.lastError().text();
        return false;
    }
    for (const QVariant &value : values)
        query.addBindValue(value);
    if (!query.exec()) {
        m_lastError = query.lastError().text();
        return false;
    }
    return true;
}

template<typename Fn>
bool ModuleStore::transaction(Fn &&body)
{
    m_lastError.clear();
    QSqlDatabase db = QSqlDatabase::database(m_connection, false);
    if (!db.isOpen() || !db.transaction()) {
        m_lastError = db.isOpen() ? db.lastError().text() : QStringLiteral("database not open");
        return false;
    }
    if (body() && db.commit())
        return true;
    if (m_lastError.isEmpty())
        m_lastError = db.lastError().text();
    db.rollback();
    return false;
}

QList<StoredModule> ModuleStore::load()
{
    QList<StoredModule> modules;
    QSqlDatabase db = QSqlDatabase::database(m_connection, false);
    QSqlQuery query(db);
    query.exec(QStringLiteral("SELECT id, type, name, open FROM modules ORDER BY id"));
    while (query.next()) {
        StoredModule module;
        module.id = query.value(0).toInt();
        module.type = query.value(1).toString().toUtf8();
        module.name = query.value(2).toByteArray();
        module.open = query.value(3).toBool();
        modules.append(module);
    }
    QSqlQuery params(db);
    params.exec(QStringLiteral("SELECT module, address, key, value FROM params"));
    QMap<QPair<int, int>, ParamMap> paramsOf;
    while (params.next())
        paramsOf[{params.value(0).toInt(), params.value(1).toInt()}].insert(params.value(2).toString().toUtf8(),
                                                                            params.value(3).toByteArray());
    QSqlQuery addresses(db);
    addresses.exec(QStringLiteral("SELECT module, id, direction, name FROM addresses ORDER BY module, id"));
    QMap<int, QList<StoredAddress>> addressesOf;
    QSet<QPair<int, int>> created;
    while (addresses.next()) {
        StoredAddress address;
        address.id = addresses.value(1).toInt();
        address.direction = addresses.value(2).toInt();
        address.name = addresses.value(3).toByteArray();
        const int module = addresses.value(0).toInt();
        address.params = paramsOf.value({module, address.id});
        addressesOf[module].append(address);
        created.insert({module, address.id});
    }
    QMap<int, QMap<int, ParamMap>> builtInOf;
    for (auto it = paramsOf.cbegin(); it != paramsOf.cend(); ++it)
        if (it.key().second >= 0 && !created.contains(it.key()))
            builtInOf[it.key().first].insert(it.key().second, it.value());
    for (StoredModule &module : modules) {
        module.params = paramsOf.value({module.id, -1});
        module.addresses = addressesOf.value(module.id);
        module.builtInAddressParams = builtInOf.value(module.id);
    }
    return modules;
}

bool ModuleStore::writeParams(int moduleId, int addressId, const ParamMap &params)
{
    for (auto it = params.cbegin(); it != params.cend(); ++it)
        if (!exec(QStringLiteral("INSERT OR REPLACE INTO params(module, address, key, value) VALUES(?, ?, ?, ?)"),
                  {moduleId, addressId, QString::fromUtf8(it.key()), it.value()}))
            return false;
    return true;
}

int ModuleStore::addModule(const QByteArray &type, const QByteArray &name, const ParamMap &params)
{
    int id = 0;
    const bool ok = transaction([&] {
        QSqlQuery query(QSqlDatabase::database(m_connection, false));
        if (!query.exec(QStringLiteral("SELECT value FROM meta WHERE key = 'next_module_id'")) || !query.next())
            return false;
        id = query.value(0).toInt();
        return exec(QStringLiteral("UPDATE meta SET value = ? WHERE key = 'next_module_id'"), {id + 1})
            && exec(QStringLiteral("INSERT INTO modules(id, type, name, open) VALUES(?, ?, ?, 0)"),
                    {id, QString::fromUtf8(type), name})
            && writeParams(id, -1, params);
    });
    return ok ? id : 0;
}

bool ModuleStore::deleteModule(int id)
{
    return transaction([&] {
        return exec(QStringLiteral("DELETE FROM params WHERE module = ?"), {id})
            && exec(QStringLiteral("DELETE FROM addresses WHERE module = ?"), {id})
            && exec(QStringLiteral("DELETE FROM modules WHERE id = ?"), {id});
    });
}

bool ModuleStore::renameModule(int id, const QByteArray &name)
{
    return transaction([&] { return exec(QStringLiteral("UPDATE modules SET name = ? WHERE id = ?"), {name, id}); });
}

bool ModuleStore::setOpen(int id, bool open)
{
    return transaction(
        [&] { return exec(QStringLiteral("UPDATE modules SET open = ? WHERE id = ?"), {open ? 1 : 0, id}); });
}

bool ModuleStore::setParams(int moduleId, int addressId, const ParamMap &params)
{
    return transaction([&] {
        // An address's listed name follows its "AddressName".
        const bool renamed = addressId >= 0 && params.contains("AddressName");
        return writeParams(moduleId, addressId, params)
            && (!renamed
                || exec(QStringLiteral("UPDATE addresses SET name = ? WHERE module = ? AND id = ?"),
                        {params.value("AddressName"), moduleId, addressId}));
    });
}

bool ModuleStore::addAddress(int moduleId, const StoredAddress &address)
{
    return transaction([&] {
        return exec(QStringLiteral("INSERT INTO addresses(module, id, direction, name) VALUES(?, ?, ?, ?)"),
                    {moduleId, address.id, address.direction, address.name})
            && writeParams(moduleId, address.id, address.params);
    });
}

bool ModuleStore::deleteAddress(int moduleId, int addressId)
{
    return transaction([&] {
        return exec(QStringLiteral("DELETE FROM params WHERE module = ? AND address = ?"), {moduleId, addressId})
            && exec(QStringLiteral("DELETE FROM addresses WHERE module = ? AND id = ?"), {moduleId, addressId});
    });
}
