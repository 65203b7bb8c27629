// Runs one instruction word on the processor, with every register that the word could read or write loaded from a
// processor_image before and stored back after. No register is the harness's own while the word runs: the way back is
// a branch beside the word, and TPIDR_EL0 holds X30 until the image's address is in it.
#include "tests/differential/processor_image.h"

        .arch   armv8-a+sve

        // Moves the registers that a caller may rely on, besides X29 and X30, to or from its stack.
        .macro  keep move
        \move   x19, x20, [sp, #16]
        \move   x21, x22, [sp, #32]
        \move   x23, x24, [sp, #48]
        \move   x25, x26, [sp, #64]
        \move   x27, x28, [sp, #80]
        \move   d8, d9, [sp, #96]
        \move   d10, d11, [sp, #112]
        \move   d12, d13, [sp, #128]
        \move   d14, d15, [sp, #144]
        .endm

        // Moves Z0 to Z31 from X1 on, which ends where the predicates stand: P0 to P15, then FFR.
        .macro  vectors move
        .irp    n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
        \move   z\n, [x1, #\n, mul vl]
        .endr
        addvl   x1, x1, #16
        addvl   x1, x1, #16
        .endm

        .macro  predicates move
        .irp    n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15
        \move   p\n, [x1, #\n, mul vl]
        .endr
        .endm

        // The word and the branch back, alone in their pages, which are made writable and executable.
        .data
        .balign WORD_PAGES
        .global quern_word_slot
quern_word_slot:
        nop
        b       after_word
        .balign WORD_PAGES

        .bss
        .balign 8
image_slot:
        .skip   8

        // void quern_run_word(processor_image* image)
        .text
        .balign 16
        .global quern_run_word
        .type   quern_run_word, %function
quern_run_word:
        stp     x29, x30, [sp, #-160]!
        keep    stp
        mov     x1, sp
        str     x1, [x0, #IMAGE_HOST_SP]
        mrs     x1, tpidr_el0
        str     x1, [x0, #IMAGE_HOST_TPIDR]
        adrp    x1, image_slot
        str     x0, [x1, #:lo12:image_slot]

        ldr     x1, [x0, #IMAGE_FPSR]
        msr     fpsr, x1
        add     x1, x0, #IMAGE_Z
        vectors ldr
        ldr     p0, [x1, #16, mul vl]
        wrffr   p0.b
        predicates ldr
        ldr     x1, [x0, #IMAGE_NZCV]
        msr     nzcv, x1
        ldr     x1, [x0, #IMAGE_SP]
        mov     sp, x1
        .irp    n, 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30
        ldr     x\n, [x0, #(8 * \n)]
        .endr
        ldr     x0, [x0]
        b       quern_word_slot

after_word:
        msr     tpidr_el0, x30
        adrp    x30, image_slot
        ldr     x30, [x30, #:lo12:image_slot]
        .irp    n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29
        str     x\n, [x30, #(8 * \n)]
        .endr
        mov     x0, x30
        mrs     x1, tpidr_el0
        str     x1, [x0, #(8 * 30)]
        mov     x1, sp
        str     x1, [x0, #IMAGE_SP]
        mrs     x1, nzcv
        str     x1, [x0, #IMAGE_NZCV]
        mrs     x1, fpsr
        str     x1, [x0, #IMAGE_FPSR]
        add     x1, x0, #IMAGE_Z
        vectors str
        predicates str
        rdffr   p0.b
        str     p0, [x1, #16, mul vl]

        ldr     x1, [x0, #IMAGE_HOST_TPIDR]
        msr     tpidr_el0, x1
        ldr     x1, [x0, #IMAGE_HOST_SP]
        mov     sp, x1
        keep    ldp
        ldp     x29, x30, [sp], #160
        ret
        .size   quern_run_word, . - quern_run_word
        .section .note.GNU-stack, "", %progbits
