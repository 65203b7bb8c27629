"""Compressed blocks of packed records: LZ4's, by its library where that is there."""

import numpy as np

from .packing import MOST_NUMBER_BYTES

try:
    import lz4.block as lz4_block
except ImportError:
    lz4_block = None
DAMAGE = (ValueError, IndexError) + ((lz4_block.LZ4BlockError,) if lz4_block else ())


def decompress(block, records, size):
    """The flags and numbers of so many records, `size` bytes, or nothing where the block is damaged."""
    if not records <= size <= records * (1 + MOST_NUMBER_BYTES) or size // 255 > len(block):
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
