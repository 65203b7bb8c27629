"""Reads quern's trace files into numpy arrays.

    import quern_trace
    trace = quern_trace.Trace("my.trace")
    loads = trace.records(kind="load", region=1)    # all of them at once, in order
    for part in trace.chunks():                     # any file, in little memory
        print(len(part), part["size"].sum())

Needs Python 3.9 and numpy 1.20 or later, and nothing of quern's. With lz4 (Debian's python3-lz4) it reads faster.
"""

import os
from typing import NamedTuple

import numpy as np

try:
    import lz4.block as lz4_block
except ImportError:
    lz4_block = None
DAMAGE = (ValueError, IndexError) + ((lz4_block.LZ4BlockError,) if lz4_block else ())

STORE, LOAD, START, STOP, UNKNOWN = range(5)
KINDS = ("store", "load", "start", "stop", "unknown")

# One record. `thread` is the kernel's number. A marker has no address and size, but the time in nanoseconds since 1970
# and, where the file tells, the number of the region that it begins or ends.
RECORD = np.dtype([("count", "u8"), ("addr", "u8"), ("pc", "u8"), ("size", "u8"), ("time", "u8"), ("region", "u8"),
                   ("thread", "u4"), ("group", "u4"), ("kind", "u1")])

# One region of interest: the records of one thread from its start marker to its stop marker, or to the thread's last.
# An end of 0 is that of a region that was left open.
REGION = np.dtype([("number", "u8"), ("thread", "u4"), ("first", "u8"), ("last", "u8"), ("begin", "u8"), ("end", "u8")])

START_TID, STOP_TID = 0xFFFFFFFF, 0xFFFFFFFE
ALL = np.iinfo(np.uint64).max

HEADER = np.dtype([("magic", "S8"), ("version", "u4"), ("byte_order", "u4"), ("header_size", "u4"),
                   ("chunk_size", "u4"), ("chunk_header_size", "u4"), ("record_size", "u4"), ("vector_bytes", "u4"),
                   ("page_size", "u4"), ("start_time", "u8"), ("process", "u8"), ("parent", "u8"), ("chunks", "u8"),
                   ("finished", "u4"), ("stop_error", "u4"), ("open_regions", "u4"), ("reserved", "V44"),
                   ("application", "S384")])
CHUNK = np.dtype([("magic", "S8"), ("number", "u8"), ("pthread", "u8"), ("thread", "u4"), ("count", "u4"),
                  ("time", "u8"), ("generation", "u4"), ("reserved", "V20")])
SLOT = np.dtype([("count", "u8"), ("tid", "u4"), ("group", "u4"), ("kind", "u4"), ("complete", "u4"), ("size", "u8"),
                 ("addr", "u8"), ("pc", "u8")])
BLOCK = np.dtype([("size", "u4"), ("records", "u4"), ("source", "u4"), ("generation", "u4"), ("time", "u8"),
                  ("first_slot", "u4"), ("packed_bytes", "u4"), ("unpacked_bytes", "u4"), ("reserved", "u4")])
EARLIER_BLOCK_BYTES = 32  # of the header, before version 4
MODULE = np.dtype([("size", "u4"), ("number", "u4"), ("count", "u8"), ("time", "u8"), ("begin", "u8"), ("end", "u8"),
                   ("inode", "u8"), ("build_id_bytes", "u4"), ("path_bytes", "u4")])
LAST_VERSION = 4
BATCH = 1024  # blocks that are unpacked together: up to 1.4 million records


class TraceError(ValueError):
    """The file is no trace that can be read."""


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


class _Piece(NamedTuple):
    """Where records lie that one thread stored one after the other: slots of a chunk, or a block of packed ones."""
    offset: int
    thread: int
    records: int  # slots of a chunk, those of unfinished records too
    packed_bytes: int = 0  # 0: slots
    mark: int = 0  # of whole slots
    unpacked_bytes: int = 0  # 0: they are not compressed


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
        header = np.zeros(1, HEADER)
        found = self._bytes[:HEADER.itemsize]
        header.view(np.uint8)[:len(found)] = found
        header = header[0]
        if header["magic"] != b"QUERNTRC":
            raise TraceError(f"{self.path} is not a trace file")
        self.is_cut = len(found) < HEADER.itemsize
        if self.is_cut:
            header = np.zeros(1, HEADER)[0]
        else:
            self._check(header)
        for name in ("version", "vector_bytes", "page_size", "process", "parent", "start_time"):
            setattr(self, name, int(header[name]))
        self.finished = bool(header["finished"])
        self.application = header["application"].split(b"\0")[0].decode(errors="replace")
        self.damaged = 0
        self.modules = []
        self._functions = {}
        self._pieces = [] if self.is_cut else self._walk(header)
        self._regions = None

    def _check(self, header):
        if header["byte_order"] != 0x01020304:
            raise TraceError(f"{self.path} was written on a machine of the other byte order")
        if not 1 <= header["version"] <= LAST_VERSION:
            raise TraceError(f"{self.path} has format version {header['version']}; "
                             f"this reader knows versions 1 to {LAST_VERSION}")
        if (header["record_size"] != SLOT.itemsize or header["chunk_header_size"] != CHUNK.itemsize
                or not 4096 <= header["chunk_size"] <= 1 << 26 or not 512 <= header["header_size"] <= 1 << 24):
            raise TraceError(f"{self.path} is damaged: its header gives sizes that can't be")

    def _walk(self, header):
        """The pieces of the file, packed ones first, each in its thread's order."""
        size, begin = int(header["chunk_size"]), int(header["header_size"])
        room = max(len(self._bytes) - begin, 0)
        self.is_cut = room < int(header["chunks"]) * size or room % size != 0
        # A cut chunk at the end counts, if its header is there.
        starts = begin + size * np.arange(room // size + (room % size >= CHUNK.itemsize), dtype=np.int64)
        magics = np.lib.stride_tricks.as_strided(self._bytes[begin:], (len(starts), 8), (size, 1))
        starts = starts[(magics != 0).any(axis=1)]
        chunks = [(int(start), self._bytes[start:start + CHUNK.itemsize].view(CHUNK)[0]) for start in starts]
        pieces, packed = [], {}
        for start, chunk in chunks:
            if chunk["magic"] == b"QERNPACK" and self.version > 1:
                self._walk_blocks(start + CHUNK.itemsize, chunk, size, pieces, packed)
            elif chunk["magic"] == b"QERNMODS" and self.version > 2:
                self._walk_modules(start + CHUNK.itemsize, chunk, size)
            elif chunk["magic"] != b"QERNCHNK":
                self.damaged += 1
        for start, chunk in chunks:
            if chunk["magic"] == b"QERNCHNK":
                pieces.append(self._slots(start, chunk, size, packed))
        return pieces

    def _walk_blocks(self, at, chunk, size, pieces, packed):
        end = at + min(int(chunk["count"]), size - CHUNK.itemsize)
        header = BLOCK.itemsize if self.version > 3 else EARLIER_BLOCK_BYTES
        while at < end and at + header <= len(self._bytes):
            block = np.zeros(1, BLOCK)
            block.view(np.uint8)[:header] = self._bytes[at:at + header]
            block = block[0]
            if not header <= block["size"] <= end - at or block["packed_bytes"] > block["size"] - header:
                self.damaged += 1
                return
            if at + int(block["size"]) > len(self._bytes):
                return
            # How far the source's records of its last generation are packed.
            slots = int(block["first_slot"]) + int(block["records"])
            source = int(block["source"])
            packed[source] = max(packed.get(source, (0, 0)), (int(block["generation"]), slots))
            if block["packed_bytes"]:
                pieces.append(_Piece(at + header, int(chunk["thread"]), int(block["records"]),
                                     int(block["packed_bytes"]), unpacked_bytes=int(block["unpacked_bytes"])))
            at += int(block["size"])

    def _walk_modules(self, at, chunk, size):
        end = min(at + min(int(chunk["count"]), size - CHUNK.itemsize), len(self._bytes))
        while at + MODULE.itemsize <= end:
            entry = self._bytes[at:at + MODULE.itemsize].view(MODULE)[0]
            id_bytes, path_bytes = int(entry["build_id_bytes"]), int(entry["path_bytes"])
            if int(entry["size"]) < MODULE.itemsize + id_bytes + path_bytes:
                self.damaged += 1
                return
            if at + int(entry["size"]) > end:
                return
            number, count = int(entry["number"]), int(entry["count"])
            if entry["end"]:
                names = self._bytes[at + MODULE.itemsize:at + MODULE.itemsize + id_bytes + path_bytes].tobytes()
                self.modules.append(Module(number, int(entry["begin"]), int(entry["end"]), count, int(ALL),
                                           names[id_bytes:].decode(errors="replace"), names[:id_bytes].hex()))
            else:  # it is gone
                self.modules = [module._replace(last=count) if module.number == number else module
                                for module in self.modules]
            at += int(entry["size"])

    def _slots(self, start, chunk, size, packed):
        generation, done = packed.get(int(chunk["number"]), (0, 0))
        first = done if generation == chunk["generation"] else 0
        there = (min(size, len(self._bytes) - start) - CHUNK.itemsize) // SLOT.itemsize
        count = max(min(int(chunk["count"]), there) - first, 0)
        mark = 1 if self.version == 1 else int(chunk["generation"])
        return _Piece(start + CHUNK.itemsize + first * SLOT.itemsize, int(chunk["thread"]), count, mark=mark)

    def chunks(self, **choice):
        """Yields arrays of RECORD, of some million records at most, each in the order of `count`.

        A file with one thread is in order as a whole; the records of several threads are in the order of each thread
        but for what signal handlers trace. Takes the choice that select() takes, and `region`.
        """
        region = choice.pop("region", None)
        for batch in self._batches():
            part = _in_order(self._read(batch))
            if region is not None:
                part = part[self.region_of(part) == region]
            part = select(part, **choice)
            if len(part):
                yield part

    def records(self, **choice):
        """All records of the choice as one array of RECORD, in the order of `count`."""
        parts = list(self.chunks(**choice))
        return _in_order(np.concatenate(parts) if parts else np.empty(0, RECORD))

    def threads(self):
        """The kernel's numbers of the threads that have records, sorted."""
        found = [np.unique(part["thread"]) for part in self.chunks()]
        return np.unique(np.concatenate(found + [np.empty(0, np.uint32)]))

    def regions(self):
        """The regions of interest, an array of REGION. They are numbered from 1 on, in the order in which they began;
        a start marker within a region begins none."""
        if self._regions is None:
            markers = [part[(part["kind"] == START) | (part["kind"] == STOP)] for part in self.chunks()]
            self._regions = _regions_between(_in_order(np.concatenate(markers + [np.empty(0, RECORD)])))
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
            self._functions[module.path] = _Functions(module.path)
        functions = self._functions[module.path]
        offset = int(pc) - module.begin
        named = functions.build_id == module.build_id and functions.find(offset)
        return named or f"{os.path.basename(module.path)}+{offset:#x}"

    def _batches(self):
        """The pieces, so many at a time as are unpacked together."""
        for begin in range(0, len(self._pieces), BATCH):
            yield self._pieces[begin:begin + BATCH]

    def _read(self, pieces):
        packed = [piece for piece in pieces if piece.packed_bytes]
        parts = [self._unpack(packed)] if packed else []
        for piece in pieces:
            if not piece.packed_bytes:
                slots = self._bytes[piece.offset:piece.offset + piece.records * SLOT.itemsize].view(SLOT)
                slots = slots[slots["complete"] == piece.mark]
                parts.append(_records(slots, np.full(len(slots), piece.thread, np.uint32)))
        return np.concatenate(parts)

    def _unpack(self, pieces):
        blocks = [self._bytes[piece.offset:piece.offset + piece.packed_bytes] for piece in pieces]
        flags = None
        if self.version > 3:
            whole = [_decompress(block, piece) for block, piece in zip(blocks, pieces)]
            flags = [each[:piece.records] for each, piece in zip(whole, pieces)]
            blocks = [each[piece.records:] for each, piece in zip(whole, pieces)]
        slots, lengths = unpack_blocks(blocks, np.array([piece.records for piece in pieces], np.int64), flags)
        return _records(slots, np.repeat(np.array([piece.thread for piece in pieces], np.uint32), lengths))


def select(records, thread=None, kind=None, address=None, pc=None):
    """The records of a thread, of a kind (as in KINDS), that access one of the addresses (first, last), or of the
    instructions at the addresses (first, last). One number is a range of that alone."""
    chosen = np.ones(len(records), bool)
    is_marker = (records["kind"] == START) | (records["kind"] == STOP)
    if thread is not None:
        chosen &= records["thread"] == thread
    if kind is not None:
        chosen &= records["kind"] == KINDS.index(kind)
    if address is not None:
        first, last = _range(address)
        begin, end = records["addr"], records["addr"] + np.maximum(records["size"], 1).astype(np.uint64) - np.uint64(1)
        chosen &= ~is_marker & (begin <= last) & (np.where(end < begin, ALL, end) >= first)
    if pc is not None:
        first, last = _range(pc)
        chosen &= ~is_marker & (records["pc"] >= first) & (records["pc"] <= last)
    return records if chosen.all() else records[chosen]


def _in_order(records):
    counts = records["count"]
    return records if (counts[:-1] <= counts[1:]).all() else records[np.argsort(counts, kind="stable")]


def _range(numbers):
    first, last = numbers if isinstance(numbers, (tuple, list)) else (numbers, numbers)
    return np.uint64(first), np.uint64(last)


def _records(slots, threads):
    records = np.empty(len(slots), RECORD)
    for name in ("count", "addr", "pc", "size", "group"):
        records[name] = slots[name]
    records["thread"] = threads
    kinds = np.where(slots["kind"] <= LOAD, slots["kind"], UNKNOWN)
    kinds[slots["tid"] == START_TID] = START
    kinds[slots["tid"] == STOP_TID] = STOP
    records["kind"] = kinds
    is_marker = (kinds == START) | (kinds == STOP)
    records["time"] = np.where(is_marker, slots["size"], 0)
    records["region"] = np.where(is_marker, slots["addr"], 0)
    for name in ("size", "addr"):
        records[name][is_marker] = 0
    return records


def _regions_between(markers):
    regions, open_in = {}, {}
    for marker in markers:
        thread = int(marker["thread"])
        if marker["kind"] == START and thread not in open_in:
            number = int(marker["region"]) or len(regions) + 1
            open_in[thread] = number
            regions[number] = [number, thread, int(marker["count"]), int(ALL), int(marker["time"]), 0]
        elif marker["kind"] == STOP and thread in open_in:
            region = regions[open_in.pop(thread)]
            region[3], region[5] = int(marker["count"]), int(marker["time"])
    return np.array([tuple(regions[number]) for number in sorted(regions)], REGION)


# Symbols of ELF files with 64-bit little-endian numbers.

ELF_HEADER = np.dtype([("ident", "S16"), ("type", "u2"), ("machine", "u2"), ("version", "u4"), ("entry", "u8"),
                       ("phoff", "u8"), ("shoff", "u8"), ("flags", "u4"), ("ehsize", "u2"), ("phentsize", "u2"),
                       ("phnum", "u2"), ("shentsize", "u2"), ("shnum", "u2"), ("shstrndx", "u2")])
SEGMENT = np.dtype([("type", "u4"), ("flags", "u4"), ("offset", "u8"), ("vaddr", "u8"), ("paddr", "u8"),
                    ("filesz", "u8"), ("memsz", "u8"), ("align", "u8")])
SECTION = np.dtype([("name", "u4"), ("type", "u4"), ("flags", "u8"), ("addr", "u8"), ("offset", "u8"), ("size", "u8"),
                    ("link", "u4"), ("info", "u4"), ("addralign", "u8"), ("entsize", "u8")])
SYMBOL = np.dtype([("name", "u4"), ("info", "u1"), ("other", "u1"), ("shndx", "u2"), ("value", "u8"), ("size", "u8")])
LOADED, SYMBOLS, NOTES, DYNAMIC_SYMBOLS, FUNCTION, BUILD_ID = 1, 2, 7, 11, 2, 3


class _Functions:
    """The functions of a file, by the distance of their code from where the file's first byte is loaded. A file that
    can't be read, or is no such ELF file, has none."""

    def __init__(self, path):
        self.build_id = ""
        self._symbols, self._names = np.empty(0, SYMBOL), b""
        try:
            self._read(np.fromfile(path, np.uint8))
        except (OSError, ValueError, IndexError):
            pass

    def _read(self, data):
        header = data[:ELF_HEADER.itemsize].view(ELF_HEADER)[0]
        if not header["ident"].startswith(b"\x7fELF\2\1"):
            return

        def table(kind, offset, size):
            return data[int(offset):int(offset) + int(size) // kind.itemsize * kind.itemsize].view(kind)

        segments = table(SEGMENT, header["phoff"], int(header["phnum"]) * SEGMENT.itemsize)
        loaded = segments[segments["type"] == LOADED]
        first = int((loaded["vaddr"] - loaded["offset"]).min())
        sections = table(SECTION, header["shoff"], int(header["shnum"]) * SECTION.itemsize)
        for section in sections[sections["type"] == NOTES]:
            note = data[int(section["offset"]):int(section["offset"] + section["size"])].tobytes()
            if note[8:16] == bytes((BUILD_ID, 0, 0, 0)) + b"GNU\0":
                self.build_id = note[16:16 + int.from_bytes(note[4:8], "little")].hex()
        for section in sections[(sections["type"] == DYNAMIC_SYMBOLS) | (sections["type"] == SYMBOLS)][::-1]:
            symbols = table(SYMBOL, section["offset"], section["size"])
            symbols = symbols[(symbols["info"] & 15 == FUNCTION) & (symbols["shndx"] != 0)]
            if len(symbols):  # the whole table stands behind that for the dynamic linker
                self._symbols = symbols[np.argsort(symbols["value"], kind="stable")].copy()
                self._symbols["value"] -= np.uint64(first)
                names = sections[section["link"]]
                self._names = data[int(names["offset"]):int(names["offset"] + names["size"])].tobytes()
                return

    def find(self, offset):
        """`function+0x14`, or None."""
        at = int(np.searchsorted(self._symbols["value"], np.uint64(offset), "right")) - 1
        if at < 0 or offset >= int(self._symbols["value"][at]) + max(int(self._symbols["size"][at]), 1):
            return None
        name = self._names[int(self._symbols["name"][at]):].split(b"\0", 1)[0].decode(errors="replace")
        return f"{name}+{offset - int(self._symbols['value'][at]):#x}"


# Packed records. A block is a list of numbers, seven bits a byte: for each record its flags, then the fields that are
# not what the model of its thread's records expects. From version 4 on all flags stand before the numbers, and both are
# compressed. The blocks of a trace begin with an empty model each, so that they can be unpacked side by side: the loop
# below takes one record of every block at a time.

PLACES = 128
MEMBER, LAST_OF_GROUP = 2, 4
MOST_NUMBER_BYTES = 56  # of a record
FLAG_BITS = 7
FLAG_COUNTS = np.array([bin(flags & (1 << FLAG_BITS) - 1).count("1") for flags in range(256)])


def _decompress(block, piece):
    """The flags and numbers of a block, or nothing where they are damaged."""
    size = piece.unpacked_bytes
    if not piece.records <= size <= piece.records * (1 + MOST_NUMBER_BYTES) or size // 255 > piece.packed_bytes:
        return np.empty(0, np.uint8)
    data = block.tobytes()
    try:
        found = lz4_block.decompress(data, uncompressed_size=size) if lz4_block else decompress_lz4(data, size)
    except DAMAGE:
        found = b""
    return np.frombuffer(found if len(found) == size else b"", np.uint8)


def decompress_lz4(data, most):
    """The content of a block of LZ4's, of `most` bytes at most: literal bytes and repetitions of earlier ones in turn.
    Raises ValueError or IndexError where it is damaged."""
    found, at = bytearray(), 0

    def length(four_bits):
        nonlocal at
        total, more = four_bits, 255 if four_bits == 15 else 0
        while more == 255:
            more = data[at]
            at += 1
            total += more
        return total

    while True:
        token = data[at]
        at += 1
        literals = length(token >> 4)
        if at + literals > len(data) or len(found) + literals > most:
            raise ValueError("literals behind the end")
        found += data[at:at + literals]
        at += literals
        if at == len(data):
            return bytes(found)
        distance = data[at] | data[at + 1] << 8
        at += 2
        repeated = length(token & 15) + 4
        if not 0 < distance <= len(found) or len(found) + repeated > most:
            raise ValueError("a repetition of what is not there")
        pattern = found[-distance:][:repeated]
        found += (pattern * (repeated // len(pattern) + 1))[:repeated]


def read_numbers(packed):
    """All numbers in the bytes, and where each ends. Bytes behind the last whole number are left out; one of more than
    ten bytes is cut to these."""
    ends = np.nonzero(packed < 0x80)[0]
    starts = np.concatenate(([0], ends[:-1] + 1)) if len(ends) else ends
    lengths = ends - starts + 1
    numbers = (packed[starts] & 0x7F).astype(np.uint64)
    for byte in range(1, min(int(lengths.max(initial=0)), 10)):
        longer = np.nonzero(lengths > byte)[0]
        bits = (packed[starts[longer] + byte] & 0x7F).astype(np.uint64)
        numbers[longer] |= bits << np.uint64(7 * byte)
    return numbers, ends


def unpack_blocks(blocks, counts, flags=None):
    """The records of the blocks, an array of SLOT, one block after the other, and how many each block has: `counts` or,
    where a block is damaged, those before. Where the flags are apart from the numbers, the blocks are but these."""
    separated = [part for block in blocks for part in (block, np.zeros(1, np.uint8))]  # an unfinished number ends there
    numbers, ends = read_numbers(np.concatenate(separated))
    borders = np.cumsum([len(block) + 1 for block in blocks])
    limits = np.searchsorted(ends, borders - 1)  # the number that is the separator
    starts = np.concatenate(([0], limits[:-1] + 1))
    if flags is not None:
        numbers, starts, limits, whole = _put_flags_between(numbers, starts, limits, flags)
        counts = np.minimum(counts, whole)
    counts = np.minimum(counts, limits - starts)  # a record is a number at least

    longest_first = np.argsort(-counts, kind="stable")
    unpacked = _unpack_side_by_side(numbers, starts[longest_first], limits[longest_first], counts[longest_first])
    lengths = np.empty(len(blocks), np.int64)
    lengths[longest_first] = unpacked.pop("lengths")
    row = np.argsort(longest_first)
    there = np.arange(unpacked["pc"].shape[0])[None, :] < lengths[:, None]
    records = np.zeros(int(lengths.sum()), SLOT)
    for name, values in unpacked.items():
        records[name] = values.T[row][there]
    return records, lengths


def _put_flags_between(numbers, starts, limits, flags):
    """The lists of numbers with the flags of each record before its numbers, as far as all of these are there, and how
    many these records are."""
    places, kept = [], []
    for start, limit, block_flags in zip(starts, limits, flags):
        ends = start + np.cumsum(FLAG_COUNTS[block_flags])
        whole = int(np.searchsorted(ends, limit, "right"))
        places.append(np.concatenate(([start], ends))[:whole])
        kept.append(block_flags[:whole])
    counts = np.array([len(block_flags) for block_flags in kept])
    added = np.cumsum(counts)
    numbers = np.insert(numbers, np.concatenate(places).astype(np.int64), np.concatenate(kept))
    return numbers, starts + np.concatenate(([0], added[:-1])), limits + added, counts


def _unpack_side_by_side(numbers, at, limits, counts):
    """Unpacks from numbers[at[i]:limits[i]] counts[i] records for each i; the counts fall. Answers arrays of all
    blocks' first, second, ... records by field, and the number of records that were whole."""
    steps, width = int(counts.max(initial=0)), len(counts)
    fields = ("count", "tid", "group", "kind", "size", "addr", "pc")
    found = {name: np.zeros((steps, width), SLOT[name]) for name in fields}
    lengths = counts.copy()
    numbers = np.append(numbers, np.zeros(1, np.uint64))
    model = _Model(width)
    for step in range(steps):
        live = int(np.searchsorted(-counts, -step))  # blocks with a record of that number
        model.narrow(live)
        at = at[:live]
        flags = numbers[at]
        at = model.take(numbers, at, {name: values[step] for name, values in found.items()})
        damaged = ((at > limits[:live]) | (flags > 127)) & (lengths[:live] > step)
        if damaged.any():
            lengths[:live][damaged] = step
        np.minimum(at, len(numbers) - 1, out=at)
    return dict(found, lengths=lengths)


class _Model:
    """What comes next in each block, as far as its records so far tell: 128 places, by the instructions' addresses."""

    FIELDS = ("pc", "addr", "stride", "size", "next_pc", "tid", "group", "kind")

    def __init__(self, width):
        self.table = {name: np.zeros(PLACES * width, np.uint64) for name in self.FIELDS}
        self.last = np.arange(width) * PLACES  # the last record's place
        self.count = np.full(width, ALL, np.uint64)

    def narrow(self, live):
        self.last, self.count = self.last[:live], self.count[:live]

    def take(self, numbers, at, row):
        """Unpacks the next record of each block from numbers[at], to the arrays of `row`, and learns it. Answers where
        the records behind begin."""
        table, live = self.table, len(at)
        flags = numbers[at]
        used = int(np.bitwise_or.reduce(flags, initial=0))
        at = at + 1

        def field(flag):
            """The numbers that stand for the field, 0 where it is as expected, and where that is not so."""
            nonlocal at
            other = (flags & np.uint64(flag)) != 0
            number = np.where(other, numbers[np.minimum(at, len(numbers) - 1)], np.uint64(0))
            at = at + other
            return number, other

        def expected_plus(expected, flag):
            return expected + _unfold(field(flag)[0]) if used & flag else expected

        def expected_or(expected, flag):
            if not used & flag:
                return expected
            number, other = field(flag)
            return np.where(other, number, expected)

        count = expected_plus(self.count + np.uint64(1), 1)
        goes_on = (table["group"][self.last] & np.uint64(MEMBER | LAST_OF_GROUP)) == MEMBER
        pc = expected_plus(np.where(goes_on, table["pc"][self.last], table["next_pc"][self.last]), 2)
        place = np.arange(live) * PLACES + ((pc >> np.uint64(2)) & np.uint64(PLACES - 1)).astype(np.int64)
        other_pc = place[table["pc"][place] != pc]
        for values in table.values():
            values[other_pc] = 0
        table["pc"][place] = pc

        word = np.uint64(0xFFFFFFFF)
        tid = expected_or(table["tid"][place], 4) & word
        kind = expected_or(table["kind"][place], 8) & word
        group = expected_or(_next_group(table["group"][place]), 16) & word
        size = expected_or(table["size"][place], 32)
        address = table["addr"][place]
        if used & 64:
            number, other = field(64)
            stride = np.where(other, _unfold(number), table["stride"][place])
        else:
            stride = table["stride"][place]
        address = address + stride

        table["next_pc"][self.last] = pc
        self.last, self.count = place, count
        for name, values in (("tid", tid), ("kind", kind), ("group", group), ("size", size), ("addr", address),
                             ("stride", stride)):
            table[name][place] = values
        for name, values in (("count", count), ("pc", pc), ("tid", tid), ("kind", kind), ("group", group),
                             ("size", size), ("addr", address)):
            row[name][:live] = values
        return at


def _unfold(numbers):
    """Differences of either sign have theirs in the lowest bit."""
    return (numbers >> np.uint64(1)) ^ (np.uint64(0) - (numbers & np.uint64(1)))


def _next_group(groups):
    """The group of the next record of a place, after the last one's."""
    begins = np.uint64(MEMBER | 1)
    next_groups = np.where(groups & np.uint64(LAST_OF_GROUP), begins, np.uint64(MEMBER))
    alone = (groups == 0) | (groups == 7)
    return np.where(alone, groups, next_groups)
