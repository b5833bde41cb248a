# SPDX-License-Identifier: BSD-3-Clause
# Cross-build for arm64 with Debian's compiler and multiarch libraries; programs run under qemu-user.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(triplet aarch64-linux-gnu)
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${triplet})
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64)
# PROJ's package refuses a cross-build, although it is that of arm64. Nothing else depends on this.
set(CMAKE_CROSSCOMPILING OFF)

# Libraries and packages of arm64 lie beside those of this machine. Packages of this machine are of no use, and
# programs are taken from this machine.
set(CMAKE_IGNORE_PATH /usr/lib/x86_64-linux-gnu /usr/lib/x86_64-linux-gnu/cmake)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${triplet}/pkgconfig:/usr/share/pkgconfig)
