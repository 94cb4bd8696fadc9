"""Citations of CoolProp's equations, out of the BibTeX library that CoolProp ships."""

import functools
import pathlib
import re

import CoolProp
import CoolProp.CoolProp as CP

ENTRY = re.compile(r"@\w+\{([^,]+),(.*?)\n\}", re.DOTALL)
FIELD = re.compile(r"^\s*(\w+)\s*=\s*[{\"](.*?)[}\"],?\s*$", re.MULTILINE)
PLAIN = {"\\&": "&", "--": "-", "~": " ", "{": "", "}": "", "\\": ""}


@functools.cache
def library():
    path = pathlib.Path(CoolProp.__file__).with_name("CoolPropBibTeXLibrary.bib")
    text = path.read_text(encoding="utf-8", errors="replace")
    return {key.strip(): dict(FIELD.findall(body)) for key, body in ENTRY.findall(text)}


def plain_ascii(text):
    text = re.sub(r"\\['\"`^~=.uvHcb]\s*\{?(\w)\}?", r"\1", text)
    for tex, character in PLAIN.items():
        text = text.replace(tex, character)
    return " ".join(text.encode("ascii", "ignore").decode().split())


def authors(fields):
    names = [plain_ascii(name) for name in re.split(r"\s+and\s+", fields.get("author", ""))]
    surnames = [name.split(",")[0] if "," in name else name.split()[-1] for name in names if name]
    return surnames[0] + " et al." if len(surnames) > 2 else " and ".join(surnames)


def citation(key):
    fields = {name.lower(): text for name, text in library()[key].items()}
    where = fields.get("journal") or fields.get("booktitle") or fields.get("publisher") or fields.get("title", "")
    numbers = " ".join(part for part in (fields.get("volume", ""), f"({fields['year']})", fields.get("pages", "")) if part)
    return f"{authors(fields)}, {plain_ascii(where)} {plain_ascii(numbers)}"


def of_fluid(fluid, kind):
    keys = CP.get_BibTeXKey(fluid, kind).split(",")
    return "; ".join(citation(key.strip()) for key in keys if key.strip())
