# The Debian package, made by packaging/package.sh.

execute_process(COMMAND date --utc --rfc-email --date "${ORVESA_RELEASE_DATE}"
    OUTPUT_VARIABLE ORVESA_RELEASE_DATE_RFC OUTPUT_STRIP_TRAILING_WHITESPACE)
configure_file(linux/debian/changelog.in changelog @ONLY)
execute_process(COMMAND "${GZIP}" --best --no-name --force --keep "${CMAKE_CURRENT_BINARY_DIR}/changelog"
    COMMAND_ERROR_IS_FATAL ANY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/changelog.gz" DESTINATION share/doc/orvesa-translate)
install(FILES linux/debian/copyright ../CHANGELOG.md DESTINATION share/doc/orvesa-translate)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvesa-translate)
set(CPACK_PACKAGE_VENDOR "Orvesa Translate maintainers")
set(CPACK_PACKAGE_CONTACT "Orvesa Translate maintainers <${ORVESA_MAINTAINER_ADDRESS}>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "translate, polish and read selected text anywhere")
set(CPACK_PACKAGE_DESCRIPTION
"Select text in any application, press Alt+D, and read its translation in a
small panel beside the pointer. The application in front keeps the keyboard.
.
The answer comes from a language-model service (OpenAI, Anthropic Claude,
Google Gemini, xAI Grok) with the user's own API key, which is kept in the
desktop's key store. Text on the screen is read on this machine.")
if(ORVESA_WEBSITE)
    set(CPACK_PACKAGE_HOMEPAGE_URL "${ORVESA_WEBSITE}")
endif()
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/package")
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_SET_DESTDIR ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# What the programs are linked to, found by dpkg-shlibdeps; and what they load by name: Qt's X11 platform, TLS, the key
# store's library.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-qpa-plugins, libssl3, ca-certificates, libsecret-1-0")
string(CONCAT CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "at-spi2-core, default-dbus-session-bus | dbus-session-bus, "
    "gnome-keyring | kwalletmanager | keepassxc, "
    "tesseract-ocr-eng, tesseract-ocr-jpn, tesseract-ocr-jpn-vert, tesseract-ocr-chi-tra, tesseract-ocr-chi-tra-vert, "
    "fonts-noto-cjk | fonts-wqy-microhei")
include(CPack)
