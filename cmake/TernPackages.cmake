# Debian packages of the two installed components: tern-gui (product) and tern-unit (unit). scripts/packages makes them.
set(packages_product tern-gui)
set(packages_unit tern-unit)
set(CPACK_COMPONENTS_ALL product)
if(NOT CMAKE_CROSSCOMPILING AND NOT TERN_SANITIZE)
  list(APPEND CPACK_COMPONENTS_ALL unit)
endif()
foreach(component ${CPACK_COMPONENTS_ALL})
  install(FILES docs/install.md docs/licences.md DESTINATION share/doc/${packages_${component}} COMPONENT ${component})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${packages_${component}})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Tern GUI developers <developers@tern.invalid>")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
# Installed as by hand, below a root of its own: the files that name their own place name the final one.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# Whatever the umask of the builder is.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
if(CMAKE_CROSSCOMPILING)
  # What the libraries' own packages say of themselves cannot be asked in the sysroot; tests/packages minds these.
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
  set(CPACK_DEBIAN_PRODUCT_PACKAGE_DEPENDS "libc6 (>= 2.36), libpcre3, libpng16-16 (>= 1.6.2-1)")
else()
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()

set(CPACK_DEBIAN_PRODUCT_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_PRODUCT_DESCRIPTION "user interface of a hand-held remote control for film cameras
The program that draws the pages of the remote control on its 240 x 400 touch
display, and takes its keys and touches. It needs the framebuffer /dev/fb0 and
the server process of the same unit. The service tern-gui keeps it running.")
set(CPACK_DEBIAN_PRODUCT_PACKAGE_CONTROL_EXTRA
    "${PROJECT_SOURCE_DIR}/apps/gui/service/postinst"
    "${PROJECT_SOURCE_DIR}/apps/gui/service/prerm"
    "${PROJECT_SOURCE_DIR}/apps/gui/service/postrm")

set(CPACK_DEBIAN_UNIT_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_UNIT_PACKAGE_SUGGESTS "bash-completion, xdg-utils")
set(CPACK_DEBIAN_UNIT_DESCRIPTION "virtual unit of a hand-held remote control for film cameras
The remote control on a machine without its hardware: a stand-in for the server
process with lens, motors, camera and radio, the user interface over a virtual
display, and the front panel in the browser. The command unitctl starts one,
drives it and looks into it.")
include(CPack)
