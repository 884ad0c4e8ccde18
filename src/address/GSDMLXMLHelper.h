#pragma once

#include <QMap>
#include <QString>

namespace tinyxml2 {
class XMLElement;
}

namespace CommunicationControl {

// Reads the bit names of PROFINET's two fixed addresses from the device
// description (ProfinetModule/ProfinetModuleFixedAddressParam.xml below the
// modules directory). Bits are keyed "byte.bit"; the PLC's input is what the
// vision station writes, so "Input" bits belong to the write address and
// "Output" bits to the read address. Used on the GUI thread only.
class GSDMLXMLHelper
{
public:
    static GSDMLXMLHelper &Instance();

    GSDMLXMLHelper() = default;
    GSDMLXMLHelper(const GSDMLXMLHelper &) = delete;
    GSDMLXMLHelper &operator=(const GSDMLXMLHelper &) = delete;

    // Reads the description once; after a failure the next call tries again.
    bool Init();
    // The primary language's text of a text id; empty when there is none.
    QString PrimaryLanguage(const QString &textId) const;

    bool ParseModuleListNode(tinyxml2::XMLElement *element);
    bool ParseModuleItemNode(tinyxml2::XMLElement *element);
    bool ParseDataItemNode(tinyxml2::XMLElement *element);
    bool ParsePrimaryLanguageNode(tinyxml2::XMLElement *element);

    // Bit key "byte.bit" to text id, in key order.
    const QMap<QString, QString> &readBitMap() const { return m_readBits; }
    const QMap<QString, QString> &writeBitMap() const { return m_writeBits; }

private:
    bool parseDocument(tinyxml2::XMLElement *root);

    bool m_initialised = false;
    QMap<QString, QString> m_readBits;
    QMap<QString, QString> m_writeBits;
    QMap<QString, QString> m_texts;
};

} // namespace CommunicationControl
