// Runs the patched place with every register loaded from a processor_registers before and stored back after.
#define NZCV 264
#define FPSR 272
#define FPCR 276
#define SP 248

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

        // Moves Q0 to Q31 from X1 on.
        .macro  vectors move
        .irp    n, 0,2,4,6,8,10,12,14,16,18,20,22,24,26,28,30
        vector_pair \move, \n, %(\n + 1)
        .endr
        .endm
        .altmacro
        .macro  vector_pair move, n, m
        \move   q\n, q\m, [x1, #(16 * \n)]
        .endm

        // The place: room for the words, the way back behind them, and room for generated code.
        .data
        .balign 65536
        .global quern_place
quern_place:
        .skip   256
        .global quern_place_code
quern_place_code:
        .skip   16384
        .balign 65536

        .bss
        .balign 16
image_slot:
        .skip   8

        // void quern_call_place(processor_registers* image, unsigned char* v, uint64_t* own_sp)
        .text
        .balign 16
        .global quern_call_place
        .type   quern_call_place, %function
quern_call_place:
        stp     x29, x30, [sp, #-176]!
        keep    stp
        mrs     x3, fpcr
        stp     x1, x3, [sp, #160]
        mov     x3, sp
        str     x3, [x2]
        adrp    x3, image_slot
        add     x3, x3, #:lo12:image_slot
        str     x0, [x3]
        adrp    x3, own_sp_slot
        str     x2, [x3, #:lo12:own_sp_slot]
        vectors ldp
        ldr     w1, [x0, #FPSR]
        msr     fpsr, x1
        ldr     w1, [x0, #FPCR]
        msr     fpcr, x1
        ldr     x1, [x0, #NZCV]
        msr     nzcv, x1
        ldr     x1, [x0, #SP]
        mov     sp, x1
        .irp    n, 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30
        ldr     x\n, [x0, #(8 * \n)]
        .endr
        ldr     x0, [x0]
        b       quern_place

        // The run's own stack is in order, so a register can wait there.
        .global quern_after_place
quern_after_place:
        str     x30, [sp, #-16]!
        adrp    x30, image_slot
        ldr     x30, [x30, #:lo12:image_slot]
        .irp    n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29
        str     x\n, [x30, #(8 * \n)]
        .endr
        mov     x0, x30
        ldr     x1, [sp], #16
        str     x1, [x0, #(8 * 30)]
        mov     x1, sp
        str     x1, [x0, #SP]
        mrs     x1, nzcv
        str     x1, [x0, #NZCV]
        mrs     x1, fpsr
        str     w1, [x0, #FPSR]
        mrs     x1, fpcr
        str     w1, [x0, #FPCR]
        adrp    x1, own_sp_slot
        ldr     x1, [x1, #:lo12:own_sp_slot]
        ldr     x1, [x1]
        mov     sp, x1
        ldp     x1, x3, [sp, #160]
        msr     fpcr, x3
        vectors stp
        keep    ldp
        ldp     x29, x30, [sp], #176
        ret
        .size   quern_call_place, . - quern_call_place

        .bss
        .balign 8
own_sp_slot:
        .skip   8
        .section .note.GNU-stack, "", %progbits
