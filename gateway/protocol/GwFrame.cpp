#include "GwFrame.h"

#include <chrono>
#include <cstring>

bool gwIsKnownFrameKind(uint8_t kind)
{
    return kind >= uint8_t(GwFrameKind::Request) && kind <= uint8_t(GwFrameKind::DeadlineRequest);
}

void gwSetFrameSeq(std::string &frame, uint32_t seq)
{
    std::memcpy(&frame[kGwSeqOffset], &seq, sizeof(seq));
}

void gwAddDeadline(std::string &frame, uint64_t deadlineUs)
{
    frame.insert(kGwHeaderSize, reinterpret_cast<const char *>(&deadlineUs), sizeof(deadlineUs));
    frame[3] = char(GwFrameKind::DeadlineRequest);
    uint32_t length = 0;
    std::memcpy(&length, &frame[kGwLengthOffset], sizeof(length));
    length += uint32_t(sizeof(deadlineUs));
    std::memcpy(&frame[kGwLengthOffset], &length, sizeof(length));
}

bool gwTakeDeadline(GwFrame &frame, uint64_t &deadlineUs)
{
    if (frame.payload.size() < sizeof(deadlineUs))
        return false;
    std::memcpy(&deadlineUs, frame.payload.data(), sizeof(deadlineUs));
    frame.payload.erase(0, sizeof(deadlineUs));
    frame.kind = GwFrameKind::Request;
    return true;
}

uint64_t gwMonotonicMicros()
{
    return uint64_t(
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count());
}
