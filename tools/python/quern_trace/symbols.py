"""Symbols of ELF files with 64-bit little-endian numbers."""

import numpy as np

ELF_HEADER = np.dtype([("ident", "S16"), ("type", "u2"), ("machine", "u2"), ("version", "u4"), ("entry", "u8"),
                       ("phoff", "u8"), ("shoff", "u8"), ("flags", "u4"), ("ehsize", "u2"), ("phentsize", "u2"),
                       ("phnum", "u2"), ("shentsize", "u2"), ("shnum", "u2"), ("shstrndx", "u2")])
SEGMENT = np.dtype([("type", "u4"), ("flags", "u4"), ("offset", "u8"), ("vaddr", "u8"), ("paddr", "u8"),
                    ("filesz", "u8"), ("memsz", "u8"), ("align", "u8")])
SECTION = np.dtype([("name", "u4"), ("type", "u4"), ("flags", "u8"), ("addr", "u8"), ("offset", "u8"), ("size", "u8"),
                    ("link", "u4"), ("info", "u4"), ("addralign", "u8"), ("entsize", "u8")])
SYMBOL = np.dtype([("name", "u4"), ("info", "u1"), ("other", "u1"), ("shndx", "u2"), ("value", "u8"), ("size", "u8")])
LOADED, SYMBOLS, NOTES, DYNAMIC_SYMBOLS, FUNCTION, BUILD_ID = 1, 2, 7, 11, 2, 3


class Functions:
    """The functions of a file, by the distance of their code from where the file's first byte is loaded. A file that
    can't be read, or is no such ELF file, has none."""

    def __init__(self, path):
        self.build_id = ""
        self._symbols, self._names = np.empty(0, SYMBOL), b""
        try:
            self._read(np.fromfile(path, np.uint8))
        except (OSError, ValueError, IndexError):
            pass

    def find(self, offset):
        """`function+0x14`, or None."""
        at = int(np.searchsorted(self._symbols["value"], np.uint64(offset), "right")) - 1
        if at < 0 or offset >= int(self._symbols["value"][at]) + max(int(self._symbols["size"][at]), 1):
            return None
        name = self._names[int(self._symbols["name"][at]):].split(b"\0", 1)[0].decode(errors="replace")
        return f"{name}+{offset - int(self._symbols['value'][at]):#x}"

    def _read(self, data):
        header = data[:ELF_HEADER.itemsize].view(ELF_HEADER)[0]
        if not header["ident"].startswith(b"\x7fELF\2\1"):
            return
        segments = _table(data, SEGMENT, header["phoff"], int(header["phnum"]) * SEGMENT.itemsize)
        loaded = segments[segments["type"] == LOADED]
        first = (loaded["vaddr"] - loaded["offset"]).min()
        sections = _table(data, SECTION, header["shoff"], int(header["shnum"]) * SECTION.itemsize)
        self.build_id = _build_id(data, sections)
        for section in sections[(sections["type"] == DYNAMIC_SYMBOLS) | (sections["type"] == SYMBOLS)][::-1]:
            symbols = _table(data, SYMBOL, section["offset"], section["size"])
            symbols = symbols[(symbols["info"] & 15 == FUNCTION) & (symbols["shndx"] != 0)]
            if len(symbols):  # the whole table stands behind that for the dynamic linker
                self._symbols = symbols[np.argsort(symbols["value"], kind="stable")].copy()
                self._symbols["value"] -= first
                self._names = _content(data, sections[section["link"]])
                return


def _table(data, kind, offset, size):
    return data[int(offset):int(offset) + int(size) // kind.itemsize * kind.itemsize].view(kind)


def _content(data, section):
    return data[int(section["offset"]):int(section["offset"] + section["size"])].tobytes()


def _build_id(data, sections):
    found = ""
    for section in sections[sections["type"] == NOTES]:
        note = _content(data, section)
        if note[8:16] == bytes((BUILD_ID, 0, 0, 0)) + b"GNU\0":
            found = note[16:16 + int.from_bytes(note[4:8], "little")].hex()
    return found
