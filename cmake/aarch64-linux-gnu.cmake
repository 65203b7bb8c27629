# Cross build for AArch64 Linux with Debian's cross compiler; programs run under qemu without SVE, as on the processors
# that quern is for.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(QUERN_SYSROOT /usr/aarch64-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-aarch64;-L;${QUERN_SYSROOT};-cpu;max,sve=off,sme=off")
