// Feeds request frames to the daemon's request handling the way a client's
// connection does: the bytes are cut into frames by the frame decoder, and
// each request is answered by a RequestHandler over a GatewayService whose
// state database is new for every input, in a temporary directory. Stream
// devices are LoopbackChannels, so no port is opened and no socket is left.
// Nothing may crash or leak, and every reply must be one well-formed reply
// frame that repeats the request's sequence number and carries answer
// fields only with a code that has them.
//
// The seeds in corpus/request_handler use every operation: a TCP server
// device through its life (stream_device), the other stream types switched
// on (stream_types), PROFINET and EtherNet/IP devices with addresses written
// and read from both sides (fieldbus_device, eip_device), the host's lists
// (host_lists), and refused payloads (refused).
#include "GatewayService.h"
#include "GwFrameDecoder.h"
#include "GwReplyWriter.h"
#include "GwWireReader.h"
#include "LoopbackChannel.h"
#include "RequestHandler.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {
QTemporaryDir *g_stateDir = nullptr;

void removeStateDir()
{
    delete g_stateDir;
    g_stateDir = nullptr;
}

void checkReply(const std::string &reply, uint32_t seq)
{
    GwFrameDecoder decoder;
    decoder.append(reply.data(), reply.size());
    GwFrame frame;
    if (decoder.next(frame) != GwFrameDecoder::Status::Frame || decoder.pending() != 0
        || frame.kind != GwFrameKind::Reply || frame.seq != seq)
        __builtin_trap();
    GwWireReader reader(frame.payload);
    const uint32_t code = reader.u32();
    if (!reader.ok() || (!GwReplyWriter::carriesAnswer(code) && !reader.done()))
        __builtin_trap();
}

void removeDatabase()
{
    const QDir dir(g_stateDir->path());
    for (const char *name : {"gateway.db", "gateway.db-wal", "gateway.db-shm"})
        QFile::remove(dir.filePath(QLatin1String(name)));
}
} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The daemon warns about what it refuses; here that is most inputs.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    new QCoreApplication(*argc, *argv); // lives as long as the process
    g_stateDir = new QTemporaryDir(QDir::tempPath() + QStringLiteral("/request-handler-fuzzer-XXXXXX"));
    if (!g_stateDir->isValid()) {
        std::fprintf(stderr, "request_handler_fuzzer: no temporary directory in %s\n", qPrintable(QDir::tempPath()));
        std::abort();
    }
    std::atexit(removeStateDir);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    {
        GatewayService service(&LoopbackChannel::create);
        if (!service.start(g_stateDir->path()))
            std::abort(); // the environment, not the input
        RequestHandler handler(service);
        GwFrameDecoder decoder;
        decoder.append(reinterpret_cast<const char *>(data), size);
        GwFrame frame;
        // A client session ends at the first frame that is not a request.
        while (decoder.next(frame) == GwFrameDecoder::Status::Frame && frame.kind == GwFrameKind::Request) {
            checkReply(handler.handle(frame.seq, frame.payload), frame.seq);
            QCoreApplication::sendPostedEvents(); // the devices' queued events and results
        }
        service.stop();
    }
    removeDatabase();
    return 0;
}
