# SPDX-License-Identifier: MIT
# The 32-bit ARM target with Debian's cross compiler (g++-arm-linux-gnueabihf). A board's
# own root file system (from Yocto, Buildroot or debootstrap) is given with
# -DCMAKE_SYSROOT=DIR; without one, Debian's cross libraries under /usr/arm-linux-gnueabihf
# are the target's. Tests run under qemu-arm-static with the target's C library.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
if(CMAKE_SYSROOT)
  set(vantor_target_root ${CMAKE_SYSROOT})
else()
  set(vantor_target_root /usr/arm-linux-gnueabihf)
endif()
set(CMAKE_FIND_ROOT_PATH ${vantor_target_root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static -L ${vantor_target_root})
