#include "GwFrame.h"

bool gwIsKnownFrameKind(uint8_t kind)
{
    return kind >= uint8_t(GwFrameKind::Request) && kind <= uint8_t(GwFrameKind::Result);
}
