# Toolchain: Debian's cross compiler for the processor QORVII18N_CROSS_PROCESSOR (aarch64, s390x), its
# libraries from the folder QORVII18N_CROSS_SYSROOT, and its programs run by an emulator. tools/cross
# makes the folder and sets both.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QORVII18N_CROSS_PROCESSOR QORVII18N_CROSS_SYSROOT)

set(triplet ${QORVII18N_CROSS_PROCESSOR}-linux-gnu)
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${QORVII18N_CROSS_PROCESSOR})
set(CMAKE_C_COMPILER ${triplet}-gcc)
set(CMAKE_CXX_COMPILER ${triplet}-g++)

set(CMAKE_FIND_ROOT_PATH ${QORVII18N_CROSS_SYSROOT} /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} ${QORVII18N_CROSS_SYSROOT}/usr/lib/${triplet}/pkgconfig)

# The C library comes with the cross compiler. The libraries of the folder do not know where they are.
string(APPEND CMAKE_EXE_LINKER_FLAGS_INIT
  "-Wl,-rpath-link,${QORVII18N_CROSS_SYSROOT}/usr/lib/${triplet}")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${QORVII18N_CROSS_PROCESSOR}-static -L /usr/${triplet}
  -E LD_LIBRARY_PATH=${QORVII18N_CROSS_SYSROOT}/usr/lib/${triplet})
