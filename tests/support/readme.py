"""The commands of README.md, for the tests that execute them word for word."""
import pathlib
import re

README = pathlib.Path(__file__).resolve().parent.parent.parent / "README.md"


def section(heading):
    """The text below a heading, up to the next one."""
    sections = re.split(r"^#+ (.*)\n", README.read_text(), flags=re.M)
    return dict(zip(sections[1::2], sections[2::2]))[heading]


def headings_with_commands():
    """The headings that have shell commands below them."""
    headings = re.findall(r"^#+ (.*)$", README.read_text(), flags=re.M)
    return [heading for heading in headings if "```" in section(heading)]


def scripts(heading):
    """The shell commands below a heading, a text for each block."""
    return re.findall(r"^```sh\n(.*?)^```$", section(heading), flags=re.M | re.S)
