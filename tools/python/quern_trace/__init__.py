"""Reads quern's trace files into numpy arrays.

    import quern_trace
    trace = quern_trace.Trace("my.trace")
    loads = trace.records(kind="load", region=1)    # all of them at once, in order
    for part in trace.chunks():                     # any file, in little memory
        print(len(part), part["size"].sum())

Needs Python 3.9 and numpy 1.20 or later, and nothing of quern's. With lz4 (Debian's python3-lz4) it reads faster.
"""

from .contents import Module
from .format import TraceError
from .records import KINDS, LOAD, RECORD, REGION, START, STOP, STORE, UNKNOWN, select
from .trace import Trace

__all__ = ["Trace", "TraceError", "Module", "RECORD", "REGION", "KINDS", "STORE", "LOAD", "START", "STOP", "UNKNOWN",
           "select"]
