#pragma once
// Gateway error codes and user texts as the operator reads them. Codes are
// looked up in the "ErrorCode" translation context under "0x" + upper-case
// hex; user keys in the "Lumora" context.

#include <QString>

// "0x" + the code's 32-bit pattern in upper-case hex without leading zeros.
QString errorCodeKey(int code);

// The message for a gateway error code; untranslated is set when the tables
// have no entry (the key itself is returned then).
QString ERRORCODE_TR(int code, bool &untranslated);
// The same message, for callers that do not ask whether it was translated.
QString errorCodeText(int code);

// The translation of a user text key in the "Lumora" context.
QString lumoraTr(const QString &key);
