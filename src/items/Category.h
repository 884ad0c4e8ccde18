#pragma once

#include "BaseItemProxy.h"
#include "CategoryData.h"

namespace CommunicationControl {

// Proxy of a "Category" item: reads its element and owns its CategoryData.
class Category : public BaseItemProxy
{
    Q_OBJECT
    Q_PROPERTY(CommunicationControl::CategoryData *data READ data NOTIFY dataChanged)

public:
    explicit Category(QObject *parent);

    CategoryData *data() const { return dataAs<CategoryData>(); }
    void CreateControl(tinyxml2::XMLElement *element) override;

};

} // namespace CommunicationControl
