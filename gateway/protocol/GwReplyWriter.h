#pragma once

#include "GwWireWriter.h"

#include <cstdint>
#include <string>

// Builds a reply frame. A reply's payload begins with its code, which is
// known only once the answer fields are written: the writer keeps the code's
// place at the front and finish() fills it in. The answer fields stay only
// when the code carries an answer; otherwise the reply is the code alone.
class GwReplyWriter
{
public:
    explicit GwReplyWriter(uint32_t seq);

    // Where the answer fields are written.
    GwWireWriter &answer() { return m_writer; }
    // The finished frame; the writer is empty afterwards.
    std::string finish(uint32_t code);

    // GW_OK, and GW_ERR_PENDING_REOPEN (accepted, takes effect on the next open).
    static bool carriesAnswer(uint32_t code);

private:
    GwWireWriter m_writer;
};
