"""What a user asks of a trace file."""

import os

import numpy as np

from .compression import decompress
from .contents import Contents
from .format import HEADER, SLOT, TraceError, read_header
from .packing import unpack_blocks
from .records import from_slots, in_order, is_marker, regions_between, select, together
from .symbols import Functions

BATCH = 1024  # blocks that are unpacked together: up to 1.4 million records


class Trace:
    """A trace file. Of one that was cut short, or whose program still runs or was killed, all whole records are read.

    Attributes: path, version, vector_bytes, page_size, process, parent, application, start_time (nanoseconds since
    1970), finished (the program ended in good order), is_cut, damaged (places that hold nothing that makes sense),
    modules (a list of Module, in the order in which they were found).
    """

    def __init__(self, path):
        self.path = os.fspath(path)
        if os.path.getsize(path) == 0:
            raise TraceError(f"{self.path} is empty, no trace file")
        self._bytes = np.memmap(path, np.uint8, "r")
        header = read_header(self._bytes, self.path)
        self.is_cut, self.damaged, self.modules, self._pieces = True, 0, [], []
        if header is None:
            header = np.zeros(1, HEADER)[0]
        else:
            contents = Contents(self._bytes, header)
            self.is_cut, self.damaged = contents.is_cut, contents.damaged
            self.modules, self._pieces = contents.modules, contents.pieces
        for name in ("version", "vector_bytes", "page_size", "process", "parent", "start_time"):
            setattr(self, name, int(header[name]))
        self.finished = bool(header["finished"])
        self.application = header["application"].split(b"\0")[0].decode(errors="replace")
        self._functions = {}
        self._regions = None

    def chunks(self, **choice):
        """Yields arrays of RECORD, of some million records at most, each in the order of `count`.

        A file with one thread is in order as a whole; the records of several threads are in the order of each thread
        but for what signal handlers trace. Takes the choice that select() takes, and `region`.
        """
        region = choice.pop("region", None)
        for begin in range(0, len(self._pieces), BATCH):
            part = in_order(self._read(self._pieces[begin:begin + BATCH]))
            if region is not None:
                part = part[self.region_of(part) == region]
            part = select(part, **choice)
            if len(part):
                yield part

    def records(self, **choice):
        """All records of the choice as one array of RECORD, in the order of `count`."""
        return together(self.chunks(**choice))

    def threads(self):
        """The kernel's numbers of the threads that have records, sorted."""
        found = [np.unique(part["thread"]) for part in self.chunks()]
        return np.unique(np.concatenate([*found, np.empty(0, np.uint32)]))

    def regions(self):
        """The regions of interest, an array of REGION. They are numbered from 1 on, in the order in which they began;
        a start marker within a region begins none."""
        if self._regions is None:
            self._regions = regions_between(together(part[is_marker(part["kind"])] for part in self.chunks()))
        return self._regions

    def region_of(self, records):
        """For each record the number of its region, or 0 where it is in none."""
        numbers = np.zeros(len(records), np.uint64)
        regions = self.regions()
        for thread in np.unique(regions["thread"]):
            own = np.sort(regions[regions["thread"] == thread], order="first")
            of_thread = np.nonzero(records["thread"] == thread)[0]
            counts = records["count"][of_thread]
            at = np.searchsorted(own["first"], counts, "right") - 1
            inside = (at >= 0) & (counts <= own["last"][at])
            numbers[of_thread[inside]] = own["number"][at[inside]]
        return numbers

    def module_of(self, pc, count=0):
        """The Module that the address was in at the record of that count, or None. A library may be found a little
        later than its first record."""
        found = None
        for module in self.modules:
            if not module.begin <= pc < module.end:
                continue
            if found is None or found.last <= count:
                found = module
            if module.first > count:
                break
        return found

    def name_of(self, pc, count=0):
        """Names an address of code: `function+0x14`, `library.so+0x1f30` where the file has no symbol for it or is not
        the one that was traced any more, or the address alone."""
        module = self.module_of(int(pc), int(count))
        if module is None:
            return f"{int(pc):#x}"
        if module.path not in self._functions:
            self._functions[module.path] = Functions(module.path)
        functions = self._functions[module.path]
        offset = int(pc) - module.begin
        named = functions.build_id == module.build_id and functions.find(offset)
        return named or f"{os.path.basename(module.path)}+{offset:#x}"

    def _read(self, pieces):
        packed = [piece for piece in pieces if piece.packed_bytes]
        parts = [self._unpack(packed)] if packed else []
        for piece in pieces:
            if not piece.packed_bytes:
                slots = self._bytes[piece.offset:piece.offset + piece.records * SLOT.itemsize].view(SLOT)
                slots = slots[slots["complete"] == piece.mark]
                parts.append(from_slots(slots, np.full(len(slots), piece.thread, np.uint32)))
        return np.concatenate(parts)

    def _unpack(self, pieces):
        blocks = [self._bytes[piece.offset:piece.offset + piece.packed_bytes] for piece in pieces]
        flags = None
        if self.version > 3:
            whole = [decompress(block, piece.records, piece.unpacked_bytes) for block, piece in zip(blocks, pieces)]
            flags = [each[:piece.records] for each, piece in zip(whole, pieces)]
            blocks = [each[piece.records:] for each, piece in zip(whole, pieces)]
        slots, lengths = unpack_blocks(blocks, np.array([piece.records for piece in pieces], np.int64), flags)
        return from_slots(slots, np.repeat(np.array([piece.thread for piece in pieces], np.uint32), lengths))
