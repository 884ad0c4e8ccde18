// gwplc: plays the PLC of a simulated PROFINET or EtherNet/IP device of a
// running gatewayd: writes the addresses the vision side reads, reads and
// watches the addresses it writes. `gwplc --help` says how.
#include "FieldbusCodec.h"
#include "GwPlcSide.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr char kHelp[] = R"(usage: gwplc [--port N] list | write|read|watch MODULE [ADDRESS] ...

Plays the PLC of a simulated PROFINET or EtherNet/IP device of a running
gatewayd. MODULE is the device's module id and ADDRESS an address id, as
`gwplc list` shows them: read addresses (PLC -> vision) 1-999, write
addresses (vision -> PLC) 1001-1999, and on PROFINET the fixed read
address 0 and fixed write address 1000, whose bit 7 of the first byte is
the gateway's heartbeat.

Commands:
  list                              the PROFINET and EtherNet/IP devices and
                                    their addresses
  write MODULE ADDRESS HEX          set a read address (PLC -> vision) to the
                                    bytes HEX, e.g. 0a0b or "0a 0b"
  write MODULE ADDRESS --int LIST   the same with integers, e.g. 1,2,-3, one
                                    element each in the address's width
  write MODULE ADDRESS --float LIST the same with 32-bit floats, e.g. 1.5,2
  write MODULE ADDRESS --text TEXT  the same with the bytes of TEXT
      A write replaces the whole address; what it does not cover reads 0.
      With "Upload" on, the gateway pushes the new bytes to the vision side.
  read MODULE ADDRESS               print an address's bytes, e.g. what the
                                    vision side wrote to a write address
  watch MODULE [ADDRESS]            print the bytes of one address, or of
                                    every address of the module, each time
                                    they change, with a time stamp, until
                                    interrupted (Ctrl+C)
  read and watch print hex bytes, or with --int, --float or --text the
  values (text: printable characters, other bytes as [0A]).

Options:
  --port N      the gateway's port (default: $GATEWAY_PORT)
  --cycle MS    watch: how often the addresses are read, as a PLC's IO
                cycle (default 10); changes within one cycle show as one
  --help        this text

Integers and floats use the device's byte order: big-endian (network order)
on PROFINET, little-endian on EtherNet/IP.

Exit codes: 0 done; 1 the gateway refused (its code is printed); 2 wrong
usage; 3 no gateway on the port, or it went away.
)";

enum Exit { kDone = 0, kRefused = 1, kUsage = 2, kNoGateway = 3 };
enum class Form { Hex, Int, Float, Text };

struct Options {
    int port = 0;
    int cycleMs = 10;
    Form form = Form::Hex;
    std::vector<std::string> args; // command and its operands
};

std::atomic<bool> g_stop{false};

void onStopSignal(int)
{
    g_stop = true;
}

int usageError(const char *what)
{
    std::fprintf(stderr, "gwplc: %s\nTry 'gwplc --help'.\n", what);
    return kUsage;
}

bool toInt(const char *text, int *value)
{
    char *end = nullptr;
    errno = 0;
    const long parsed = std::strtol(text, &end, 10);
    if (errno || end == text || *end || parsed < -2147483647L - 1 || parsed > 2147483647L)
        return false;
    *value = int(parsed);
    return true;
}

const char *describe(uint32_t rc)
{
    switch (rc) {
    case GW_ERR_UNKNOWN_MODULE: return "no module with that id";
    case GW_ERR_UNKNOWN_ADDRESS: return "the module has no such address";
    case GW_ERR_WRONG_DIRECTION: return "the PLC writes read addresses only";
    case GW_ERR_NOT_OPEN: return "the device is not open (switch it on in the page)";
    case GW_ERR_VALUE_TOO_LONG: return "more bytes than the address holds";
    case GW_ERR_NOT_SUPPORTED: return "not a PROFINET or EtherNet/IP device";
    case GW_ERR_CONNECT_FAILED: return "no gateway listens on that port";
    case GW_ERR_CONNECTION_LOST: return "the gateway went away";
    case GW_ERR_TIMEOUT: return "the gateway did not answer";
    default: return "see GwErrorCodes.h";
    }
}

bool isGatewayGone(uint32_t rc)
{
    return rc == GW_ERR_CONNECT_FAILED || rc == GW_ERR_CONNECTION_LOST || rc == GW_ERR_TIMEOUT
        || rc == GW_ERR_NOT_INITIALISED;
}

int fail(const char *what, uint32_t rc)
{
    std::fprintf(stderr, "gwplc: %s failed, error=%X (%s)\n", what, unsigned(rc), describe(rc));
    return isGatewayGone(rc) ? kNoGateway : kRefused;
}

bool parseHex(const std::string &text, std::string *out)
{
    std::string digits;
    for (char c : text)
        if (c != ' ' && c != ':')
            digits += c;
    if (digits.empty() || digits.size() % 2 != 0)
        return false;
    for (size_t i = 0; i < digits.size(); i += 2) {
        char *end = nullptr;
        const std::string pair = digits.substr(i, 2);
        const long value = std::strtol(pair.c_str(), &end, 16);
        if (*end != '\0' || pair[0] == '-' || pair[0] == '+')
            return false;
        out->push_back(char(value));
    }
    return true;
}

uint32_t allModules(std::vector<GW_MODULE_INFO> *modules)
{
    modules->resize(1024);
    int count = 0;
    const uint32_t rc = GW_PF_GetAllModules(modules->data(), int(modules->size()), &count);
    modules->resize(rc == GW_OK ? size_t(count) : 0);
    return rc;
}

uint32_t addressesOf(int module, std::vector<GW_ADDRESS_INFO> *addresses)
{
    addresses->resize(999);
    int count = 0;
    const uint32_t rc = GW_PF_GetModuleAllAddressInfo(module, addresses->data(), int(addresses->size()), &count);
    addresses->resize(rc == GW_OK ? size_t(count) : 0);
    return rc;
}

// The values of some keys of an address, in order.
uint32_t addressParams(int module, int address, const std::vector<const char *> &keys,
                       std::vector<std::string> *values)
{
    std::unique_ptr<GW_PARAM_RECORD> record(new GW_PARAM_RECORD{});
    for (const char *key : keys)
        std::strcpy(record->entries[record->count++].key, key);
    if (const uint32_t rc = GW_PF_GetModuleParam(module, record.get(), address))
        return rc;
    values->clear();
    for (size_t i = 0; i < keys.size(); ++i)
        values->push_back(record->entries[i].value);
    return GW_OK;
}

// The layout of one address: its element width and the device's byte order.
uint32_t codecOf(int module, int address, std::unique_ptr<FieldbusCodec> *codec)
{
    std::vector<GW_MODULE_INFO> modules;
    if (const uint32_t rc = allModules(&modules))
        return rc;
    const auto found = std::find_if(modules.begin(), modules.end(),
                                    [module](const GW_MODULE_INFO &info) { return info.moduleId == module; });
    if (found == modules.end())
        return GW_ERR_UNKNOWN_MODULE;
    std::vector<std::string> values;
    if (const uint32_t rc = addressParams(module, address, {"IntDataType"}, &values))
        return rc;
    const int width = FieldbusCodec::widthOf(std::atoi(values[0].c_str()));
    codec->reset(new FieldbusCodec(width, FieldbusCodec::byteOrderOf(found->moduleType)));
    return GW_OK;
}

std::string render(const std::string &bytes, Form form, const FieldbusCodec *codec)
{
    std::string out;
    char piece[8];
    switch (form) {
    case Form::Int:
    case Form::Float:
        return codec->format(bytes, form == Form::Float, ',');
    case Form::Text:
        for (char c : bytes) {
            const unsigned char b = static_cast<unsigned char>(c);
            if (b >= 0x20 && b <= 0x7e) {
                out += c;
            } else {
                std::snprintf(piece, sizeof(piece), "[%02X]", b);
                out += piece;
            }
        }
        return out;
    case Form::Hex:
        for (size_t i = 0; i < bytes.size(); ++i) {
            std::snprintf(piece, sizeof(piece), i ? " %02x" : "%02x", unsigned(static_cast<unsigned char>(bytes[i])));
            out += piece;
        }
        return out;
    }
    return out;
}

std::string timeStamp()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char text[48];
    const size_t n = std::strftime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", &local);
    std::snprintf(text + n, sizeof(text) - n, ".%03ld", now.tv_nsec / 1000000);
    return text;
}

uint32_t readAddress(int module, int address, std::string *bytes)
{
    char buffer[4096];
    int length = 0;
    const uint32_t rc = GW_PLC_ReadAddress(module, address, buffer, int(sizeof(buffer)), &length);
    if (rc == GW_OK)
        bytes->assign(buffer, size_t(length));
    return rc;
}

// The bytes to render an address in `form`: typed forms need its layout.
uint32_t renderAddress(int module, int address, const std::string &bytes, Form form, std::string *text)
{
    std::unique_ptr<FieldbusCodec> codec;
    if (form == Form::Int || form == Form::Float)
        if (const uint32_t rc = codecOf(module, address, &codec))
            return rc;
    *text = render(bytes, form, codec.get());
    return GW_OK;
}

int commandWrite(int module, int address, const std::string &operand, Form form)
{
    std::string bytes;
    if (form == Form::Hex && !parseHex(operand, &bytes))
        return usageError("HEX must be pairs of hexadecimal digits");
    if (form == Form::Text)
        bytes = operand;
    if (form == Form::Int || form == Form::Float) {
        std::unique_ptr<FieldbusCodec> codec;
        if (const uint32_t rc = codecOf(module, address, &codec))
            return fail("reading the address's layout", rc);
        int count = 0;
        if (codec->encode(operand, ',', form == Form::Float, &bytes, &count) != GW_OK)
            return usageError(form == Form::Int ? "a value is not an integer that fits the address's elements"
                                                : "a value is not a 32-bit float");
    }
    if (const uint32_t rc = GW_PLC_WriteAddress(module, address, bytes.data(), int(bytes.size())))
        return fail("write", rc);
    return kDone;
}

int commandRead(int module, int address, Form form)
{
    std::string bytes, text;
    if (const uint32_t rc = readAddress(module, address, &bytes))
        return fail("read", rc);
    if (const uint32_t rc = renderAddress(module, address, bytes, form, &text))
        return fail("reading the address's layout", rc);
    std::printf("%s\n", text.c_str());
    return kDone;
}

// The fixed addresses of a PROFINET device (none on other devices), which
// the gateway does not list with the others.
std::vector<int> fixedIds(int module)
{
    std::vector<int> ids;
    std::vector<std::string> unused;
    for (int id : {GW_PLC_FIXED_READ_ID, GW_PLC_FIXED_WRITE_ID})
        if (addressParams(module, id, {"PollEnable"}, &unused) == GW_OK)
            ids.push_back(id);
    return ids;
}

// The ids to watch: the one given, or every address the module has now.
uint32_t watchedIds(int module, int address, std::vector<int> *ids)
{
    ids->clear();
    if (address != -1) {
        ids->push_back(address);
        return GW_OK;
    }
    std::vector<GW_ADDRESS_INFO> addresses;
    const uint32_t rc = addressesOf(module, &addresses);
    *ids = fixedIds(module);
    for (const GW_ADDRESS_INFO &info : addresses)
        ids->push_back(info.addressId);
    return rc;
}

// The fieldbus devices with their addresses, to find the ids to use.
int commandList()
{
    std::vector<GW_MODULE_INFO> modules;
    if (const uint32_t rc = allModules(&modules))
        return fail("listing the modules", rc);
    for (const GW_MODULE_INFO &module : modules) {
        std::vector<GW_ADDRESS_INFO> addresses;
        if (addressesOf(module.moduleId, &addresses) == GW_ERR_NOT_SUPPORTED)
            continue; // a stream device
        std::printf("module %d %s \"%s\" %s\n", module.moduleId, module.moduleType, module.displayName,
                    module.state ? "open" : "off");
        for (int id : fixedIds(module.moduleId)) {
            std::vector<std::string> v;
            if (addressParams(module.moduleId, id, {"IntDataType", "SoftElementNum", "PollEnable"}, &v) == GW_OK)
                std::printf("  fixed %s %d: %s x %d-bit, poll %s\n", id == GW_PLC_FIXED_READ_ID ? "read" : "write", id,
                            v[1].c_str(), 8 * FieldbusCodec::widthOf(std::atoi(v[0].c_str())),
                            v[2] == "true" || v[2] == "True" ? "on" : "off");
        }
        for (const GW_ADDRESS_INFO &address : addresses) {
            std::vector<std::string> v;
            if (addressParams(module.moduleId, address.addressId,
                              {"IntDataType", "SoftElementNum", "SoftElementAddress", "Upload"}, &v))
                continue; // deleted meanwhile
            const bool read = address.addressId <= GW_PLC_READ_ID_LAST;
            std::printf("  %s %d \"%s\": %s x %d-bit at %s, upload %s\n", read ? "read" : "write",
                        address.addressId, address.addressName, v[1].c_str(),
                        8 * FieldbusCodec::widthOf(std::atoi(v[0].c_str())), v[2].c_str(),
                        v[3] == "true" || v[3] == "True" ? "on" : "off");
        }
    }
    return kDone;
}

int commandWatch(int module, int address, Form form, int cycleMs)
{
    std::map<int, std::string> seen;
    std::vector<int> ids;
    const timespec cycle{cycleMs / 1000, long(cycleMs % 1000) * 1000000L};
    while (!g_stop) {
        if (const uint32_t rc = watchedIds(module, address, &ids))
            return fail("listing the module's addresses", rc);
        for (auto it = seen.begin(); it != seen.end();) {
            // Deleted from the module since the last cycle.
            if (std::find(ids.begin(), ids.end(), it->first) == ids.end()) {
                std::printf("%s %d deleted\n", timeStamp().c_str(), it->first);
                it = seen.erase(it);
            } else {
                ++it;
            }
        }
        for (int id : ids) {
            std::string bytes, text;
            const uint32_t rc = readAddress(module, id, &bytes);
            if (rc == GW_ERR_UNKNOWN_ADDRESS && address == -1)
                continue; // deleted between the listing and the read
            if (rc != GW_OK)
                return fail("read", rc);
            const auto known = seen.find(id);
            if (known != seen.end() && known->second == bytes)
                continue;
            seen[id] = bytes;
            if (const uint32_t layout = renderAddress(module, id, bytes, form, &text))
                return fail("reading the address's layout", layout);
            std::printf("%s %d %s\n", timeStamp().c_str(), id, text.c_str());
        }
        nanosleep(&cycle, nullptr); // a stop signal ends the wait early
    }
    return kDone;
}

// Options anywhere on the line; everything else is an operand. A leading
// "-" alone does not make an option, so negative values stay operands.
int parse(int argc, char *argv[], Options *options)
{
    if (const char *env = std::getenv("GATEWAY_PORT"))
        toInt(env, &options->port);
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::fputs(kHelp, stdout);
            std::exit(kDone);
        }
        if (arg == "--port" || arg == "--cycle") {
            int value = 0;
            if (i + 1 >= argc || !toInt(argv[++i], &value) || value <= 0 || (arg == "--port" && value > 65535))
                return usageError(arg == "--port" ? "--port needs a port number" : "--cycle needs milliseconds");
            (arg == "--port" ? options->port : options->cycleMs) = value;
        } else if (arg == "--int" || arg == "--float" || arg == "--text") {
            options->form = arg == "--int" ? Form::Int : arg == "--float" ? Form::Float : Form::Text;
        } else if (arg.size() > 2 && arg.compare(0, 2, "--") == 0) {
            return usageError(("unknown option " + arg).c_str());
        } else {
            options->args.push_back(arg);
        }
    }
    if (options->port <= 0)
        return usageError("no gateway port: give --port N or set GATEWAY_PORT");
    return kDone;
}

int run(const Options &options)
{
    const std::vector<std::string> &args = options.args;
    const std::string command = args.empty() ? std::string() : args[0];
    const size_t wanted = command == "write" ? 4 : command == "read" ? 3 : command == "list" ? 1 : 0;
    const bool watch = command == "watch" && (args.size() == 2 || args.size() == 3);
    if (!watch && (wanted == 0 || args.size() != wanted))
        return usageError(command.empty() ? "no command" : ("wrong use of " + command).c_str());
    int module = 0, address = -1;
    if (args.size() > 1
        && (!toInt(args[1].c_str(), &module) || (args.size() > 2 && !toInt(args[2].c_str(), &address))))
        return usageError("MODULE and ADDRESS are numbers");

    if (const uint32_t rc = GW_PF_Init(1, "127.0.0.1", options.port, 0))
        return fail("connecting to the gateway", rc);
    int status = kDone;
    if (command == "list")
        status = commandList();
    else if (command == "write")
        status = commandWrite(module, address, args[3], options.form);
    else if (command == "read")
        status = commandRead(module, address, options.form);
    else
        status = commandWatch(module, address, options.form, options.cycleMs);
    GW_PF_DeInit();
    return status;
}
} // namespace

int main(int argc, char *argv[])
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // each line as it is printed, also into a pipe
    struct sigaction action {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);

    Options options;
    if (const int rc = parse(argc, argv, &options))
        return rc;
    return run(options);
}
