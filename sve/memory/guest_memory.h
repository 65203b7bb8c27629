// Application memory: guarded reads, the readability probe, and recovery from faults. The emulator runs in the
// application's address space, so an address of the application is one of the host.
#pragma once

#include <csetjmp>
#include <csignal>
#include <cstdint>

#include "sve/state/cpu_context.h"

// The host's page size in bytes; 0 until read_page_size() has run.
extern std::uint32_t page_size;

// Sets page_size from sysconf(_SC_PAGESIZE).
void read_page_size();

// Non-zero while a guarded read probes memory, and where it goes on after a fault. One of each for the process: guarded
// reads are safe on one thread at a time.
extern volatile std::int32_t SVEFaultRegion;
extern sigjmp_buf sveFaultJB;

// Guarded reads of 1, 2, 4, 8 bytes at any alignment. When the first or last byte can't be read (SIGSEGV or SIGBUS),
// *fault becomes true and the answer is 0; otherwise *fault is left as it was. With a null `fault` nothing is guarded,
// and a bad address is the application's own fault. The other arguments have no effect.
std::uint8_t ReadMemLib1(unsigned long addr, int, bool* fault, CpuContext* ctx);
std::uint16_t ReadMemLib2(unsigned long addr, int, bool* fault, CpuContext* ctx);
std::uint32_t ReadMemLib4(unsigned long addr, int, bool* fault, CpuContext* ctx);
std::uint64_t ReadMemLib8(unsigned long addr, int, bool* fault, CpuContext* ctx);

// Plain stores of 1, 2, 4, 8 bytes at any alignment, unguarded. The context has no effect.
void WriteMemLib1(unsigned char value, unsigned long addr, CpuContext* ctx);
void WriteMemLib2(unsigned short value, unsigned long addr, CpuContext* ctx);
void WriteMemLib4(unsigned int value, unsigned long addr, CpuContext* ctx);
void WriteMemLib8(unsigned long value, unsigned long addr, CpuContext* ctx);

// Entries that no load or store uses. The reads clear *fault, answer 0 and read nothing; the writes do nothing.
std::uint64_t ReadMem(unsigned long addr, int, int, bool* fault, CpuContext* ctx);
std::uint64_t ReadMemSim(unsigned long addr, int, int, bool* fault, bool, CpuContext* ctx);
void WriteMem(unsigned long, unsigned long, int, CpuContext* ctx);
void WriteMemSim(unsigned long, unsigned long, int, bool, CpuContext* ctx);

// Whether the byte at addr can be read, found out by reading it under a SIGSEGV action that is in place for that time
// only. A SIGBUS is not survived: it is the application's own fault.
template <class T>
bool addr_is_readable(volatile T* addr);
template <>
bool addr_is_readable<char>(volatile char* addr);

// The process's action for SIGSEGV and SIGBUS. In a guarded read it goes on in that read; otherwise it says on standard
// error that the application faulted and puts the default actions in place, so that the instruction's next try ends the
// process.
void SVESigHandler(int signal, siginfo_t*, void*);

// Fills cpu_ctxt and ctxt and installs SVESigHandler for SIGSEGV and SIGBUS, once; answers 1. The last step of static
// initialisation.
std::int32_t SVEInitialize();
