#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// One frame of the gateway wire protocol (layout in PROTOCOL.md beside this
// file): a 12-byte header and a payload of at most kGwMaxPayload bytes.
enum class GwFrameKind : uint8_t {
    Request = 1,  // client -> gateway: u16 op, then the op's fields
    Reply = 2,    // gateway -> client: u32 code, then the op's answer fields
    Event = 3,    // gateway -> client push: i32 type, bytes payload
    Result = 4,   // gateway -> client push: i32 module, i32 address, bytes data
    // client -> gateway, once the gateway's Hello answer offered it: u64
    // deadline, then a request's payload. The gateway drops it unanswered
    // when the deadline has passed before it gets to it.
    DeadlineRequest = 5,
};

constexpr uint8_t kGwMagic0 = 'G';
constexpr uint8_t kGwMagic1 = 'W';
constexpr uint8_t kGwProtocolVersion = 1;
constexpr size_t kGwHeaderSize = 12;
// The header's u32 fields; bytes 0 to 3 are the magic, the version and the kind.
constexpr size_t kGwSeqOffset = 4;
constexpr size_t kGwLengthOffset = 8;
// Large enough for a full parameter list (128 entries) and a 64 KiB frame of
// received data; anything larger is a broken or hostile peer.
constexpr uint32_t kGwMaxPayload = 1024 * 1024;

// The deadline of a DeadlineRequest: microseconds of CLOCK_MONOTONIC
// (std::chrono::steady_clock), the clock that every process of one host
// shares; the protocol runs on loopback only.
constexpr size_t kGwDeadlineSize = 8;
// Bit of the Hello answer's u32 features: the gateway takes DeadlineRequest.
constexpr uint32_t kGwFeatureDeadlines = 1u;

struct GwFrame {
    GwFrameKind kind = GwFrameKind::Request;
    uint32_t seq = 0;
    std::string payload;
};

// True for the kinds this protocol version defines.
bool gwIsKnownFrameKind(uint8_t kind);
// Numbers an encoded frame (of at least kGwHeaderSize bytes): a client
// builds a request first and gives it its sequence number when it sends it.
void gwSetFrameSeq(std::string &frame, uint32_t seq);
// Turns an encoded Request frame into a DeadlineRequest carrying `deadlineUs`.
void gwAddDeadline(std::string &frame, uint64_t deadlineUs);
// A DeadlineRequest's deadline, taken off its payload, which becomes a plain
// request's; false (frame unchanged) when the payload is too short.
bool gwTakeDeadline(GwFrame &frame, uint64_t &deadlineUs);
// Now on the deadline's clock.
uint64_t gwMonotonicMicros();
