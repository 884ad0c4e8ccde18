#pragma once

#include "BaseItem.h"

namespace CommunicationControl {

// A section heading of the parameter panel; it has no gateway value.
class CategoryData : public BaseItem
{
    Q_OBJECT
    Q_PROPERTY(bool partLineVisible READ partLineVisible WRITE setPartLineVisible NOTIFY partLineVisibleChanged)

public:
    CategoryData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent);

    bool partLineVisible() const { return m_partLineVisible; }
    void setPartLineVisible(bool visible);

signals:
    void partLineVisibleChanged();

private:
    bool m_partLineVisible = true;
};

} // namespace CommunicationControl
