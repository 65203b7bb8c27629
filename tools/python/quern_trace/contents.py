"""Where in a trace file its records and its list of modules are."""

from typing import NamedTuple

import numpy as np

from .format import ALL, BLOCK, CHUNK, EARLIER_BLOCK_BYTES, MODULE, SLOT


class Module(NamedTuple):
    """A program or library whose code was in memory from `begin` to `end`, while the records from `first` on, and below
    `last`, were made."""
    number: int
    begin: int
    end: int
    first: int
    last: int
    path: str
    build_id: str  # hexadecimal; empty where the file has none


class Piece(NamedTuple):
    """Where records lie that one thread stored one after the other: slots of a chunk, or a block of packed ones."""
    offset: int
    thread: int
    records: int  # slots of a chunk, those of unfinished records too
    packed_bytes: int = 0  # 0: slots
    mark: int = 0  # of whole slots
    unpacked_bytes: int = 0  # 0: they are not compressed


class Contents:
    """Attributes: pieces (packed ones first, each in its thread's order), modules, damaged (places that hold nothing
    that makes sense), is_cut."""

    def __init__(self, data, header):
        self.pieces, self.modules, self.damaged = [], [], 0
        self._data, self._version = data, int(header["version"])
        self._chunk_size = size = int(header["chunk_size"])
        self._packed = {}  # by chunk, its last generation that is packed, and how many of its slots
        begin = int(header["header_size"])
        room = max(len(data) - begin, 0)
        self.is_cut = room < int(header["chunks"]) * size or room % size != 0
        # A cut chunk at the end counts, if its header is there.
        starts = begin + size * np.arange(room // size + (room % size >= CHUNK.itemsize), dtype=np.int64)
        magics = np.lib.stride_tricks.as_strided(data[begin:], (len(starts), 8), (size, 1))
        starts = starts[(magics != 0).any(axis=1)]
        self._walk([(int(start), data[start:start + CHUNK.itemsize].view(CHUNK)[0]) for start in starts])

    def _walk(self, chunks):
        for start, chunk in chunks:
            if chunk["magic"] == b"QERNPACK" and self._version > 1:
                self._walk_blocks(start + CHUNK.itemsize, chunk)
            elif chunk["magic"] == b"QERNMODS" and self._version > 2:
                self._walk_modules(start + CHUNK.itemsize, chunk)
            elif chunk["magic"] != b"QERNCHNK":
                self.damaged += 1
        for start, chunk in chunks:
            if chunk["magic"] == b"QERNCHNK":
                self.pieces.append(self._slots(start, chunk))

    def _end(self, at, chunk):
        """Where a chunk's content ends that begins there."""
        return at + min(int(chunk["count"]), self._chunk_size - CHUNK.itemsize)

    def _walk_blocks(self, at, chunk):
        end = self._end(at, chunk)
        header = BLOCK.itemsize if self._version > 3 else EARLIER_BLOCK_BYTES
        while at < end and at + header <= len(self._data):
            block = np.zeros(1, BLOCK)
            block.view(np.uint8)[:header] = self._data[at:at + header]
            size, records, source, generation, _, first_slot, packed, unpacked, _ = block[0].tolist()
            if not header <= size <= end - at or packed > size - header:
                self.damaged += 1
                return
            if at + size > len(self._data):
                return
            self._packed[source] = max(self._packed.get(source, (0, 0)), (generation, first_slot + records))
            if packed:
                self.pieces.append(Piece(at + header, int(chunk["thread"]), records, packed, unpacked_bytes=unpacked))
            at += size

    def _walk_modules(self, at, chunk):
        end = min(self._end(at, chunk), len(self._data))
        while at + MODULE.itemsize <= end:
            entry = self._data[at:at + MODULE.itemsize].view(MODULE)[0]
            size, number, count, _, first_byte, end_byte, _, id_bytes, path_bytes = entry.tolist()
            if size < MODULE.itemsize + id_bytes + path_bytes:
                self.damaged += 1
                return
            if at + size > end:
                return
            if end_byte:
                names = self._data[at + MODULE.itemsize:at + MODULE.itemsize + id_bytes + path_bytes].tobytes()
                self.modules.append(Module(number, first_byte, end_byte, count, int(ALL),
                                           names[id_bytes:].decode(errors="replace"), names[:id_bytes].hex()))
            else:  # it is gone
                self.modules = [module._replace(last=count) if module.number == number else module
                                for module in self.modules]
            at += size

    def _slots(self, start, chunk):
        """Those of a chunk that are not packed yet."""
        generation, done = self._packed.get(int(chunk["number"]), (0, 0))
        first = done if generation == chunk["generation"] else 0
        there = (min(self._chunk_size, len(self._data) - start) - CHUNK.itemsize) // SLOT.itemsize
        count = max(min(int(chunk["count"]), there) - first, 0)
        mark = 1 if self._version == 1 else int(chunk["generation"])
        return Piece(start + CHUNK.itemsize + first * SLOT.itemsize, int(chunk["thread"]), count, mark=mark)
