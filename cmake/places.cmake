# Where an installed Zendrix stands, relative to the prefix or as it is: the one place of these names. The files that it
# keeps lie in /var/lib/zendrix and /etc/zendrix, whatever the prefix (packaging/tmpfiles.d).
include(GNUInstallDirs)
set(ZENDRIX_LIBRARY_DIR ${CMAKE_INSTALL_LIBDIR}/zendrix)      # what is loaded at run time
set(ZENDRIX_PROGRAM_DIR ${CMAKE_INSTALL_LIBEXECDIR}/zendrix)  # programs that nobody starts by hand
set(ZENDRIX_DATA_DIR ${CMAKE_INSTALL_DATADIR}/zendrix)        # descriptions and pictures
# What others look for at a place of their own: Debian 12 wants the first of them in /lib, which is no part of the prefix.
set(ZENDRIX_UNIT_DIR lib/systemd/system CACHE STRING "Where systemd looks for units")
set(ZENDRIX_SYSUSERS_DIR lib/sysusers.d CACHE STRING "Where systemd-sysusers looks")
set(ZENDRIX_TMPFILES_DIR lib/tmpfiles.d CACHE STRING "Where systemd-tmpfiles looks")
