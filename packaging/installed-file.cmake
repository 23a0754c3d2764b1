# Part of the installation: writes a file that names the program by its path.
# Wants ORVESA_INSTALLED_SOURCE, a template; ORVESA_INSTALLED_FILE, the file below the prefix; and what the templates name.

# `cmake --install --prefix` takes folders below the current one, too.
get_filename_component(prefix "${CMAKE_INSTALL_PREFIX}" ABSOLUTE)
set(ORVESA_PROGRAM "${prefix}/bin/orvesa-translate")
# A word of a command line, for the message bus, systemd and desktops alike.
if(ORVESA_PROGRAM MATCHES "[^A-Za-z0-9/._+-]")
    if(ORVESA_PROGRAM MATCHES "[\"`$%\\\\]")
        message(FATAL_ERROR "Commands of desktop entries cannot name a path like this: ${ORVESA_PROGRAM}")
    endif()
    set(ORVESA_PROGRAM "\"${ORVESA_PROGRAM}\"")
endif()
# A menu finds it by its name where shells do.
set(ORVESA_COMMAND "${ORVESA_PROGRAM}")
if(prefix MATCHES "^/usr(/local)?$")
    set(ORVESA_COMMAND "orvesa-translate")
endif()
set(installed "${prefix}/${ORVESA_INSTALLED_FILE}")
message(STATUS "Installing: $ENV{DESTDIR}${installed}")
configure_file("${ORVESA_INSTALLED_SOURCE}" "$ENV{DESTDIR}${installed}" @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
list(APPEND CMAKE_INSTALL_MANIFEST_FILES "${installed}")
