#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariantList>

using ParamMap = QMap<QByteArray, QByteArray>;

struct StoredAddress {
    int id = 0;
    int direction = 0;
    QByteArray name;
    ParamMap params;
};

struct StoredModule {
    int id = 0;
    QByteArray type;
    QByteArray name;
    bool open = false;
    ParamMap params;
    QList<StoredAddress> addresses;
    // Parameters stored for addresses the module has without creating them
    // (PROFINET's fixed addresses), by address id.
    QMap<int, ParamMap> builtInAddressParams;
};

// The gateway's state in an SQLite database ("gateway.db" in the state
// directory): modules, names, parameters and addresses. Every change is one
// transaction in WAL mode with synchronous FULL, so a process killed at any
// moment loses at most the change in flight and never what was committed.
class ModuleStore
{
public:
    ModuleStore();
    ~ModuleStore();
    ModuleStore(const ModuleStore &) = delete;
    ModuleStore &operator=(const ModuleStore &) = delete;

    bool open(const QString &stateDir);
    QString lastError() const { return m_lastError; }

    // Every module in creation order, with its parameters and addresses.
    QList<StoredModule> load();
    // Stores a new module with the next unused id (ids are never reused);
    // 0 when the database refused.
    int addModule(const QByteArray &type, const QByteArray &name, const ParamMap &params);
    bool deleteModule(int id);
    bool renameModule(int id, const QByteArray &name);
    bool setOpen(int id, bool open);
    // Address -1 stands for the module itself.
    bool setParams(int moduleId, int addressId, const ParamMap &params);
    bool addAddress(int moduleId, const StoredAddress &address);
    bool deleteAddress(int moduleId, int addressId);

private:
    template<typename Fn>
    bool transaction(Fn &&body);
    bool exec(const QString &sql, const QVariantList &values = {});
    bool writeParams(int moduleId, int addressId, const ParamMap &params);

    QString m_connection;
    QString m_lastError;
};
