#include "CategoryData.h"

namespace CommunicationControl {

CategoryData::CategoryData(const _S_Comm_BasicDefaultInfo_ &info, QObject *parent)
    : BaseItem(info, parent)
{
}

void CategoryData::setPartLineVisible(bool visible)
{
    if (visible == m_partLineVisible)
        return;
    m_partLineVisible = visible;
    emit partLineVisibleChanged();
}

} // namespace CommunicationControl
