#!/usr/bin/env python3
"""Checks the files that are installed with the editor: their formats, their consistency and their install locations.
Usage: packaging_test.py CMAKE BUILD SOURCE VERSION"""
import configparser
import email.utils
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree
import zlib

CMAKE, BUILD, SOURCE, VERSION = sys.argv[1:5]
PACKAGING = os.path.join(SOURCE, "packaging")

IDENTIFIER = "invalid.varnoth.varnoth"
SPRITE = "image/x-half-life-sprite"
ICON_SIZES = (16, 22, 24, 32, 48, 64, 128, 256)
MIME_INFO = "{http://www.freedesktop.org/standards/shared-mime-info}"


def read(*path):
    with open(os.path.join(SOURCE, *path), "rb") as file:
        return file.read()


def text(*path):
    return read(*path).decode("utf-8")


def parsed(*path):
    return xml.etree.ElementTree.fromstring(read(*path))


def desktop_entry():
    entry = configparser.ConfigParser(interpolation=None)
    entry.optionxform = str
    entry.read_string(text("packaging", "varnoth.desktop"))
    return entry["Desktop Entry"]


def chunks_of_png(data):
    """Yields name and body of each chunk; verifies the checksums."""
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise AssertionError("not a PNG file")
    at = 8
    while at < len(data):
        length, = struct.unpack_from(">I", data, at)
        name, body = data[at + 4:at + 8], data[at + 8:at + 8 + length]
        if zlib.crc32(name + body) != struct.unpack_from(">I", data, at + 8 + length)[0]:
            raise AssertionError(f"{name}: wrong checksum")
        yield name, body
        at += 12 + length


class Install(unittest.TestCase):
    def test_exactly_the_expected_files_are_installed(self):
        with tempfile.TemporaryDirectory() as prefix:
            environment = {name: value for name, value in os.environ.items() if name != "DESTDIR"}
            subprocess.run([CMAKE, "--install", BUILD, "--prefix", prefix], check=True, env=environment,
                           stdout=subprocess.DEVNULL)
            found = {os.path.relpath(os.path.join(folder, name), prefix): os.path.join(folder, name)
                     for folder, _, names in os.walk(prefix) for name in names}
            wanted = {
                "bin/varnoth": None,
                "bin/varnoth-cli": None,
                "share/applications/varnoth.desktop": "varnoth.desktop",
                "share/bash-completion/completions/varnoth-cli": "completions/varnoth-cli.bash",
                "share/doc/varnoth/copyright": "debian/copyright",
                "share/fish/vendor_completions.d/varnoth-cli.fish": "completions/varnoth-cli.fish",
                "share/icons/hicolor/scalable/apps/varnoth.svg": "icons/hicolor/scalable/apps/varnoth.svg",
                "share/man/man1/varnoth-cli.1": "varnoth-cli.1",
                "share/man/man1/varnoth.1": "varnoth.1",
                f"share/metainfo/{IDENTIFIER}.metainfo.xml": f"{IDENTIFIER}.metainfo.xml",
                "share/mime/packages/varnoth.xml": "varnoth.xml",
                "share/thumbnailers/varnoth.thumbnailer": "varnoth.thumbnailer",
                "share/zsh/site-functions/_varnoth-cli": "completions/_varnoth-cli",
            }
            for size in ICON_SIZES:
                icon = f"icons/hicolor/{size}x{size}/apps/varnoth.png"
                wanted["share/" + icon] = icon
            self.assertEqual(sorted(found), sorted(wanted))
            for place, origin in wanted.items():
                if origin:
                    with open(found[place], "rb") as file:
                        self.assertEqual(file.read(), read("packaging", origin), place)
                self.assertEqual(os.access(found[place], os.X_OK), origin is None, place)


def contents(folder):
    """The contents of all files in a folder by their paths; folders have none."""
    found = {}
    for parent, folders, names in os.walk(folder):
        found.update({os.path.relpath(os.path.join(parent, name), folder): None for name in folders})
        for name in names:
            with open(os.path.join(parent, name), "rb") as file:
                found[os.path.relpath(os.path.join(parent, name), folder)] = file.read()
    return found


class InstallScript(unittest.TestCase):
    """packaging/linux/install.sh, which is in the Linux tarball beside the installed tree."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.unpacked = os.path.join(scratch.name, "unpacked")
        self.target = os.path.join(scratch.name, "the target")
        for name, text_of_file in (("bin/varnoth", "program"), ("share/man/man1/varnoth.1", "manual"),
                                   ("share/icons/hicolor/scalable/apps/varnoth.svg", "icon"),
                                   ("share/applications/varnoth.desktop", "Exec=varnoth\nIcon=varnoth\n"),
                                   ("share/thumbnailers/varnoth.thumbnailer",
                                    "TryExec=varnoth-cli\nExec=varnoth-cli thumbnail %i\n")):
            self.write(os.path.join(self.unpacked, name), text_of_file)
        self.write(os.path.join(self.target, "share/man/man1/other.1"), "of another program")

    def write(self, path, text_of_file):
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text_of_file)

    def run_script(self, *arguments):
        # Without the tools that maintain the caches of the desktop.
        tools = os.path.join(os.path.dirname(self.unpacked), "tools")
        if not os.path.exists(tools):
            os.mkdir(tools)
            for tool in ("cp", "dirname", "find", "mkdir", "rm", "rmdir", "sed", "sort"):
                os.symlink(shutil.which(tool), os.path.join(tools, tool))
        script = os.path.join(self.unpacked, "install.sh")
        shutil.copy(os.path.join(PACKAGING, "linux", "install.sh"), script)
        return subprocess.run(["/bin/sh", script, *arguments], env={"PATH": tools, "HOME": self.target}, check=False,
                              capture_output=True, text=True, timeout=60)

    def test_files_are_copied_and_entries_name_the_installed_programs(self):
        self.assertEqual(self.run_script(self.target).returncode, 0)
        found = contents(self.target)
        self.assertEqual(found["bin/varnoth"], b"program")
        self.assertEqual(found["share/man/man1/varnoth.1"], b"manual")
        program = f'"{self.target}/bin/varnoth'
        self.assertEqual(found["share/applications/varnoth.desktop"].decode(), f'Exec={program}"\nIcon=varnoth\n')
        self.assertEqual(found["share/thumbnailers/varnoth.thumbnailer"].decode(),
                         f'TryExec={self.target}/bin/varnoth-cli\nExec={program}-cli" thumbnail %i\n')

    def test_removal_leaves_what_was_there_before(self):
        before = contents(self.target)
        self.run_script(self.target)
        self.assertNotEqual(contents(self.target), before)
        self.assertEqual(self.run_script("--remove", self.target).returncode, 0)
        self.assertEqual(contents(self.target), before)

    def test_folder_is_dot_local_by_default(self):
        self.run_script()
        self.assertIn(".local/bin/varnoth", contents(self.target))

    def test_folders_that_desktop_entries_cannot_name_are_refused(self):
        for name in ("relative", "/tmp/$HOME", '/tmp/"', "/tmp/&", "/tmp/|", "/tmp/`", "/tmp/\\"):
            self.assertEqual(self.run_script(name).returncode, 64, name)

    def test_second_installation_and_second_removal_are_refused(self):
        self.run_script(self.target)
        before = contents(self.target)
        self.assertEqual(self.run_script(self.target).returncode, 1)
        self.assertEqual(contents(self.target), before)
        self.run_script("--remove", self.target)
        self.assertEqual(self.run_script("--remove", self.target).returncode, 1)


class Icons(unittest.TestCase):
    def test_each_png_is_valid_and_has_the_size_of_its_folder(self):
        for size in ICON_SIZES:
            chunks = list(chunks_of_png(read("packaging", f"icons/hicolor/{size}x{size}/apps/varnoth.png")))
            self.assertEqual(chunks[0][0], b"IHDR")
            # 8 bits per channel, red, green, blue and alpha.
            self.assertEqual(struct.unpack(">IIBB", chunks[0][1][:10]), (size, size, 8, 6))
            pixels = zlib.decompress(b"".join(body for name, body in chunks if name == b"IDAT"))
            self.assertEqual(len(pixels), size * (1 + 4 * size))
            self.assertEqual(chunks[-1][0], b"IEND")

    def test_svg_is_square(self):
        drawing = parsed("packaging", "icons/hicolor/scalable/apps/varnoth.svg")
        self.assertEqual(drawing.tag, "{http://www.w3.org/2000/svg}svg")
        self.assertEqual(drawing.get("viewBox"), "0 0 256 256")


class DesktopEntry(unittest.TestCase):
    def test_starts_the_program_with_its_icon(self):
        entry = desktop_entry()
        self.assertEqual(entry["Type"], "Application")
        self.assertEqual(entry["Name"], "Varnoth")
        self.assertEqual(entry["Icon"], "varnoth")
        self.assertEqual(entry["StartupWMClass"], "varnoth")
        self.assertEqual(entry["Terminal"], "false")
        self.assertIn("Graphics", entry["Categories"].split(";"))

    def test_accepts_no_files(self):
        entry = desktop_entry()
        self.assertEqual(entry["Exec"], "varnoth")
        self.assertNotIn("MimeType", entry)


class MimeType(unittest.TestCase):
    def test_sprite_is_recognised_by_name_and_first_bytes(self):
        kind, = parsed("packaging", "varnoth.xml")
        self.assertEqual(kind.get("type"), SPRITE)
        self.assertEqual([glob.get("pattern") for glob in kind.findall(MIME_INFO + "glob")], ["*.spr"])
        match, = kind.findall(f"{MIME_INFO}magic/{MIME_INFO}match")
        self.assertEqual((match.get("type"), match.get("offset"), match.get("value")), ("string", "0", "IDSP"))


class Thumbnailer(unittest.TestCase):
    def test_entry_runs_the_command_line_for_sprites(self):
        entry = configparser.ConfigParser(interpolation=None)
        entry.read_string(text("packaging", "varnoth.thumbnailer"))
        section = entry["Thumbnailer Entry"]
        self.assertEqual(section["TryExec"], "varnoth-cli")
        # File managers create the output file before they start the program.
        self.assertEqual(section["Exec"], "varnoth-cli thumbnail --force %i %o %s")
        self.assertEqual(section["MimeType"], SPRITE + ";")


class Metainfo(unittest.TestCase):
    def setUp(self):
        self.component = parsed("packaging", f"{IDENTIFIER}.metainfo.xml")

    def test_agrees_with_the_other_files(self):
        self.assertEqual(self.component.findtext("id"), IDENTIFIER)
        self.assertEqual(self.component.findtext("launchable"), "varnoth.desktop")
        self.assertEqual(self.component.findtext("icon"), desktop_entry()["Icon"])
        self.assertEqual(self.component.findtext("summary"), desktop_entry()["Comment"])
        self.assertEqual(self.component.findtext("provides/mediatype"), SPRITE)
        self.assertEqual(self.component.findtext("provides/binary"), "varnoth")

    def test_contains_no_url(self):
        self.assertEqual(self.component.findall(".//url"), [])
        # The reverse of a domain in .invalid, which RFC 2606 reserves.
        self.assertEqual(IDENTIFIER.split(".")[0], "invalid")


class Version(unittest.TestCase):
    def setUp(self):
        self.release = parsed("packaging", f"{IDENTIFIER}.metainfo.xml").find("releases/release")
        self.newest = re.search(r"^## (\S+), (\S+)$", text("CHANGELOG.md"), re.MULTILINE)

    def test_version_is_the_same_everywhere(self):
        self.assertEqual(self.release.get("version"), VERSION)
        self.assertEqual(self.newest[1], VERSION)
        self.assertEqual(re.match(r"varnoth \((.*)\) ", text("packaging", "debian", "changelog"))[1], VERSION)
        title = re.search(r'application_title = "(.*)"', text("src", "desktop", "theme", "theme.h"))[1]
        self.assertEqual(title, "Varnoth " + VERSION)

    def test_release_date_is_the_same_everywhere(self):
        day = self.release.get("date")
        self.assertEqual(self.newest[2], day)
        for page in ("varnoth.1", "varnoth-cli.1"):
            self.assertEqual(text("packaging", page).split()[3], day)
        packed = re.search(r"^ -- .*>  (.*)$", text("packaging", "debian", "changelog"), re.MULTILINE)[1]
        self.assertEqual(email.utils.parsedate_to_datetime(packed).date().isoformat(), day)


class Licence(unittest.TestCase):
    def test_package_and_tree_have_the_same_licence(self):
        licence = text("LICENSE")
        holder = re.search(r"^Copyright .*$", licence, re.MULTILINE)[0]
        self.assertEqual(holder, "Copyright 2026 The Varnoth founders")
        terms = licence[licence.index("Permission"):].split()
        packaged = text("packaging", "debian", "copyright")
        self.assertIn(holder.replace("Copyright", "Copyright:"), packaged)
        self.assertEqual([word for word in packaged[packaged.index("Permission"):].split() if word != "."], terms)
        component = parsed("packaging", f"{IDENTIFIER}.metainfo.xml")
        self.assertEqual(licence.split()[0], component.findtext("project_license"))


class Flatpak(unittest.TestCase):
    def test_manifest_refers_to_existing_files(self):
        manifest = json.loads(text("packaging", "flatpak", f"{IDENTIFIER}.json"))
        self.assertEqual(manifest["id"], IDENTIFIER)
        self.assertEqual(manifest["command"], "varnoth")
        self.assertIn(manifest["rename-desktop-file"], os.listdir(PACKAGING))
        self.assertEqual(manifest["rename-icon"], desktop_entry()["Icon"])
        module, = manifest["modules"]
        source = os.path.join(PACKAGING, "flatpak", module["sources"][0]["path"])
        self.assertTrue(os.path.samefile(source, SOURCE))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
