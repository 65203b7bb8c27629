// Application memory: guarded reads, the readability probe, and recovery from faults.
#pragma once

#include <cstdint>

// The host's page size in bytes; 0 until read_page_size() has run.
extern std::uint32_t page_size;

// Sets page_size from sysconf(_SC_PAGESIZE).
void read_page_size();

// Sets up fault recovery, once; answers 1.
std::int32_t SVEInitialize();
