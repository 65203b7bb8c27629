"""Packed records.

A block is a list of numbers, seven bits a byte: for each record its flags, then the fields that are not what the model
of its thread's records expects. From version 4 on all flags stand before the numbers, and both are compressed. The
blocks of a trace begin with an empty model each, so that they can be unpacked side by side: one record of every block
at a time.
"""

import numpy as np

from .format import ALL, SLOT

PLACES = 128
MEMBER, LAST_OF_GROUP = 2, 4
MOST_NUMBER_BYTES = 56  # of a record
COUNT, PC, TID, KIND, GROUP, SIZE, STRIDE = (1 << bit for bit in range(7))  # flags
FLAGS = 127
FLAG_COUNTS = np.array([bin(flags & FLAGS).count("1") for flags in range(256)])


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
        damaged = ((at > limits[:live]) | (flags > FLAGS)) & (lengths[:live] > step)
        if damaged.any():
            lengths[:live][damaged] = step
        np.minimum(at, len(numbers) - 1, out=at)
    return dict(found, lengths=lengths)


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
        table, live, word = self.table, len(at), np.uint64(0xFFFFFFFF)
        fields = _Fields(numbers, at)
        count = fields.plus(COUNT, self.count + np.uint64(1))
        pc = fields.plus(PC, self._next_pc())
        place = self._place_of(pc)
        taken = {
            "count": count,
            "pc": pc,
            "tid": fields.instead(TID, table["tid"][place]) & word,
            "kind": fields.instead(KIND, table["kind"][place]) & word,
            "group": fields.instead(GROUP, _next_group(table["group"][place])) & word,
            "size": fields.instead(SIZE, table["size"][place]),
        }
        stride = fields.instead(STRIDE, table["stride"][place], _unfold)
        taken["addr"] = table["addr"][place] + stride

        table["next_pc"][self.last] = pc
        self.last, self.count = place, count
        table["stride"][place] = stride
        for name, values in taken.items():
            row[name][:live] = values
            if name in table:
                table[name][place] = values
        return fields.at

    def _next_pc(self):
        goes_on = (self.table["group"][self.last] & np.uint64(MEMBER | LAST_OF_GROUP)) == MEMBER
        return np.where(goes_on, self.table["pc"][self.last], self.table["next_pc"][self.last])

    def _place_of(self, pc):
        """The places of the instructions, empty where they were another's."""
        place = np.arange(len(pc)) * PLACES + ((pc >> np.uint64(2)) & np.uint64(PLACES - 1)).astype(np.int64)
        other_pc = place[self.table["pc"][place] != pc]
        for values in self.table.values():
            values[other_pc] = 0
        return place


class _Fields:
    """The fields of each block's next record, taken in the order of their flags."""

    def __init__(self, numbers, at):
        self._numbers, self._flags = numbers, numbers[at]
        self._used = int(np.bitwise_or.reduce(self._flags, initial=0))
        self.at = at + 1

    def plus(self, flag, expected):
        """What is expected, and the difference where there is one."""
        return expected + _unfold(self._next(flag)[0]) if self._used & flag else expected

    def instead(self, flag, expected, meaning=lambda number: number):
        """What is expected, or what the number means that stands there in its place."""
        if not self._used & flag:
            return expected
        number, is_there = self._next(flag)
        return np.where(is_there, meaning(number), expected)

    def _next(self, flag):
        """The numbers that stand for the field, 0 where there is none, and where there is one."""
        is_there = (self._flags & np.uint64(flag)) != 0
        number = np.where(is_there, self._numbers[np.minimum(self.at, len(self._numbers) - 1)], np.uint64(0))
        self.at = self.at + is_there
        return number, is_there


def _unfold(numbers):
    """Differences of either sign have theirs in the lowest bit."""
    return (numbers >> np.uint64(1)) ^ (np.uint64(0) - (numbers & np.uint64(1)))


def _next_group(groups):
    """The group of the next record of a place, after the last one's."""
    begins = np.uint64(MEMBER | 1)
    next_groups = np.where(groups & np.uint64(LAST_OF_GROUP), begins, np.uint64(MEMBER))
    alone = (groups == 0) | (groups == 7)
    return np.where(alone, groups, next_groups)
