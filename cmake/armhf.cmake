# The target board's instruction set: 32-bit ARM with NEON, Debian's armhf. Libraries come from the folder that
# scripts/sysroot fills; what is built runs here under the user-mode emulator.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_ASM_COMPILER arm-linux-gnueabihf-gcc)

set(CMAKE_C_FLAGS_INIT "-mfpu=neon")
set(CMAKE_CXX_FLAGS_INIT "-mfpu=neon -Wno-psabi")  # notes on an ABI that changed in 2017 help nobody

get_filename_component(CMAKE_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/armhf" ABSOLUTE)
if(NOT EXISTS "${CMAKE_SYSROOT}/.packages")
  message(FATAL_ERROR "There is no sysroot in ${CMAKE_SYSROOT}. Run scripts/sysroot armhf first.")
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CMAKE_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR} "${CMAKE_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${CMAKE_SYSROOT}/usr/share/pkgconfig")

find_program(TERN_ARM_EMULATOR NAMES qemu-arm-static qemu-arm)
if(TERN_ARM_EMULATOR)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${TERN_ARM_EMULATOR};-L;${CMAKE_SYSROOT}")
endif()
