#include "QLmDialog.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

QLmDialog::QLmDialog(QWidget *parent)
    : QDialog(parent)
    , m_body(new QVBoxLayout)
    , m_ok(new QPushButton(tr("OK"), this))
    , m_cancel(new QPushButton(tr("Cancel"), this))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(m_body, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    layout->addLayout(buttons);
    connect(m_ok, &QPushButton::clicked, this, [this] {
        if (PreAccept())
            accept();
    });
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        if (PreClose())
            reject();
    });
}

void QLmDialog::SetContainer(QWidget *widget)
{
    if (widget)
        m_body->addWidget(widget);
}

void QLmDialog::ShowBtn(bool showOk, bool showCancel)
{
    m_ok->setVisible(showOk);
    m_cancel->setVisible(showCancel);
}

void QLmDialog::SetTitle(const QString &title)
{
    setWindowTitle(title);
}
