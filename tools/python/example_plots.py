"""Three plots of a trace: run it as a script, or cell by cell in an editor that knows `# %%`.

    python3 example_plots.py my.trace [FOLDER]    # writes addresses.svg, footprint.svg, strides.svg
"""

# %% Read the accesses of the first region of interest.
import os
import sys

import matplotlib
import numpy as np

matplotlib.use("svg")
import matplotlib.pyplot as plt  # noqa: E402
import quern_trace  # noqa: E402

path = sys.argv[1] if len(sys.argv) > 1 else "my.trace"
folder = sys.argv[2] if len(sys.argv) > 2 else "."
trace = quern_trace.Trace(path)
records = trace.records(region=1) if len(trace.regions()) else trace.records()
accesses = records[records["kind"] <= quern_trace.LOAD]
if not len(accesses):
    sys.exit(f"{path} has no accesses to plot")
print(f"{trace.application}: {len(accesses)} accesses of {accesses['size'].sum()} bytes")


def save(name):
    plt.tight_layout()
    plt.savefig(os.path.join(folder, name))
    plt.close()


# %% Which addresses, in what order? Arrays far from each other are drawn each in its own band: pages that nobody
# touches are left out.
pages, page_rank = np.unique(accesses["addr"] >> np.uint64(12), return_inverse=True)
height = page_rank + (accesses["addr"] & np.uint64(4095)) / 4096
for kind, color in ((quern_trace.LOAD, "#0072b2"), (quern_trace.STORE, "#d55e00")):
    chosen = np.nonzero(accesses["kind"] == kind)[0]
    chosen = chosen[:: max(len(chosen) // 5000, 1)]  # an SVG has a mark for each point
    plt.scatter(chosen, height[chosen], s=2, color=color, label=quern_trace.KINDS[kind] + "s", rasterized=True)
plt.title("Addresses over time")
plt.xlabel("access")
plt.ylabel("page of 4 KiB, untouched ones left out")
plt.legend()
save("addresses.svg")

# %% How much memory has been touched so far? A line counts where it is met first.
lines = accesses["addr"] >> np.uint64(6)
_, first_met = np.unique(lines, return_index=True)
new = np.zeros(len(accesses), np.int64)
new[first_met] = 1
plt.plot(np.cumsum(new) * 64 / 1024, color="#0072b2")
plt.title("Footprint over time, by the first byte of each access")
plt.xlabel("access")
plt.ylabel("KiB in lines of 64 bytes")
save("footprint.svg")

# %% By which strides does each instruction walk? The ten most frequent.
by_place = accesses[np.argsort(accesses["pc"], kind="stable")]
same_place = by_place["pc"][1:] == by_place["pc"][:-1]
strides = np.diff(by_place["addr"]).astype(np.int64)[same_place]
values, counts = np.unique(strides, return_counts=True)
most = np.argsort(-counts)[:10]
plt.barh([f"{value:+}" for value in values[most]], 100 * counts[most] / max(len(strides), 1), color="#0072b2")
plt.gca().invert_yaxis()
plt.title("Strides: from an instruction's access to its next")
plt.xlabel("% of all")
plt.ylabel("bytes")
save("strides.svg")
