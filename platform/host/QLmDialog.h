#pragma once
// Host standard dialog frame: a body that holds one widget and an OK / Cancel
// button row.

#include <QDialog>

class QBoxLayout;
class QPushButton;

class QLmDialog : public QDialog
{
    Q_OBJECT
public:
    explicit QLmDialog(QWidget *parent = nullptr);

    void SetContainer(QWidget *widget);
    void ShowBtn(bool showOk, bool showCancel);
    void SetTitle(const QString &title);

protected:
    virtual bool PreAccept() { return true; }
    virtual bool PreClose() { return true; }

private:
    QBoxLayout *m_body;
    QPushButton *m_ok;
    QPushButton *m_cancel;
};
