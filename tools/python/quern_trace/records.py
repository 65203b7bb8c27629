"""Arrays of records: what is made of the file's, choices of them, and the regions between them."""

import numpy as np

from .format import ALL, START_TID, STOP_TID

STORE, LOAD, START, STOP, UNKNOWN = range(5)
KINDS = ("store", "load", "start", "stop", "unknown")

# One record. `thread` is the kernel's number. A marker has no address and size, but the time in nanoseconds since 1970
# and, where the file tells, the number of the region that it begins or ends.
RECORD = np.dtype([("count", "u8"), ("addr", "u8"), ("pc", "u8"), ("size", "u8"), ("time", "u8"), ("region", "u8"),
                   ("thread", "u4"), ("group", "u4"), ("kind", "u1")])

# One region of interest: the records of one thread from its start marker to its stop marker, or to the thread's last.
# An end of 0 is that of a region that was left open.
REGION = np.dtype([("number", "u8"), ("thread", "u4"), ("first", "u8"), ("last", "u8"), ("begin", "u8"), ("end", "u8")])


def select(records, thread=None, kind=None, address=None, pc=None):
    """The records of a thread, of a kind (as in KINDS), that access one of the addresses (first, last), or of the
    instructions at the addresses (first, last). One number is a range of that alone."""
    chosen = np.ones(len(records), bool)
    is_access = ~is_marker(records["kind"])
    if thread is not None:
        chosen &= records["thread"] == thread
    if kind is not None:
        chosen &= records["kind"] == KINDS.index(kind)
    if address is not None:
        first, last = _range(address)
        begin, end = records["addr"], records["addr"] + np.maximum(records["size"], 1).astype(np.uint64) - np.uint64(1)
        chosen &= is_access & (begin <= last) & (np.where(end < begin, ALL, end) >= first)
    if pc is not None:
        first, last = _range(pc)
        chosen &= is_access & (records["pc"] >= first) & (records["pc"] <= last)
    return records if chosen.all() else records[chosen]


def _range(numbers):
    first, last = numbers if isinstance(numbers, (tuple, list)) else (numbers, numbers)
    return np.uint64(first), np.uint64(last)


def is_marker(kinds):
    return (kinds == START) | (kinds == STOP)


def in_order(records):
    counts = records["count"]
    return records if (counts[:-1] <= counts[1:]).all() else records[np.argsort(counts, kind="stable")]


def together(parts):
    """The arrays as one, in the order of `count`."""
    return in_order(np.concatenate([*parts, np.empty(0, RECORD)]))


def from_slots(slots, threads):
    """The records of an array of SLOT, each of its thread."""
    records = np.empty(len(slots), RECORD)
    for name in ("count", "addr", "pc", "size", "group"):
        records[name] = slots[name]
    records["thread"] = threads
    kinds = np.where(slots["kind"] <= LOAD, slots["kind"], UNKNOWN)
    kinds[slots["tid"] == START_TID] = START
    kinds[slots["tid"] == STOP_TID] = STOP
    records["kind"] = kinds
    markers = is_marker(kinds)
    records["time"] = np.where(markers, slots["size"], 0)
    records["region"] = np.where(markers, slots["addr"], 0)
    for name in ("size", "addr"):
        records[name][markers] = 0
    return records


def regions_between(markers):
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
