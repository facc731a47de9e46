# A module's code, and a pointer, which makes the linker write relocations.
        .text
code:   ret
        .data
        .quad code
