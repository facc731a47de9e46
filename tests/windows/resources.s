# Resources as compilers lay them out: "BLOB" of type 10 ("old", language 1031), and 1 of type 16 ("de", 1031, code page
# 1252, and "en", 1033). The tests damage single fields at the offsets in brackets. Linked at address 0.
        .section .rsrc, "a"
tree:     .long 0, 0, 0, 2 << 16                                # (0x00) two types
          .long 10, 1 << 31 | (blobs - tree)
          .long 16, 1 << 31 | (versions - tree)
blobs:    .long 0, 0, 0, 1                                      # (0x20) one named resource
          .long 1 << 31 | (name - tree), 1 << 31 | (blob - tree)
versions: .long 0, 0, 0, 1 << 16                                # (0x38)
          .long 1, 1 << 31 | (version - tree)
blob:     .long 0, 0, 0, 1 << 16                                # (0x50) languages
          .long 1031, old - tree
version:  .long 0, 0, 0, 2 << 16                                # (0x68)
          .long 1031, german - tree, 1033, english - tree
old:      .long oldBytes, 3, 0, 0                               # (0x88) data entries
german:   .long germanBytes, 2, 1252, 0
english:  .long englishBytes, 2, 0, 0
name:     .short 4, 'B', 'L', 'O', 'B'                          # (0xB8)
oldBytes: .ascii "old"
germanBytes: .ascii "de"
englishBytes: .ascii "en"
