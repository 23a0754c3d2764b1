# Writes the store page. Its address and its pictures are there only where the project has pages: a store loads them from the
# internet, and a made-up address could be anybody's.
#   cmake -D ORVESA_METAINFO=FILE -D ... -P packaging/metainfo.cmake
# wants ORVESA_METAINFO, the file to write, and what the templates name: ORVESA_NAME, ORVESA_BUNDLE_IDENTIFIER,
# ORVESA_MAINTAINER_ADDRESS, ORVESA_RELEASE_DATE, PROJECT_VERSION; ORVESA_WEBSITE may be empty.

set(ORVESA_STORE_PAGES "")
if(ORVESA_WEBSITE)
    if(NOT ORVESA_WEBSITE MATCHES "^https://[^/]+(/.*)?[^/]$")
        message(FATAL_ERROR "ORVESA_WEBSITE is an https address without a slash at its end")
    endif()
    file(READ "${CMAKE_CURRENT_LIST_DIR}/linux/metainfo-pages.xml.in" ORVESA_STORE_PAGES)
    string(CONFIGURE "${ORVESA_STORE_PAGES}" ORVESA_STORE_PAGES @ONLY)
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/linux/metainfo.xml.in" "${ORVESA_METAINFO}" @ONLY)
