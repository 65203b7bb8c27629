// The region of interest: a thread's SVE loads and stores are traced between its two marks.
#ifndef QUERN_EXAMPLES_ROI_H
#define QUERN_EXAMPLES_ROI_H

// The words are forms of ADD (vector, immediate) that the architecture leaves undefined, so a program that comes to
// them without quern is ended by SIGILL.
static inline void roi_start(void) { __asm__ volatile(".inst 0x2520e020" : : : "memory"); }
static inline void roi_stop(void) { __asm__ volatile(".inst 0x2520e040" : : : "memory"); }

#endif
