# Where things are installed. The host finds its data as "share/tessary" above the libraries.

include(GNUInstallDirs)

set(PGMDEV_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/pgmdev)
set(PGMDEV_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/pgmdev)
set(PGMDEV_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(PGMDEV_INSTALL_DATADIR share/tessary)

file(RELATIVE_PATH PGMDEV_BIN_TO_LIB ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
