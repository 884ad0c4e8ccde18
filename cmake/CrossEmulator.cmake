# Under a qemu user-mode emulator (cross builds), programs run through
# qemu-plainfork, built here with the host's C compiler: it lets the emulated
# Qt programs start child processes (see cmake/qemu-plainfork.c).
if(NOT CMAKE_CROSSCOMPILING OR NOT CMAKE_CROSSCOMPILING_EMULATOR MATCHES "qemu-")
    return()
endif()
find_program(COMM_HOST_CC NAMES cc gcc REQUIRED)
set(_plainfork_src ${CMAKE_CURRENT_LIST_DIR}/qemu-plainfork.c)
set(_plainfork ${CMAKE_BINARY_DIR}/host/qemu-plainfork)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${_plainfork_src})
if(NOT EXISTS ${_plainfork} OR ${_plainfork_src} IS_NEWER_THAN ${_plainfork})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/host)
    execute_process(COMMAND ${COMM_HOST_CC} -O2 -Wall -Wextra -o ${_plainfork} ${_plainfork_src}
                    RESULT_VARIABLE _rc)
    if(NOT _rc EQUAL 0)
        message(FATAL_ERROR "cannot build ${_plainfork} with ${COMM_HOST_CC}")
    endif()
endif()
list(FIND CMAKE_CROSSCOMPILING_EMULATOR ${_plainfork} _found)
if(_found EQUAL -1)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${_plainfork} ${CMAKE_CROSSCOMPILING_EMULATOR})
endif()
