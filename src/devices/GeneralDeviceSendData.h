#pragma once
// Model behind the send panel of ordinary devices: the text to send and
// whether it is to be read as hexadecimal, and the one pair of conversions
// between text and its hexadecimal form (the panel rewrites its field with
// them, gwSendData decodes with hexToString).

#include <QObject>
#include <QString>

class GeneralDeviceSendData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    Q_PROPERTY(bool hexEnable READ hexEnable WRITE setHexEnable NOTIFY hexEnableChanged FINAL)

public:
    explicit GeneralDeviceSendData(QObject *parent = nullptr);

    Q_INVOKABLE QString text() const { return m_text; }
    Q_INVOKABLE void setText(QString text); // stores only: the field already shows the text
    Q_INVOKABLE bool hexEnable() const { return m_hexEnable; }
    Q_INVOKABLE void setHexEnable(bool enable);

    // "AB" -> "41 42": each character's code in upper-case hexadecimal, at
    // least two digits, separated by single blanks.
    Q_INVOKABLE static QString stringToHex(const QString &text);
    // "41 42 00 43" -> "AB": blanks removed, an odd last digit dropped, other
    // characters that are not hexadecimal digits skipped, the bytes read as
    // Latin-1 and cut at the first zero byte; a null string when nothing decodes.
    Q_INVOKABLE static QString hexToString(const QString &hex);

signals:
    void textChanged();
    void hexEnableChanged();

private:
    QString m_text = QStringLiteral("TestData");
    bool m_hexEnable = false;
};
