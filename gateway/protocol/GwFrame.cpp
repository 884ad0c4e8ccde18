#include "GwFrame.h"

#include <cstring>

bool gwIsKnownFrameKind(uint8_t kind)
{
    return kind >= uint8_t(GwFrameKind::Request) && kind <= uint8_t(GwFrameKind::Result);
}

void gwSetFrameSeq(std::string &frame, uint32_t seq)
{
    std::memcpy(&frame[kGwSeqOffset], &seq, sizeof(seq));
}
