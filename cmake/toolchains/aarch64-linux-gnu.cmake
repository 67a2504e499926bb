# SPDX-License-Identifier: MIT
# The 64-bit ARM target with Debian's cross compiler (g++-aarch64-linux-gnu). A board's own root
# file system (from Yocto, Buildroot or debootstrap) is given with -DCMAKE_SYSROOT=DIR;
# without one, Debian's cross libraries under /usr/aarch64-linux-gnu are the target's. Tests run
# under qemu-aarch64-static with the target's C library.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
if(CMAKE_SYSROOT)
  set(vantor_target_root ${CMAKE_SYSROOT})
else()
  set(vantor_target_root /usr/aarch64-linux-gnu)
endif()
set(CMAKE_FIND_ROOT_PATH ${vantor_target_root})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static -L ${vantor_target_root})
