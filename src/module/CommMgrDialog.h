#pragma once
// The host's standard dialog holding the module's window.

#include "QLmDialog.h"

class CommManagerModule;

class CommMgrDialog : public QLmDialog
{
    Q_OBJECT
public:
    explicit CommMgrDialog(QWidget *parent = nullptr);

    int Init(QString first, QString second);
    CommManagerModule *module() const { return m_module; }

private:
    CommManagerModule *m_module = nullptr;
};
