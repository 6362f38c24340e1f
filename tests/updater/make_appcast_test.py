#!/usr/bin/python3
"""What make-appcast writes, and what it refuses to write.

    make_appcast_test.py MAKE-APPCAST [unittest's arguments]
"""
import base64
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from single_file import write_single_file  # noqa: E402

MAKE_APPCAST = sys.argv.pop(1)


class MakeAppcast(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.make_key("key.pem")
        self.make_file([self.public_key("key.pem")])

    def path(self, name):
        return os.path.join(self.folder, name)

    def make_key(self, name, algorithm="ed25519"):
        subprocess.run(["openssl", "genpkey", "-algorithm", algorithm, "-out", self.path(name)], check=True,
                       capture_output=True)

    def public_key(self, name):
        der = subprocess.run(["openssl", "pkey", "-in", self.path(name), "-pubout", "-outform", "DER"], check=True,
                             capture_output=True).stdout
        return base64.b64encode(der[-32:]).decode()

    def make_file(self, keys, kind="appimage"):
        program = self.path("program")
        pathlib.Path(program).write_text("#!/bin/sh\n")
        write_single_file(self.path("Ravlin.AppImage"), program,
                          f"[Update]\nInstallKind={kind} ; itself\nPublicEDKey={','.join(keys)}\n")

    def run_tool(self, version="1.1.0", *more, key="key.pem", url="https://ravlin.example/Ravlin.AppImage", output="out"):
        more = list(more)
        if "--previous" not in more:
            more.append("--first")
        return subprocess.run([MAKE_APPCAST, "--key", self.path(key), "--file", self.path("Ravlin.AppImage"), "--version",
                               version, "--url", url, "--output", self.path(output), *more],
                              capture_output=True, text=True)

    def write(self, *arguments, **options):
        result = self.run_tool(*arguments, **options)
        self.assertEqual(result.returncode, 0, result.stderr)
        return pathlib.Path(self.path(options.get("output", "out"))).read_text()

    def assert_refused(self, reason, *arguments, **options):
        result = self.run_tool(*arguments, **options)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn(reason, result.stderr)
        self.assertFalse(os.path.exists(self.path(options.get("output", "out"))))

    def assert_signed(self, content, signature, key="key.pem"):
        pathlib.Path(self.path("content")).write_bytes(content)
        pathlib.Path(self.path("signature")).write_bytes(base64.b64decode(signature))
        subprocess.run(["openssl", "pkeyutl", "-verify", "-rawin", "-inkey", self.path(key), "-in", self.path("content"),
                        "-sigfile", self.path("signature")], check=True, capture_output=True)

    def test_feed_and_file_are_signed(self):
        text = self.write()
        content, signature, length = re.fullmatch(
            r"(?s)(.*)<!-- sparkle-signatures:\nedSignature: (\S+)\nlength: (\d+)\n-->\n", text).groups()
        self.assertEqual(int(length), len(content.encode()))
        self.assert_signed(content.encode(), signature)
        file = pathlib.Path(self.path("Ravlin.AppImage")).read_bytes()
        self.assertIn(f'length="{len(file)}"', content)
        self.assert_signed(file, re.search(r'sparkle:edSignature="(\S+)"', content)[1])

    def test_everything_that_is_said_is_in_the_feed(self):
        pathlib.Path(self.path("notes")).write_text("# New\n\n* a < b & c\n")
        text = self.write("1.1.0", "--notes", self.path("notes"), "--minimum-system", "2.36", "--critical", "--link",
                          "https://ravlin.example/", "--date", "2026-01-01T00:00:00Z", "--expires-in", "31")
        for part in ("<lastBuildDate>Thu, 01 Jan 2026 00:00:00 +0000</lastBuildDate>",
                     "<ravlin:expires>Sun, 01 Feb 2026 00:00:00 +0000</ravlin:expires>",
                     "<sparkle:version>1.1.0</sparkle:version>", "<sparkle:criticalUpdate />",
                     "<sparkle:minimumSystemVersion>2.36</sparkle:minimumSystemVersion>",
                     "<link>https://ravlin.example/</link>", 'sparkle:format="markdown"', "* a &lt; b &amp; c"):
            self.assertIn(part, text)

    def test_older_releases_stay_for_older_systems(self):
        self.write("1.1.0", output="first")
        text = self.write("1.2.0", "--previous", self.path("first"))
        self.assertLess(text.index("1.2.0</sparkle:version>"), text.index("1.1.0</sparkle:version>"))

    def test_a_version_has_to_be_above_the_previous_one(self):
        self.write("1.10", output="first")
        for version in ("1.10", "1.10.0", "1.9", "0.99"):
            self.assert_refused("is not above 1.10", version, "--previous", self.path("first"))

    def test_a_file_that_does_not_know_the_key_is_refused(self):
        self.make_key("other.pem")
        self.assert_refused("would be cut off", key="other.pem")

    def test_a_file_that_does_not_update_itself_is_refused(self):
        self.make_file([self.public_key("key.pem")], kind="system")
        self.assert_refused("InstallKind is not appimage")
        pathlib.Path(self.path("Ravlin.AppImage")).write_text("#!/bin/sh\n")
        self.assert_refused("has no usr/share/ravlin/update.ini")

    def test_keys_are_rotated_by_shipping_both_first(self):
        self.make_key("new.pem")
        self.write("1.1.0", output="first")
        self.make_file([self.public_key("new.pem")])
        self.assert_refused("signed by none", "1.2.0", "--previous", self.path("first"),
                            key="new.pem")
        self.make_file([self.public_key("key.pem"), self.public_key("new.pem")])
        self.write("1.2.0", "--previous", self.path("first"), key="key.pem", output="second")
        self.write("1.3.0", "--previous", self.path("second"), key="new.pem")

    def test_a_feed_can_be_renewed_without_a_release(self):
        first = self.write("1.1.0", "--date", "2026-02-01T00:00:00Z", "--expires-in", "10", output="first")

        def renew(key):
            return subprocess.run([MAKE_APPCAST, "--key", self.path(key), "--renew", "--previous", self.path("first"),
                                   "--date", "2026-02-05T00:00:00Z", "--output", self.path("renewed")],
                                  capture_output=True, text=True)
        self.make_key("other.pem")
        self.assertIn("signed by none", renew("other.pem").stderr)
        self.assertEqual(renew("key.pem").returncode, 0)
        renewed = pathlib.Path(self.path("renewed")).read_text()
        self.assertIn("Thu, 05 Feb 2026", renewed)
        self.assertNotIn("expires", renewed)
        file_of = re.compile(r"<enclosure [^>]*>")
        self.assertEqual(file_of.findall(renewed), file_of.findall(first))

    def test_dates_that_users_would_not_believe_are_refused(self):
        self.assert_refused("in the future", "1.1.0", "--date", "2999-01-01T00:00:00Z")
        self.write("1.1.0", "--date", "2026-02-01T00:00:00Z", output="first")
        self.assert_refused("before that of the previous feed", "1.2.0", "--previous", self.path("first"), "--date",
                            "2026-01-31T00:00:00Z")

    def test_a_forged_previous_feed_is_refused(self):
        text = self.write("1.1.0", output="first")
        pathlib.Path(self.path("first")).write_text(text.replace("1.1.0", "1.0.0"))
        self.assert_refused("signed by none", "1.2.0", "--previous", self.path("first"))
        pathlib.Path(self.path("first")).write_text(text + "more")
        self.assert_refused("is not a signed feed", "1.2.0", "--previous", self.path("first"))

    def test_other_words_than_versions_addresses_and_keys_are_refused(self):
        self.assert_refused("is not a version", "1.1.0-beta")
        self.assert_refused("--url has to be an https address", url="http://ravlin.example/a")
        self.assert_refused("--url has to be an https address", url="https://user@ravlin.example/a")
        self.assert_refused("--link has to be an https address", "1.1.0", "--link", "ftp://ravlin.example/")
        self.make_key("other.pem", "ed448")
        self.assert_refused("is not an Ed25519 key", key="other.pem")
        self.assert_refused("is not a private key", key="Ravlin.AppImage")

    def test_a_file_with_a_key_that_anybody_can_sign_with_is_refused(self):
        encodings = small_order_encodings()
        self.assertEqual(len(encodings), 14)
        for each in encodings:
            self.make_file([self.public_key("key.pem"), base64.b64encode(each).decode()])
            self.assert_refused("has a key that anybody can sign with")

    def test_a_file_with_a_key_that_is_none_is_refused(self):
        for other in ("AAAA", "", "no Base64", base64.b64encode(bytes(33)).decode()):
            self.make_file([self.public_key("key.pem"), other])
            self.assert_refused("has a key that is none")


# Curve25519 in the coordinates of RFC 8032, section 5.1, as plainly as possible.

PRIME = 2**255 - 19
D = -121665 * pow(121666, -1, PRIME) % PRIME
ORDER = 2**252 + 27742317777372353535851937790883648493  # of the base point; all points are eight times as many


def add(first, second):
    (x1, y1), (x2, y2) = first, second
    product = D * x1 * x2 * y1 * y2
    return ((x1 * y2 + x2 * y1) * pow(1 + product, -1, PRIME) % PRIME,
            (y1 * y2 + x1 * x2) * pow(1 - product, -1, PRIME) % PRIME)


def multiply(factor, point):
    result = (0, 1)
    for digit in f"{factor:b}":
        result = add(result, result)
        if digit == "1":
            result = add(result, point)
    return result


def point_with(y):
    """A point with this y, or None."""
    square = (y * y - 1) * pow(D * y * y + 1, -1, PRIME) % PRIME
    root = pow(square, (PRIME + 3) // 8, PRIME)
    for x in (root, root * pow(2, (PRIME - 1) // 4, PRIME) % PRIME):
        if x * x % PRIME == square:
            return (x, y)
    return None


def small_order_encodings():
    """Every 32 bytes that may be read as a point of order 1, 2, 4 or 8."""
    parts = (multiply(ORDER, point) for point in map(point_with, range(2, 100)) if point)
    generator = next(part for part in parts if multiply(4, part) != (0, 1))
    points = [multiply(factor, generator) for factor in range(8)]
    assert len(set(points)) == 8 and multiply(8, generator) == (0, 1)
    return {(y + more + sign).to_bytes(32, "little") for _, y in points for more in (0, PRIME) for sign in (0, 2**255)
            if y + more < 2**255}


if __name__ == "__main__":
    unittest.main()
