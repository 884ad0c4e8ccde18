# Sanitizer builds are build types, not flags scattered over folders:
#   Sanitize: AddressSanitizer + UndefinedBehaviorSanitizer, no recovery
#   Tsan:     ThreadSanitizer
set(_san_common "-g -O1 -fno-omit-frame-pointer")
set(CMAKE_C_FLAGS_SANITIZE "${_san_common} -fsanitize=address,undefined -fno-sanitize-recover=all")
set(CMAKE_CXX_FLAGS_SANITIZE "${CMAKE_C_FLAGS_SANITIZE}")
set(CMAKE_EXE_LINKER_FLAGS_SANITIZE "-fsanitize=address,undefined")
set(CMAKE_SHARED_LINKER_FLAGS_SANITIZE "-fsanitize=address,undefined")
set(CMAKE_C_FLAGS_TSAN "${_san_common} -fsanitize=thread")
set(CMAKE_CXX_FLAGS_TSAN "${CMAKE_C_FLAGS_TSAN}")
set(CMAKE_EXE_LINKER_FLAGS_TSAN "-fsanitize=thread")
set(CMAKE_SHARED_LINKER_FLAGS_TSAN "-fsanitize=thread")
# Optimised builds are hardened as Debian builds its packages (dpkg-buildflags):
# checked string and memory functions, stack protector, read-only relocations
# bound at start.
foreach(type RELEASE RELWITHDEBINFO)
    string(APPEND CMAKE_C_FLAGS_${type} " -D_FORTIFY_SOURCE=2 -fstack-protector-strong")
    string(APPEND CMAKE_CXX_FLAGS_${type} " -D_FORTIFY_SOURCE=2 -fstack-protector-strong")
    string(APPEND CMAKE_EXE_LINKER_FLAGS_${type} " -Wl,-z,relro -Wl,-z,now")
    string(APPEND CMAKE_SHARED_LINKER_FLAGS_${type} " -Wl,-z,relro -Wl,-z,now")
endforeach()

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Debug CACHE STRING "Debug Release Sanitize Tsan" FORCE)
endif()
