"""The icon of Velmora.app, as it is drawn when the bundle is built: IconTests.py SOURCE_DIRECTORY ICNS"""

import pathlib
import plistlib
import re
import struct
import sys
import unittest

ICON = pathlib.Path(sys.argv.pop())
ROOT = pathlib.Path(sys.argv.pop())


def parts():
    """The pixels at a side of each part, by its type."""
    data = ICON.read_bytes()
    kind, size = struct.unpack_from(">4sI", data)
    assert (kind, size) == (b"icns", len(data)), (kind, size)
    place, sides = 8, {}
    while place < len(data):
        kind, size = struct.unpack_from(">4sI", data, place)
        picture = data[place + 8 : place + size]
        assert picture.startswith(b"\x89PNG\r\n\x1a\n") and picture.endswith(b"IEND\xaeB`\x82"), kind
        width, height = struct.unpack_from(">II", picture, 16)
        assert width == height, kind
        sides[kind.decode()] = width
        place += size
    return sides


class IconTests(unittest.TestCase):
    def test_it_has_every_size_from_that_of_a_list_to_that_of_the_dock(self):
        # The types are those of `iconutil`; the second of each pair is for a display of twice the pixels.
        expected = {"ic11": 32, "ic12": 64, "ic07": 128, "ic13": 256, "ic08": 256, "ic14": 512, "ic09": 512, "ic10": 1024}
        self.assertEqual(parts(), expected)

    def test_the_bundle_names_it(self):
        text = (ROOT / "packaging" / "macos" / "Info.plist.in").read_text(encoding="utf-8")
        info = plistlib.loads(re.sub(r"@\w+@", "", text).encode())
        self.assertEqual(info["CFBundleIconFile"], ICON.stem)


if __name__ == "__main__":
    unittest.main()
