# Debian packages: `cpack -G DEB` in a build folder makes
#   lumora-gateway      gatewayd, gwplc, the client library libgwplatform.so,
#                       the systemd unit lumora-gateway.service
#   lumora-commmanager  the module libCommManagerModule.so with the host
#                       stand-in it links, its translations, and the XML
#                       descriptions under /opt/lumora/lmModuleProxy/modules
# for the architecture of the build (amd64, or arm64 from the AArch64 cross
# build). Dependencies come from the binaries (dpkg-shlibdeps); tests,
# benchmarks, fuzz targets and the standalone host are in no package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumora)
set(CPACK_PACKAGE_VENDOR Lumora)
set(CPACK_PACKAGE_CONTACT "Lumora communication manager developers <commmanager@lumora.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL gateway module)

set(COMM_DEB_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${COMM_DEB_RELEASE})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(CMAKE_CROSSCOMPILING AND CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
    # dpkg-shlibdeps reads the arm64 libraries' package data and uses the
    # cross objdump when told the host architecture.
    set(COMM_DEB_HOST_ARCH arm64)
endif()
if(COMM_DEB_HOST_ARCH)
    set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_BINARY_DIR}/CPackProjectConfig.cmake)
    file(WRITE ${CPACK_PROJECT_CONFIG_FILE} "set(ENV{DEB_HOST_ARCH} ${COMM_DEB_HOST_ARCH})\n")
endif()

set(CPACK_DEBIAN_GATEWAY_PACKAGE_NAME lumora-gateway)
set(CPACK_COMPONENT_GATEWAY_DESCRIPTION "Lumora communication gateway
gatewayd runs the communication devices of the Lumora machine-vision system
(TCP client and server, UDP, serial, simulated PROFINET and EtherNet/IP) and
serves the gateway client library libgwplatform.so on the loopback address.
The package runs it as the systemd service lumora-gateway; gwplc plays the
PLC side of the simulated fieldbus devices.")
# Qt opens the SQLite driver as a plugin, which no linked library names.
set(CPACK_DEBIAN_GATEWAY_PACKAGE_DEPENDS "libqt5sql5-sqlite")
set(CPACK_DEBIAN_GATEWAY_PACKAGE_CONTROL_EXTRA
    ${PROJECT_SOURCE_DIR}/packaging/postinst
    ${PROJECT_SOURCE_DIR}/packaging/prerm
    ${PROJECT_SOURCE_DIR}/packaging/postrm)
set(CPACK_DEBIAN_GATEWAY_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)

set(CPACK_DEBIAN_MODULE_PACKAGE_NAME lumora-commmanager)
set(CPACK_COMPONENT_MODULE_DESCRIPTION "Lumora communication-management module
The page of the Lumora machine-vision host on which the operator creates,
configures and watches the communication devices: the module library with
its QML page, the host library it is linked with, its English and Chinese
translations, and the XML descriptions of the device types.")
# The page imports these QML modules at run time.
set(CPACK_DEBIAN_MODULE_PACKAGE_DEPENDS
    "qml-module-qtquick2, qml-module-qtquick-controls2, qml-module-qtquick-templates2, qml-module-qtquick-layouts, qml-module-qtquick-window2")
set(CPACK_DEBIAN_MODULE_PACKAGE_RECOMMENDS "lumora-gateway")

include(CPack)
