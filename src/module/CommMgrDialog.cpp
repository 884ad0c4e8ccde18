#include "CommMgrDialog.h"

#include "CommManagerModule.h"
#include "GwPlatform.h"
#include "LanguageHelper.h"

#include <QWidget>
#include <new>

namespace {
constexpr int kPageWidth = 1130;
constexpr int kPageHeight = 680;
} // namespace

CommMgrDialog::CommMgrDialog(QWidget *parent)
    : QLmDialog(parent)
    , m_module(new (std::nothrow) CommManagerModule(nullptr))
{
    if (m_module) {
        QWidget *container = QWidget::createWindowContainer(m_module, this);
        container->setMinimumSize(kPageWidth, kPageHeight);
        SetContainer(container);
    }
    ShowBtn(false, false);
    SetTitle(LanguageHelper::Translate("Lumora", ""));
}

int CommMgrDialog::Init(QString first, QString second)
{
    if (!m_module)
        return int(GW_ERR_NO_MEMORY);
    return m_module->Init(first, second);
}
