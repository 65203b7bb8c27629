"""How a trace file is laid out: its header, its chunks, and what these hold."""

import numpy as np

LAST_VERSION = 4
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
START_TID, STOP_TID = 0xFFFFFFFF, 0xFFFFFFFE
ALL = np.iinfo(np.uint64).max  # behind every count and address


class TraceError(ValueError):
    """The file is no trace that can be read."""


def read_header(data, path):
    """The file's header; None if the file is cut within it."""
    header = np.zeros(1, HEADER)
    found = data[:HEADER.itemsize]
    header.view(np.uint8)[:len(found)] = found
    header = header[0]
    if header["magic"] != b"QUERNTRC":
        raise TraceError(f"{path} is not a trace file")
    if len(found) < HEADER.itemsize:
        return None
    if header["byte_order"] != 0x01020304:
        raise TraceError(f"{path} was written on a machine of the other byte order")
    if not 1 <= header["version"] <= LAST_VERSION:
        raise TraceError(f"{path} has format version {header['version']}; "
                         f"this reader knows versions 1 to {LAST_VERSION}")
    if (header["record_size"] != SLOT.itemsize or header["chunk_header_size"] != CHUNK.itemsize
            or not 4096 <= header["chunk_size"] <= 1 << 26 or not 512 <= header["header_size"] <= 1 << 24):
        raise TraceError(f"{path} is damaged: its header gives sizes that can't be")
    return header
