"""Replays every file in transcripts/ against the real helper, and proves that the replayer sees what is wrong."""

import pathlib
import re
import unittest

from helper_process import NoAnswer
from transcript import Mismatch, bytes_of, play, replay

TRANSCRIPTS = sorted((pathlib.Path(__file__).parent / "transcripts").glob("*.txt"))


class Transcripts(unittest.TestCase):
    """A test a file; they are added below."""


for _file in TRANSCRIPTS:
    setattr(Transcripts, "test_" + re.sub(r"\W", "_", _file.stem), lambda self, file=_file: replay(file))


class Replayer(unittest.TestCase):
    PING = '> {"jsonrpc":"2.0","id":1,"method":"ping"}\n'
    PONG = '< {"jsonrpc":"2.0","id":1,"result":{}}\n'

    def test_takes_what_is_right(self):
        play("# A ping.\n" + self.PING + self.PONG)
        play(self.PING + '< {"jsonrpc":"2.0","id":<number>,"result":<any>}\n')
        play(self.PING + self.PING.replace("1", "2") + '<* {"jsonrpc":"2.0","id":2,"result":{}}\n<* '
             + self.PONG.removeprefix("< "))

    def test_sees_an_answer_that_differs_in_one_byte(self):
        for wrong in ('"id":1.0', '"id":"1"', '"id": 1', '"id":"<string>"'):
            with self.subTest(wrong), self.assertRaises(Mismatch):
                play(self.PING + self.PONG.replace('"id":1', wrong))

    def test_sees_an_answer_too_many(self):
        with self.assertRaises(Mismatch):
            play(self.PING)

    def test_sees_that_nothing_is_answered(self):
        with self.assertRaises((Mismatch, NoAnswer)):
            play('> {"jsonrpc":"2.0","method":"notifications/initialized"}\n' + self.PONG, patience=0.2)

    def test_refuses_lines_that_it_does_not_know(self):
        for line in ("? what", "! dance", ">{}"):
            with self.subTest(line), self.assertRaises(ValueError):
                play(line)

    def test_sends_bytes_that_are_no_text(self):
        self.assertEqual(bytes_of(r'{ab*2}\xff\n{"a"}'), b'abab\xff\n{"a"}')


if __name__ == "__main__":
    unittest.main()
