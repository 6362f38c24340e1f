#!/usr/bin/python3
"""The files that make up an installation.

    installed_files_test.py CMAKE BUILD-FOLDER
"""
import pathlib
import subprocess
import sys
import tempfile
import unittest

CMAKE, BUILD = sys.argv.pop(1), sys.argv.pop(1)
FILES = """
bin/ravlin
share/applications/org.ravlin.ravlin.desktop
share/dbus-1/services/org.ravlin.ravlin.service
share/icons/hicolor/scalable/apps/org.ravlin.ravlin.svg
share/icons/hicolor/symbolic/apps/org.ravlin.ravlin-symbolic.svg
share/man/man1/ravlin.1
share/metainfo/org.ravlin.ravlin.metainfo.xml
""".split()


class InstalledFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.prefix = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        subprocess.run([CMAKE, "--install", BUILD, "--prefix", cls.prefix], check=True, capture_output=True)

    def test_are_these_and_no_others(self):
        found = [str(each.relative_to(self.prefix)) for each in self.prefix.rglob("*") if not each.is_dir()]
        self.assertEqual(sorted(found), FILES)

    def test_can_be_read_by_everybody_and_only_the_program_be_run(self):
        for name in FILES:
            mode = (self.prefix / name).stat().st_mode & 0o777
            self.assertEqual(oct(mode), "0o755" if name == "bin/ravlin" else "0o644", name)

    def test_let_the_session_bus_start_the_program_that_the_desktop_file_names(self):
        desktop = (self.prefix / "share/applications/org.ravlin.ravlin.desktop").read_text()
        service = (self.prefix / "share/dbus-1/services/org.ravlin.ravlin.service").read_text()
        self.assertIn("\nExec=ravlin\n", desktop)
        self.assertIn("\nDBusActivatable=true\n", desktop)
        self.assertRegex(service, r"\nName=org\.ravlin\.ravlin\nExec=/.*/bin/ravlin\n")


if __name__ == "__main__":
    unittest.main()
