# Cross build for the target (AArch64 Linux) with Debian's cross compiler and
# the arm64 development packages installed beside the host's
# (scripts/bootstrap aarch64). Programs built here run through qemu, also
# when the build or CTest runs one.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)

# Libraries and headers of the target (the multiarch folders under /usr),
# programs of the host: moc, rcc and uic are taken from the host's Qt by
# Qt's own CMake files, and the Linguist tools below.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)
set(Qt5LinguistTools_DIR /usr/lib/x86_64-linux-gnu/cmake/Qt5LinguistTools CACHE PATH
    "lrelease and lupdate of the host")
