// Feeds arbitrary bytes to the frame decoder as both sides see them: in
// pieces of varying size, then every decoded frame's payload through the
// field reader the way the daemon's request handling and the client's push
// handling read them. Nothing may crash, hang or read out of bounds.
#include "GwFrameDecoder.h"
#include "GwWireReader.h"

#include <cstddef>
#include <cstdint>

namespace {
void readLikeAPeer(const GwFrame &frame)
{
    GwFrame plain = frame;
    uint64_t deadline = 0;
    if (plain.kind == GwFrameKind::DeadlineRequest && !gwTakeDeadline(plain, deadline))
        return;
    GwWireReader reader(plain.payload);
    switch (plain.kind) {
    case GwFrameKind::DeadlineRequest:
    case GwFrameKind::Request:
        reader.u16();
        reader.i32();
        reader.i32();
        for (uint32_t n = reader.u32(), i = 0; i < n && reader.ok(); ++i) {
            reader.bytes();
            reader.bytes();
        }
        break;
    case GwFrameKind::Reply:
        reader.u32();
        for (uint32_t n = reader.u32(), i = 0; i < n && reader.ok(); ++i) {
            reader.i32();
            reader.bytes();
        }
        break;
    case GwFrameKind::Event:
    case GwFrameKind::Result:
        reader.i32();
        reader.i32();
        reader.bytes();
        break;
    }
    (void)reader.done();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    GwFrameDecoder decoder;
    size_t offset = 0;
    size_t step = size ? (data[0] % 17) + 1 : 1;
    while (offset < size) {
        const size_t piece = std::min(step, size - offset);
        decoder.append(reinterpret_cast<const char *>(data) + offset, piece);
        offset += piece;
        step = step * 3 % 29 + 1;
        GwFrame frame;
        GwFrameDecoder::Status status;
        while ((status = decoder.next(frame)) == GwFrameDecoder::Status::Frame)
            readLikeAPeer(frame);
        if (status == GwFrameDecoder::Status::Error)
            break;
    }
    return 0;
}
