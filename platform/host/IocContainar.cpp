#include "IocContainar.h"

namespace LmCommon {

IocContainar &IocContainar::Instance()
{
    static IocContainar container;
    return container;
}

} // namespace LmCommon
