#pragma once
// Host command service: commands carry their condition and answer records
// and are executed by the service, which fills the answer and a result record.

#include <cstdint>
#include <cstring>

namespace LmCore {

// Result of every command: message, status, error code.
struct COMMAND_RESULT__ {
    char message[1024];
    int32_t status;
    int32_t errorCode;
};

enum CommandStatus : int32_t {
    CMD_STATUS_FAILED = 0,
    CMD_STATUS_SUCCESS = 1,
    CMD_STATUS_PENDING = 2,
    CMD_STATUS_ERROR = 3,
};

struct MODULE_INFO_LIST_CONDITION_BY_TYPE__ {
    int32_t moduleType;
};

struct MODULE_INFO__ {
    int32_t moduleId;
    int32_t moduleType;
    char moduleName[64];
    char displayName[256];
};

// A counted array owned by the container.
template <typename T>
struct LM_VALUE_CONTAINER__ {
    int32_t count = 0;
    T *entries = nullptr;
    LM_VALUE_CONTAINER__() = default;
    LM_VALUE_CONTAINER__(const LM_VALUE_CONTAINER__ &) = delete;
    LM_VALUE_CONTAINER__ &operator=(const LM_VALUE_CONTAINER__ &) = delete;
    ~LM_VALUE_CONTAINER__() { delete[] entries; }
};

using MODULE_INFO_LIST__ = LM_VALUE_CONTAINER__<MODULE_INFO__>;

struct RUN_PARAM_CONDITION__ {
    int32_t moduleNumber;
    char paramName[128];
};

class Command
{
public:
    Command() { std::memset(&result, 0, sizeof(result)); }
    virtual ~Command() = default;
    COMMAND_RESULT__ result;
};

template <typename Condition, typename Answer>
class QueryCommand : public Command
{
public:
    QueryCommand() { std::memset(&condition, 0, sizeof(condition)); }
    Condition condition;
    Answer answer{};
};

class AddModuleCommand : public Command
{
public:
    AddModuleCommand()
    {
        std::memset(moduleName, 0, sizeof(moduleName));
        std::memset(displayName, 0, sizeof(displayName));
    }
    int32_t moduleNumber = 0;
    char moduleName[64];
    char displayName[256]; // UTF-8
};

class ICommandService
{
public:
    virtual ~ICommandService() = default;
    // Runs the command, fills its answer and result, and returns the result.
    virtual COMMAND_RESULT__ Execute(Command &command) = 0;
};

} // namespace LmCore

// Answer of a run-parameter query.
struct ILMX_MODULE_PARAM__ {
    char paramName[128];
    char paramValue[512]; // NUL-terminated text
};
