"""Writes the manual pages (section 3) of the functions and records from Doxygen's XML.

usage: man_pages.py XML_DIRECTORY OUTPUT_DIRECTORY VERSION
"""
import pathlib
import re
import sys
import textwrap
import xml.etree.ElementTree as xml

HEADER = "#include <qmdatabase/QMNative.h>"
VALUE_FUNCTIONS = ["qmdbAddMatterParam", "qmdbAddPhaseParam", "qmdbGetParamValue"]
CONVENTIONS_PAGE = "qmdbOpen"  # the function that every host calls first has them in full
CODE_START = re.compile(r"; (?=(?:and )?QMDB_)")
CODE = re.compile(r"(?:and )?(QMDB_\w+ \((?:\\-)?\d+\))[:,]?\s*(.*)")
BARE_CODES = {"QMDB_E_NULL_POINTER": "a pointer is null"}
SENTENCE_END = re.compile(r"(?<=[a-z0-9])\. (?=[A-Z])")
LINE_WIDTH = 72


def escaped(text):
    text = text.replace("\\", r"\e").replace("-", r"\-")
    return re.sub(r"^([.'])", r"\\&\1", text)


def plain(element):
    return " ".join("".join(element.itertext()).split())


def rendered(element):
    """A paragraph's text with the names of functions and records in bold."""
    parts = [escaped(element.text or "")]
    for child in element:
        if child.tag in ("parameterlist", "simplesect", "itemizedlist", "orderedlist", "verbatim"):
            parts.append(escaped(child.tail or ""))
            continue
        text = rendered(child)
        parts.append(rf"\fB{text}\fP" if child.tag in ("ref", "computeroutput") else text)
        parts.append(escaped(child.tail or ""))
    return " ".join("".join(parts).split())


def paragraphs(element):
    """The lines of a description: paragraphs, lists and literal blocks."""
    for para in element.findall("para"):
        text = rendered(para)
        if text:
            yield from (".PP", text)
        for child in para:
            if child.tag == "verbatim":
                yield from (".PP", ".nf", *(escaped(line) for line in child.text.strip("\n").split("\n")), ".fi")
            elif child.tag == "orderedlist":
                for number, item in enumerate(child.findall("listitem"), 1):
                    yield from (f".IP {number}. 4", " ".join(rendered(part) for part in item.findall("para")))


def codes(element):
    """What follows "@return", a tagged paragraph for each code, and what is said behind the last one."""
    text, *notes = SENTENCE_END.split(" ".join(rendered(para) for para in element.findall("para")), maxsplit=1)
    for part in CODE_START.split(text.rstrip(".")):
        code = CODE.match(part)
        if code:
            yield from (".TP", rf"\fB{code[1]}\fP", code[2] or BARE_CODES.get(code[1].split()[0], "success"))
        else:
            yield from (".PP", part)
    for note in notes:
        yield from (".PP", note)


def page(name, brief, version, sections):
    lines = [f'.TH {name} 3 "" "qmDatabase {version}" "qmDatabase"', ".SH NAME",
             rf"{name} \- {escaped(brief[:1].lower() + brief[1:].rstrip('.'))}"]
    for title, content in sections:
        content = list(content)
        if content:
            lines += [f'.SH "{title}"', *content]
    return "\n".join(lines) + "\n"


def prototype(member):
    start = f"int {member.find('name').text}("
    arguments = ", ".join(f"{plain(p.find('type'))} {p.find('declname').text}".replace("* ", "*").replace(" ", "\0")
                          for p in member.findall("param"))  # lines break between arguments only
    lines = textwrap.wrap(arguments, LINE_WIDTH - len(start))
    lines = [lines[0], *(" " * len(start) + line for line in lines[1:])]
    lines = [line.replace("\0", " ") for line in lines]
    lines[-1] += r"\fB);\fP"
    return [".nf", rf"\fB{HEADER}\fP", "", rf"\fB{start}\fP{lines[0]}", *lines[1:], ".fi"]


def parameters(member):
    for item in member.iterfind("detaileddescription//parameteritem"):
        yield from (".TP", rf"\fI{item.find('.//parametername').text}\fP",
                    " ".join(rendered(para) for para in item.findall("parameterdescription/para")))


def see_also(member, names):
    mentioned = {ref.text.rstrip("()") for ref in member.iter("ref") if ref.text} & names
    others = sorted((mentioned | {CONVENTIONS_PAGE}) - {member.find("name").text})
    yield ", ".join([rf"\fB{name}\fP(3)" for name in others] + [r"\fBqmdatabase\fP(5)"])
    if CONVENTIONS_PAGE in others:
        yield from (".PP", rf"The conventions of all functions stand in \fB{CONVENTIONS_PAGE}\fP(3).")


def function_page(member, version, names, conventions):
    name = member.find("name").text
    result = member.find("detaileddescription//simplesect[@kind='return']")
    return page(name, plain(member.find("briefdescription")), version, [
        ("SYNOPSIS", prototype(member)),
        ("DESCRIPTION", paragraphs(member.find("detaileddescription"))),
        ("PARAMETERS", parameters(member)),
        ("RETURN VALUE", codes(result)),
        ("CONVENTIONS", conventions if name == CONVENTIONS_PAGE else []),
        ("SEE ALSO", see_also(member, names))])


def fields(record):
    for member in record.iterfind(".//memberdef[@kind='variable']"):
        declaration = f"{plain(member.find('type'))} {member.find('name').text}{member.findtext('argsstring') or ''}"
        yield from (".TP", rf"\fB{escaped(declaration.replace('* ', '*'))}\fP",
                    rendered(member.find("briefdescription/para")))


def record_page(record, version, functions):
    name = record.find("compoundname").text
    users = [function for function, member in sorted(functions.items())
             if any(ref.text == name for ref in member.iterfind("param/type/ref"))] or VALUE_FUNCTIONS
    return page(name, plain(record.find("briefdescription")), version, [
        ("SYNOPSIS", [".nf", rf"\fB{HEADER}\fP", "", rf"\fBstruct {name}\fP", ".fi"]),
        ("DESCRIPTION", paragraphs(record.find("detaileddescription"))),
        ("FIELDS", fields(record)),
        ("SEE ALSO", [", ".join(rf"\fB{user}\fP(3)" for user in users)])])


def main():
    source, target, version = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
    target.mkdir(parents=True, exist_ok=True)
    header = xml.parse(source / "QMNative_8h.xml").getroot()
    functions = {member.find("name").text: member for member in header.iterfind(".//memberdef[@kind='function']")}
    records = [xml.parse(file).getroot().find("compounddef") for file in sorted(source.glob("struct*.xml"))]
    names = set(functions) | {record.find("compoundname").text for record in records}
    conventions = list(paragraphs(header.find("compounddef/detaileddescription")))
    for name, member in functions.items():
        text = function_page(member, version, names, conventions)
        (target / f"{name}.3").write_text(text, encoding="utf-8")
    for record in records:
        text = record_page(record, version, functions)
        (target / f"{record.find('compoundname').text}.3").write_text(text, encoding="utf-8")


main()
