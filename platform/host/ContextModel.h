#pragma once
// Host context model: announces host-wide situations to the modules.

#include <QObject>

class ContextModel : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
signals:
    void Sig_ServerSeized(QString reason);  // another client took over the server
    void Sig_loadSolBegin(QString solution); // a solution starts loading
};
