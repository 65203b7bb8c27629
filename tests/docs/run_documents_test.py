"""run_documents.py itself: it must find what is wrong in a document."""

import tempfile
import unittest

import run_documents


def outcome(text, update=False):
    """The failures and complaints of a document, and its lines afterwards."""
    lines = text.split("\n")
    blocks, complaints = run_documents.blocks_of("page", lines)
    with tempfile.TemporaryDirectory() as folder:
        failures, _ = run_documents.check("page", blocks, folder, {"PATH": "/usr/bin:/bin"}, update, lines)
    return failures + complaints, "\n".join(lines)


class Documents(unittest.TestCase):
    def test_right_ones_pass(self):
        for text in ("", "no commands", "```sh\ntrue\n# a comment\n```", "```console\n$ echo a\na\n```",
                     "```console\n$ echo a\na\n$ false\n[status 1]\n```",
                     "```sh\nexport A=b\n```\n```console\n$ echo $A\nb\n```", "```console\n$ echo a \\\n  b\na b\n```",
                     "```console\n$ seq 9\n1\n...\n9\n```",
                     "```console\n$ echo 'process  7 (parent 6)'\nprocess  12 (parent 9)\n```",
                     "```console\n$ echo at 0x10\nat 0x2f\n```", "<!-- not run: a reason -->\n```sh\nfalse\n```",
                     "```sh\nf() {\n  echo $1\n}\n```\n```console\n$ f 5\n5\n```",
                     "```text\n$ false\n```", "    indented text",
                     "[a](README.md#here) [b](https://example.com/none)"):
            with self.subTest(text=text):
                self.assertEqual(outcome(text)[0], [])

    def test_wrong_ones_fail(self):
        for text in ("```sh\nfalse\n```", "```sh\ntrue\nfalse\ntrue\n```", "```console\n$ echo a\nb\n```",
                     "```console\n$ echo a\n```", "```console\n$ true\na\n```", "```console\n$ false\n```",
                     "```console\n$ echo 1\n2\n```", "```console\n$ seq 9\n1\n...\n8\n```",
                     "<!-- not run: -->\n```sh\nfalse\n```", "    $ quern --version", "see [a](absent.md)",
                     "    quern trace info my.trace"):
            with self.subTest(text=text):
                self.assertEqual(len(outcome(text)[0]), 1)

    def test_output_is_written_anew(self):
        failures, fresh = outcome("a\n```console\n$ echo 1 \\\n  2\nold\n\n$ echo 3\n```\nb", update=True)
        self.assertEqual((failures, fresh), ([], "a\n```console\n$ echo 1 \\\n  2\n1 2\n\n$ echo 3\n3\n```\nb"))
        kept = "```console\n$ seq 9\n8\n...\n```"
        self.assertEqual(outcome(kept, update=True)[1], kept)

    def test_commands_that_end_the_shell_are_told(self):
        with self.assertRaisesRegex(SystemExit, "the shell ended early"):
            outcome("```sh\nexit 0\n```")


if __name__ == "__main__":
    unittest.main()
