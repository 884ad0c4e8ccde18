#include "GwReplyWriter.h"

#include "GwErrorCodes.h"

GwReplyWriter::GwReplyWriter(uint32_t seq) : m_writer(GwFrameKind::Reply, seq)
{
    m_writer.u32(GW_OK); // the code's place
}

std::string GwReplyWriter::finish(uint32_t code)
{
    if (!carriesAnswer(code))
        m_writer.truncatePayload(sizeof code);
    m_writer.putU32(kGwHeaderSize, code);
    return m_writer.finish();
}

bool GwReplyWriter::carriesAnswer(uint32_t code)
{
    return code == GW_OK || code == GW_ERR_PENDING_REOPEN;
}
