#pragma once

#include "ChannelStatus.h"

#include <atomic>
#include <cstdint>

// What a channel's worker thread publishes for callers on other threads.
struct ChannelState {
    std::atomic<bool> open{false};
    std::atomic<bool> connectState{false};
    std::atomic<bool> canSend{false};       // somebody to send to
    std::atomic<int64_t> queuedBytes{0};    // handed to the worker, not yet written
    std::atomic<int64_t> socketBacklog{0};  // written, not yet sent by the sockets
    std::atomic<uint64_t> droppedFrames{0};
    std::atomic<int64_t> inFlightBytes{0};  // emitted as frames, not yet taken by the consumer
    std::atomic<bool> readingHeld{false};   // the worker left bytes unread until it is resumed
    std::atomic<uint32_t> reservedPort{0};  // local port held while open, 0 if none
    ChannelStatus status;                   // state, counters and peers shown to the operator
};
