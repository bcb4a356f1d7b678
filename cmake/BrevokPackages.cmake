# The Debian packages that './dev package' makes: one of each component that packaging/CMakeLists.txt installs.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolvane-brevok)
set(CPACK_PACKAGE_VENDOR "Tolvane Brevok contributors")
set(CPACK_PACKAGE_CONTACT "Tolvane Brevok contributors <maintainers@tolvane.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL application helper demo)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
# './dev package' has built everything before.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_APPLICATION_PACKAGE_NAME tolvane-brevok)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_APPLICATION_PACKAGE_DEPENDS
    "default-dbus-session-bus | dbus-session-bus, dbus-bin, hicolor-icon-theme")
set(CPACK_DEBIAN_APPLICATION_PACKAGE_RECOMMENDS "tolvane-brevok-helper, ca-certificates")
set(CPACK_DEBIAN_APPLICATION_PACKAGE_SUGGESTS "tolvane-brevok-demo, qt6-wayland, packagekit")
set(CPACK_DEBIAN_APPLICATION_PACKAGE_CONTROL_EXTRA
    ${CMAKE_SOURCE_DIR}/packaging/debian/application/conffiles
    ${CMAKE_SOURCE_DIR}/packaging/debian/application/postinst
    ${CMAKE_SOURCE_DIR}/packaging/debian/application/prerm
    ${CMAKE_SOURCE_DIR}/packaging/debian/application/postrm)
set(CPACK_COMPONENT_APPLICATION_DESCRIPTION "keep Adobe InDesign and InCopy plug-ins installed and up to date
Tolvane Brevok lives in the system tray. It signs in to the plug-in service,
finds the InDesign and InCopy installations on the computer, shows for every
package whether it is installed, outdated or missing, and installs, updates
or removes plug-ins on request.
.
brevokctl does the same from scripts.")

set(CPACK_DEBIAN_HELPER_PACKAGE_NAME tolvane-brevok-helper)
set(CPACK_DEBIAN_HELPER_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_HELPER_PACKAGE_DEPENDS "polkitd, default-dbus-system-bus | dbus-system-bus")
set(CPACK_DEBIAN_HELPER_PACKAGE_ENHANCES tolvane-brevok)
set(CPACK_DEBIAN_HELPER_PACKAGE_CONTROL_EXTRA
    ${CMAKE_SOURCE_DIR}/packaging/debian/helper/postinst
    ${CMAKE_SOURCE_DIR}/packaging/debian/helper/prerm
    ${CMAKE_SOURCE_DIR}/packaging/debian/helper/postrm)
set(CPACK_COMPONENT_HELPER_DESCRIPTION "install plug-ins into folders that only root may write
The privileged helper of Tolvane Brevok: it puts plug-ins into the folders of
InDesign and InCopy installations that only the administrator may write,
after polkit has asked for the administrator's password.
.
The system bus starts it when it is needed, and it leaves when it is not.")

set(CPACK_DEBIAN_DEMO_PACKAGE_NAME tolvane-brevok-demo)
set(CPACK_DEBIAN_DEMO_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_DEMO_PACKAGE_DEPENDS "tolvane-brevok, python3, dbus-daemon")
# For the virtual desktop where there is no display.
set(CPACK_DEBIAN_DEMO_PACKAGE_RECOMMENDS "xvfb, openbox, trayer, xdotool, x11-utils, x11-xserver-utils, imagemagick")
set(CPACK_COMPONENT_DEMO_DESCRIPTION "try Tolvane Brevok against a web service on this machine
A web service with a sample catalogue on loopback, sample host applications,
and a demonstration that signs in and installs, updates and removes plug-ins
in a scratch folder. Nothing of the user's own is touched.")

include(CPack)
