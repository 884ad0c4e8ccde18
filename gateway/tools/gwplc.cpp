// gwplc: plays the PLC side of a simulated PROFINET or EtherNet/IP device.
//
//   gwplc --port N write MODULE ADDRESS HEXBYTES   set a read address's bytes
//   gwplc --port N write-text MODULE ADDRESS TEXT  the same with text bytes
//   gwplc --port N read MODULE ADDRESS             print an address's bytes in hex
#include "GwPlcSide.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
int usage()
{
    std::fprintf(stderr,
                 "usage: gwplc [--port N] write MODULE ADDRESS HEXBYTES\n"
                 "       gwplc [--port N] write-text MODULE ADDRESS TEXT\n"
                 "       gwplc [--port N] read MODULE ADDRESS\n");
    return 2;
}

bool parseHex(const char *text, std::string *out)
{
    std::string digits;
    for (const char *p = text; *p; ++p)
        if (*p != ' ' && *p != ':')
            digits += *p;
    if (digits.size() % 2 != 0)
        return false;
    for (size_t i = 0; i < digits.size(); i += 2) {
        char *end = nullptr;
        const std::string pair = digits.substr(i, 2);
        const long value = std::strtol(pair.c_str(), &end, 16);
        if (*end != '\0')
            return false;
        out->push_back(char(value));
    }
    return true;
}

int fail(const char *what, uint32_t rc)
{
    std::fprintf(stderr, "gwplc: %s failed, error=%x\n", what, rc);
    return 1;
}
} // namespace

int main(int argc, char *argv[])
{
    int port = 0;
    int arg = 1;
    if (arg + 1 < argc && std::strcmp(argv[arg], "--port") == 0) {
        port = std::atoi(argv[arg + 1]);
        arg += 2;
    }
    if (port == 0 && std::getenv("GATEWAY_PORT"))
        port = std::atoi(std::getenv("GATEWAY_PORT"));
    if (argc - arg < 3 || port <= 0)
        return usage();
    const std::string command = argv[arg];
    const int module = std::atoi(argv[arg + 1]);
    const int address = std::atoi(argv[arg + 2]);

    if (const uint32_t rc = GW_PF_Init(1, "127.0.0.1", port, 0))
        return fail("connecting to the gateway", rc);
    int status = 0;
    if (command == "read" && argc - arg == 3) {
        char buffer[65536];
        int length = 0;
        if (const uint32_t rc = GW_PLC_ReadAddress(module, address, buffer, sizeof(buffer), &length))
            status = fail("read", rc);
        else {
            for (int i = 0; i < length; ++i)
                std::printf("%02x%s", unsigned(uint8_t(buffer[i])), i + 1 < length ? " " : "\n");
            if (length == 0)
                std::printf("\n");
        }
    } else if ((command == "write" || command == "write-text") && argc - arg == 4) {
        std::string bytes;
        if (command == "write-text")
            bytes = argv[arg + 3];
        else if (!parseHex(argv[arg + 3], &bytes)) {
            GW_PF_DeInit();
            return usage();
        }
        if (const uint32_t rc = GW_PLC_WriteAddress(module, address, bytes.data(), int(bytes.size())))
            status = fail("write", rc);
    } else {
        status = usage();
    }
    GW_PF_DeInit();
    return status;
}
