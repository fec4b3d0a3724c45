# Cross build for the target: 32-bit ARM, Cortex-A7, hard float.
# Said before anything is tried: a configuration that fails halfway leaves a folder whose next one
# succeeds with other flags and another strip.
find_program(VORDA_ARM_CXX arm-linux-gnueabihf-g++)
mark_as_advanced(VORDA_ARM_CXX)
if(NOT VORDA_ARM_CXX)
  message(FATAL_ERROR "arm-linux-gnueabihf-g++ is missing; apt-get install g++-arm-linux-gnueabihf")
endif()
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CXX_FLAGS_INIT "-mcpu=cortex-a7 -mfpu=neon-vfpv4 -mfloat-abi=hard")
set(CMAKE_FIND_ROOT_PATH /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Runs what has been built, where tests do.
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-arm;-cpu;cortex-a7;-L;/usr/arm-linux-gnueabihf")
# A cross-built package carries the target's architecture.
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
