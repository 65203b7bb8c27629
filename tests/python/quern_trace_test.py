"""The Python reader against `quern trace`: the same records, regions and choices from the same files. From the
environment:
  QUERN_COMMAND      the quern command, with an emulator before it if need be
  QUERN_TRACE_MAKER  make_random_trace, likewise
  QUERN_HOST, QUERN_EMULATOR, QUERN_PROGRAMS
                     the embedded host, how to run programs on a processor without SVE, and programs with regions of
                     interest; or none of them
"""

import csv
import importlib.util
import os
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

try:
    import numpy as np
except ImportError:
    print("skipped: there is no numpy")
    sys.exit(77)

TOOLS = os.path.join(os.path.dirname(__file__), "../../tools/python")
sys.path.insert(0, TOOLS)
import quern_trace  # noqa: E402

EARLIER = os.path.join(os.path.dirname(__file__), "../utils/earlier_versions")

QUERN = shlex.split(os.environ["QUERN_COMMAND"])
MAKER = shlex.split(os.environ["QUERN_TRACE_MAKER"])


def dump(path, *options):
    """The records as the command has them, as rows of numbers that record_rows() makes."""
    printed = subprocess.run([*QUERN, "trace", "dump", "--format", "csv", *options, path], check=True,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    rows = []
    for row in csv.DictReader(printed.splitlines()):
        access = [int(row[name] or "0", 0) for name in ("group", "size", "addr", "pc")]
        rows.append((int(row["count"]), int(row["thread"]), row["kind"], *access))
    return rows


def record_rows(records):
    rows = []
    columns = [records[name].tolist() for name in ("count", "thread", "kind", "group", "size", "addr", "pc")]
    for count, thread, kind, *access in zip(*columns):
        is_marker = kind in (quern_trace.START, quern_trace.STOP)
        rows.append((count, thread, quern_trace.KINDS[kind], *([0] * 4 if is_marker else access)))
    return rows


def content(path):
    with open(path, "rb") as file:
        return file.read()


def make_random(path, seed, threads, records, end):
    made = subprocess.run([*MAKER, str(seed), str(threads), str(records), end], env={**os.environ, "QUERN_TRACE": path})
    # An emulator ends as the program does, or tells of the signal by its status.
    killed = (-signal.SIGKILL, 128 + signal.SIGKILL)
    assert made.returncode == 0 if end == "orderly" else made.returncode in killed, made


class Reading(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def path(self, name):
        return os.path.join(self.folder.name, f"{self.id()}.{name}")

    def random(self, seed=1, threads=1, records=20000, end="orderly"):
        path = self.path(f"{seed}.{threads}.{records}.{end}")
        make_random(path, seed, threads, records, end)
        return path

    def chunk_starts(self, data, magic):
        found = [start for start in range(4096, len(data), 65536) if data[start:start + 8] == magic]
        self.assertTrue(found)
        return found

    def assert_same_rows(self, found, wanted):
        """As assertEqual, which takes minutes to describe how long lists differ."""
        differing = next((at for at, (one, other) in enumerate(zip(found, wanted)) if one != other), None)
        if differing is not None:
            self.assertEqual(found[differing], wanted[differing], f"row {differing}")
        self.assertEqual(len(found), len(wanted))

    def assert_same_records(self, path):
        self.assert_same_rows(record_rows(quern_trace.Trace(path).records()), dump(path))

    def test_random_traces_are_as_the_command_has_them(self):
        for seed, threads, records, end in ((1, 1, 0, "orderly"), (2, 1, 1300, "orderly"), (3, 1, 60000, "orderly"),
                                            (4, 3, 30000, "orderly"), (5, 2, 30000, "killed"), (6, 1, 1500, "killed")):
            with self.subTest(seed=seed, threads=threads, records=records, end=end):
                path = self.random(seed, threads, records, end)
                if not os.path.exists(path):  # nothing was traced
                    continue
                self.assert_same_records(path)
                self.assertEqual(quern_trace.Trace(path).finished, end == "orderly")

    def test_choices_are_the_commands(self):
        path = self.random(threads=2)
        trace = quern_trace.Trace(path)
        thread = int(trace.threads()[0])
        self.assertEqual(len(trace.threads()), 2)
        accesses = trace.records(kind="load")
        some = int(np.median(accesses["addr"]))
        place = int(np.median(accesses["pc"]))
        for options, choice in ((("--thread", str(thread)), {"thread": thread}), (("--kind", "load"), {"kind": "load"}),
                                (("--kind", "store"), {"kind": "store"}), (("--region", "0"), {"region": 0}),
                                (("--region", "1"), {"region": 1}), (("--region", "3"), {"region": 3}),
                                (("--address", f"0-{some}"), {"address": (0, some)}),
                                (("--address", str(2**64 - 1)), {"address": 2**64 - 1}),
                                (("--pc", f"{place}-{place + 4096}"), {"pc": (place, place + 4096)}),
                                (("--pc", "0"), {"pc": 0})):
            with self.subTest(options=options):
                self.assert_same_rows(record_rows(trace.records(**choice)), dump(path, *options))

    def test_regions_begin_and_end_at_their_markers(self):
        path = self.random(threads=2)
        trace = quern_trace.Trace(path)
        regions = trace.regions()
        self.assertGreater(len(regions), 3)
        self.assertEqual(list(regions["number"]), list(range(1, len(regions) + 1)))
        for region in regions[:10]:
            rows = dump(path, "--region", str(region["number"]))
            self.assertEqual(rows[0][:3], (region["first"], region["thread"], "start"))
            if region["end"]:
                self.assertEqual(rows[-1][:3], (region["last"], region["thread"], "stop"))
                self.assertLessEqual(trace.start_time, region["begin"])
                self.assertLessEqual(region["begin"], region["end"])

    def test_chunks_hold_each_record_once_and_each_thread_in_order(self):
        path = self.random(threads=2)
        batch, quern_trace.trace.BATCH = quern_trace.trace.BATCH, 3
        try:
            trace = quern_trace.Trace(path)
            parts = list(trace.chunks())
        finally:
            quern_trace.trace.BATCH = batch
        self.assertGreater(len(parts), 2)
        together = np.concatenate(parts)
        np.testing.assert_array_equal(np.sort(together, order="count"), trace.records())
        for thread in trace.threads():
            self.assertTrue((np.diff(together["count"][together["thread"] == thread].astype(np.int64)) > 0).all())

    def test_cut_traces_are_read_as_far_as_they_go(self):
        path = self.random()
        size = os.path.getsize(path)
        whole = content(path)
        starts = self.chunk_starts(whole, b"QERNCHNK") + self.chunk_starts(whole, b"QERNPACK")
        lengths = [100, 4096, size - 1]
        within_chunk = (8, 63, 64, 64 + 47, 64 + 48 * 5, 3000, 40000)
        lengths += [start + length for start in (starts[0], starts[-1]) for length in within_chunk]
        for length in lengths:
            with self.subTest(length=length):
                cut = self.path("cut")
                with open(cut, "wb") as file:
                    file.write(whole[:length])
                self.assert_same_records(cut)
                self.assertTrue(quern_trace.Trace(cut).is_cut)
        self.assertFalse(quern_trace.Trace(path).is_cut)

    def test_earlier_versions_are_read(self):
        data = bytearray(content(self.random(seed=5, records=1000)))  # one chunk of records, whose marks are all 1
        modules = self.chunk_starts(data, b"QERNMODS")[0]
        data[modules:modules + 65536] = bytes(65536)
        slots = self.chunk_starts(data, b"QERNCHNK")[0]
        markers = np.frombuffer(data, quern_trace.format.SLOT, 1364, slots + 64)
        markers["addr"][markers["tid"] >= quern_trace.format.STOP_TID] = 0
        for version in (1, 2):
            with self.subTest(version=version):
                data[8] = version
                path = self.path("earlier")
                with open(path, "wb") as file:
                    file.write(data)
                self.assert_same_records(path)
                trace = quern_trace.Trace(path)
                self.assertEqual((trace.version, trace.modules), (version, []))
                self.assertGreater(len(trace.regions()), 0)
                self.assertEqual(record_rows(trace.records(region=1)), dump(path, "--region", "1"))

    def test_files_of_earlier_writers_are_read(self):
        for version in (1, 2, 3):
            with self.subTest(version=version):
                stored = content(os.path.join(EARLIER, f"version_{version}.trace.lz4"))
                path = self.path(f"version_{version}")
                with open(path, "wb") as file:
                    file.write(quern_trace.compression.decompress_lz4(stored[4:], int.from_bytes(stored[:4], "little")))
                self.assert_same_records(path)
                trace = quern_trace.Trace(path)
                self.assertEqual((trace.version, len(trace.records()), trace.damaged), (version, 1466, 0))

    def test_without_the_compressors_library_all_is_the_same(self):
        path = self.random(records=40000)
        wanted = quern_trace.Trace(path).records()
        compression = quern_trace.compression
        library, compression.lz4_block = compression.lz4_block, None
        try:
            found = quern_trace.Trace(path).records()
        finally:
            compression.lz4_block = library
        self.assertGreater(len(wanted), 30000)
        np.testing.assert_array_equal(found, wanted)

    def test_damaged_compressed_bytes_are_refused(self):
        good = bytes([0x11]) + b"a" + bytes([1, 0, 0x50]) + b"bcdef"  # "a", five more of it, and five letters
        self.assertEqual(quern_trace.compression.decompress_lz4(good, 11), b"aaaaaabcdef")
        for bad in (good[:-1], good[:3], b"", good[:2] + bytes([2]) + good[3:], good[:2] + bytes([0]) + good[3:]):
            with self.subTest(bad=bad), self.assertRaises((ValueError, IndexError)):
                quern_trace.compression.decompress_lz4(bad, 11)
        with self.assertRaises(ValueError):
            quern_trace.compression.decompress_lz4(good, 10)

    def with_modules(self, *entries):
        """A trace whose list of modules is that: of each its number, the record at which it was found, begin, end,
        build ID and path; an end of 0 where it is gone."""
        data = bytearray(content(self.random(records=100)))
        start = self.chunk_starts(data, b"QERNMODS")[0]
        listed = b""
        for number, count, begin, end, build_id, path in entries:
            size = (quern_trace.format.MODULE.itemsize + len(build_id) + len(path) + 7) // 8 * 8
            numbers = (size, number, count, 0, begin, end, 0, len(build_id), len(path))
            entry = np.array([numbers], quern_trace.format.MODULE)
            listed += (entry.tobytes() + build_id + path).ljust(size, b"\0")
        data[start + 28:start + 32] = len(listed).to_bytes(4, "little")
        data[start + 64:start + 64 + len(listed)] = listed
        path = self.path("modules")
        with open(path, "wb") as file:
            file.write(data)
        return quern_trace.Trace(path)

    def test_modules_are_found_by_address_and_record(self):
        trace = self.with_modules((0, 0, 0x1000, 0x2000, b"\xAB\xCD", b"/a/program"),
                                  (1, 5, 0x3000, 0x5000, b"", b"/a/lib1"), (1, 10, 0, 0, b"", b""),
                                  (2, 20, 0x4000, 0x6000, b"", b"/a/lib2"))
        self.assertEqual([module.path for module in trace.modules], ["/a/program", "/a/lib1", "/a/lib2"])
        self.assertEqual([module.build_id for module in trace.modules], ["abcd", "", ""])
        self.assertEqual([module.last for module in trace.modules], [2**64 - 1, 10, 2**64 - 1])
        for address, count, path in ((0xFFF, 0, None), (0x1000, 0, "/a/program"), (0x1FFF, 99, "/a/program"),
                                     (0x2000, 0, None), (0x4800, 0, "/a/lib1"), (0x4800, 9, "/a/lib1"),
                                     (0x4800, 10, "/a/lib2"), (0x4800, 99, "/a/lib2"), (0x3800, 99, "/a/lib1"),
                                     (0x5800, 0, "/a/lib2")):
            with self.subTest(address=hex(address), count=count):
                module = trace.module_of(address, count)
                self.assertEqual(module and module.path, path)
        self.assertEqual(trace.name_of(0x1234), "program+0x234")  # there is no such file
        self.assertEqual(trace.name_of(0x2000), "0x2000")

    def test_damaged_lists_of_modules_are_told(self):
        self.assertEqual(self.with_modules((0, 0, 1, 2, b"", b"a")).damaged, 0)
        path = self.path("modules")
        for at, value in ((0, 8), (52, 100)):  # the entry's size, its path's
            data = bytearray(content(path))
            data[self.chunk_starts(data, b"QERNMODS")[0] + 64 + at] = value
            with open(path, "wb") as file:
                file.write(data)
            self.assertEqual(quern_trace.Trace(path).damaged, 1)

    def test_damaged_packed_records_end_their_block_alone(self):
        good = self.random(records=40000)
        data = content(good)
        first_block = self.chunk_starts(data, b"QERNPACK")[0] + 64
        block = np.frombuffer(data, quern_trace.format.BLOCK, 1, first_block)[0]
        others = set(record_rows(quern_trace.Trace(good).records()[block["records"]:]))
        self.assertGreater(len(others), 30000)
        random = np.random.default_rng(1)
        for _ in range(10):
            damaged = bytearray(data)
            at = first_block + quern_trace.format.BLOCK.itemsize + random.integers(block["packed_bytes"])
            damaged[at] = random.integers(256)
            name = self.path("damaged")
            with open(name, "wb") as file:
                file.write(damaged)
            found = record_rows(quern_trace.Trace(name).records())
            self.assertEqual(others - set(found), set())
            self.assertLessEqual(len(found), len(others) + block["records"])

    def test_what_is_no_trace_is_refused(self):
        good = content(self.random(records=100))
        for name, bad, message in (("empty", b"", "is empty, no trace file"),
                                   ("text", b"some text", "not a trace file"),
                                       ("new", good[:8] + b"\x63" + good[9:], "has format version 99"),
                                       ("other", good[:12] + b"\1\2\3\4" + good[16:], "the other byte order"),
                                       ("sizes", good[:28] + b"\0" + good[29:], "sizes that can't be")):
            with self.subTest(name=name):
                with open(self.path(name), "wb") as file:
                    file.write(bad)
                with self.assertRaisesRegex(quern_trace.TraceError, message):
                    quern_trace.Trace(self.path(name))

    def test_numbers_of_all_lengths_come_back(self):
        wanted = [0, 1, 127, 128, 16383, 16384, 2**32, 2**63 - 1, 2**64 - 1]
        packed = []
        for number in wanted:
            while number >= 0x80:
                packed.append(number & 0x7F | 0x80)
                number >>= 7
            packed.append(number)
        numbers, ends = quern_trace.packing.read_numbers(np.array(packed + [0x80], np.uint8))
        self.assertEqual([int(number) for number in numbers], wanted)
        self.assertEqual(ends[-1], len(packed) - 1)


class ExamplePlots(unittest.TestCase):
    def test_three_pictures_of_what_they_say_are_drawn(self):
        if importlib.util.find_spec("matplotlib") is None:
            self.skipTest("there is no matplotlib")
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "trace")
            make_random(path, 1, 1, 20000, "orderly")
            script = os.path.join(TOOLS, "example_plots.py")
            run = subprocess.run([sys.executable, script, path, folder], check=True, stdout=subprocess.PIPE, text=True)
            accesses = sum(row[2] in ("load", "store") for row in dump(path, "--region", "1"))
            self.assertRegex(run.stdout, f"^make_random_trace: {accesses} accesses of ")
            for name, title, mark, least in (("addresses", "Addresses over time", "PathCollection", 2),
                                             ("footprint", "Footprint over time", "line2d", 3),
                                             ("strides", "Strides: from", "patch_", 12)):
                picture = content(os.path.join(folder, name + ".svg")).decode()
                root = xml.etree.ElementTree.fromstring(picture)
                self.assertIn(f"<!-- {title}", picture)
                drawn = [part for part in root.iter() if part.get("id", "").startswith(mark)]
                self.assertGreaterEqual(len(drawn), least, name)

    def test_a_trace_without_accesses_is_told(self):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "trace")
            make_random(path, 1, 1, 100, "orderly")
            with open(path, "r+b") as file:
                file.truncate(4096 + 64)
            script = os.path.join(TOOLS, "example_plots.py")
            run = subprocess.run([sys.executable, script, path, folder], stderr=subprocess.PIPE, text=True)
            self.assertEqual((run.returncode, run.stderr), (1, f"{path} has no accesses to plot\n"))


@unittest.skipUnless(os.environ.get("QUERN_PROGRAMS"), "no programs to trace")
class Programs(unittest.TestCase):
    def traced(self, program, path):
        emulator, host = shlex.split(os.environ["QUERN_EMULATOR"]), os.environ["QUERN_HOST"]
        preloaded = ["-E", f"LD_PRELOAD={host}"] if emulator else ["env", f"LD_PRELOAD={host}"]
        subprocess.run([*emulator, *preloaded, program], check=True, stdout=subprocess.DEVNULL,
                       env={**os.environ, "QUERN_TRACE": path})
        return quern_trace.Trace(path)

    def test_real_traces_are_as_the_command_has_them(self):
        with tempfile.TemporaryDirectory() as folder:
            for program in shlex.split(os.environ["QUERN_PROGRAMS"]):
                with self.subTest(program=program):
                    path = os.path.join(folder, os.path.basename(program))
                    records = self.traced(program, path).records()
                    self.assertGreater(len(records), 10)
                    self.assertEqual(record_rows(records), dump(path))

    def test_code_is_named_by_its_function(self):
        functions = {"vector_sum": "add_arrays", "sparse_product": "multiply", "butterfly": "join"}
        with tempfile.TemporaryDirectory() as folder:
            for program in shlex.split(os.environ["QUERN_PROGRAMS"]):
                name = os.path.basename(program)
                own = shutil.copy(program, folder)
                trace = self.traced(own, os.path.join(folder, name + ".trace"))
                accesses = trace.records(kind="load")
                self.assertEqual(trace.module_of(accesses["pc"][0]).path, own)
                for pc in np.unique(accesses["pc"]):
                    self.assertRegex(trace.name_of(pc, accesses["count"][-1]),
                                     rf"^{functions[name]}[.a-z0-9]*\+0x[0-9a-f]+$")
                # The program was built anew since.
                image = content(own)
                note = image.index(b"\3\0\0\0GNU\0") + 8
                os.remove(own)
                with open(own, "wb") as file:
                    file.write(image[:note] + bytes([image[note] ^ 1]) + image[note + 1:])
                self.assertRegex(quern_trace.Trace(trace.path).name_of(accesses["pc"][0]), f"^{name}\\+0x[0-9a-f]+$")


if __name__ == "__main__":
    unittest.main(verbosity=2)
