#pragma once

#include "BaseItem.h"

namespace CommunicationControl {

// The fixed PROFINET read and write addresses of a device. Their bit views come with the fieldbus address work; for now it carries the values its element gives.
class ProfinetFixedButtonData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(int readAddressId READ readAddressId WRITE setReadAddressId NOTIFY readAddressIdChanged)
    Q_PROPERTY(int writeAddressId READ writeAddressId WRITE setWriteAddressId NOTIFY writeAddressIdChanged)
    Q_PROPERTY(QString windowTitle READ windowTitle WRITE setWindowTitle NOTIFY windowTitleChanged)
    Q_PROPERTY(QString readAddressText READ readAddressText WRITE setReadAddressText NOTIFY readAddressTextChanged)
    Q_PROPERTY(QString writeAddressText READ writeAddressText WRITE setWriteAddressText NOTIFY writeAddressTextChanged)

public:
    ProfinetFixedButtonData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    int readAddressId() const { return m_readAddressId; }
    void setReadAddressId(int value);
    int writeAddressId() const { return m_writeAddressId; }
    void setWriteAddressId(int value);
    QString windowTitle() const { return m_windowTitle; }
    void setWindowTitle(const QString &value);
    QString readAddressText() const { return m_readAddressText; }
    void setReadAddressText(const QString &value);
    QString writeAddressText() const { return m_writeAddressText; }
    void setWriteAddressText(const QString &value);

signals:
    void readAddressIdChanged();
    void writeAddressIdChanged();
    void windowTitleChanged();
    void readAddressTextChanged();
    void writeAddressTextChanged();

private:
    int m_readAddressId = 0;
    int m_writeAddressId = 1000;
    QString m_windowTitle;
    QString m_readAddressText;
    QString m_writeAddressText;
};

} // namespace CommunicationControl
