# Where things are installed. The tree is built for Debian systems: without an
# explicit CMAKE_INSTALL_PREFIX it installs under /usr, as its packages do
# (use `cmake --install <build> --prefix <dir>` to stage elsewhere).
if(CMAKE_INSTALL_PREFIX_INITIALIZED_TO_DEFAULT)
    set(CMAKE_INSTALL_PREFIX /usr CACHE PATH "Install prefix" FORCE)
endif()
include(GNUInstallDirs)

# The shared libraries are private to the Lumora programs: the module, the host
# stand-in it links and the gateway client library live in one folder of their
# own (lib/<multiarch>/lumora), found by the programs through a RUNPATH
# relative to themselves. GNUInstallDirs gives no multiarch folder to a cross
# build, so it is named here.
if(CMAKE_LIBRARY_ARCHITECTURE)
    set(COMM_INSTALL_PRIVATE_LIBDIR lib/${CMAKE_LIBRARY_ARCHITECTURE}/lumora)
else()
    set(COMM_INSTALL_PRIVATE_LIBDIR ${CMAKE_INSTALL_LIBDIR}/lumora)
endif()
file(RELATIVE_PATH COMM_BIN_TO_PRIVATE_LIBDIR /${CMAKE_INSTALL_BINDIR} /${COMM_INSTALL_PRIVATE_LIBDIR})
set(COMM_INSTALL_RPATH_BIN "$ORIGIN/${COMM_BIN_TO_PRIVATE_LIBDIR}")
set(COMM_INSTALL_TRANSLATIONSDIR ${CMAKE_INSTALL_DATADIR}/lumora/translations)
# The host reads module descriptions from this fixed place.
set(COMM_INSTALL_MODULESDIR /opt/lumora/lmModuleProxy/modules)
