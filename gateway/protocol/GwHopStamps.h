#pragma once

#include <cstddef>
#include <cstdint>

// Time stamps of a line on its way through the gateway, for finding where
// the time of a request and its answer goes. Built only with the CMake
// option COMM_HOP_STAMPS (a benchmark build); otherwise GW_HOP_MARK is empty
// and costs nothing.
//
// A measured line carries its number as "#L" and six digits anywhere in its
// text. Each place the line passes calls GW_HOP_MARK with the bytes it holds;
// every number found there gets the monotonic time (CLOCK_MONOTONIC, the same
// clock in every process of the machine) for that hop. A process writes its
// stamps with gwHopDump: one line "hop number nanoseconds" each.
enum class GwHop : int {
    PeerWrite = 0,    // the peer wrote the line (benchmark)
    WorkerRead,       // the device's worker thread read it from the peer socket
    PushEncoded,      // the daemon encoded the frames as pushes (worker thread)
    SessionWrite,     // the client session sent the pushed frame
    ClientRead,       // the client library decoded the push (the thread that read it)
    Callback,         // the result callback was called
    RequestSent,      // the answer's request left the client library
    RequestRead,      // the daemon read the request
    WorkerWrite,      // the worker wrote the answer to the peer socket
    PeerRead,         // the peer read the answer (benchmark)
    Count
};

constexpr int kGwHopLineNumbers = 1000000; // six digits

const char *gwHopName(GwHop hop);
// Stamps every line number found in `data` for `hop`.
void gwHopMark(GwHop hop, const char *data, size_t size);
// The stamp of `line` at `hop`, 0 if none.
int64_t gwHopStamp(GwHop hop, int line);
// Writes every stamp taken in this process to `path`; false if it cannot.
bool gwHopDump(const char *path);
// Dumps to $GW_HOP_STAMPS_DIR/<name>.txt when that variable is set.
void gwHopDumpToEnvDir(const char *name);
int64_t gwHopNow();

#ifdef COMM_HOP_STAMPS
#define GW_HOP_MARK(hop, data, size) gwHopMark(hop, data, size)
#else
#define GW_HOP_MARK(hop, data, size) ((void)0)
#endif
