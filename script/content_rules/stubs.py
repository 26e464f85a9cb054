"""Stubs: each by itself, and those of a locale's chain together."""
import re
from collections import defaultdict, namedtuple

from . import conditions
from .entries import check_entry, check_schema, is_document_name, line_of, number
from .facts import ABBREVIATIONS, FIXED_BUTTONS, KNOWN_DOCUMENTS, LOCALE, MAIN, USER, USER_BUTTONS
from .xml_lines import Unreadable, read

Stub = namedtuple("Stub", "path document position line conditions action params")


def read_stub(found, path, pictures):
    """The stub; None where the dock finds no entry in it. Which documents it is for is checked later."""
    try:
        root = read(path)
    except Unreadable as error:
        found.error((path, error.line), "unreadable", error.what, "skips the stub, with a line in its log",
                    "well-formed XML without a DOCTYPE")
        return None
    check_schema(found, path, root)
    document = check_shape(found, path, root)
    entry = document and first_entry(found, path, document)
    if not entry:
        return None
    check_entry(found, path, entry, document.tag, pictures, True)
    check_position(found, path, entry)
    return Stub(path, document.tag, number(entry.text("Position")), line_of(entry, "Position"),
                read_conditions(found, path, root, entry), entry.text("ActionType"), entry.text("ActionParams"))


def check_shape(found, path, root):
    """The document's element."""
    children = list(root)
    if root.tag != "UIRoot" or "xmlns" in root.attributes or not children:
        found.error((path, root.line), "shape", "the root isn't a UIRoot with a document in it",
                    "reads an empty entry at position 0", "<UIRoot><DOCUMENT><Elements><Element>, without a namespace")
        return None
    for other in children[1:]:
        if other.tag != "Condition":
            found.error((path, other.line), "second-document", "a second document is in the file", "ignores it",
                        "a file for each document")
    if not is_document_name(children[0].tag):
        found.error((path, children[0].line), "document-name", f"no document can be called '{children[0].tag}'",
                    "builds no such document", "letters, digits, '.', '-' and '_', with a letter or '_' first")
    return children[0]


def first_entry(found, path, document):
    lists = document.all("Elements")
    entries = [entry for part in lists for entry in part.all("Element")]
    for other in document:
        if other.tag not in ("Elements", "Condition"):
            found.error((path, other.line), "unknown-element", f"a document has no child '{other.tag}'", "ignores it",
                        "'Elements'")
    for other in (child for part in lists for child in part if child.tag not in ("Element", "Condition")):
        found.error((path, other.line), "unknown-element", f"Elements has no child '{other.tag}'", "ignores it",
                    "'Element'")
    if not entries:
        found.error((path, document.line), "no-entry", f"there is no Element of {document.tag}",
                    "reads an empty entry at position 0", "one Element in Elements")
        return None
    for other in entries[1:]:
        found.error((path, other.line), "second-entry", "a second Element is in the stub", "ignores it",
                    "a stub for each entry")
    return entries[0]


def check_position(found, path, entry):
    text = entry.text("Position")
    if not re.fullmatch(r"[1-9]\d*", text):
        dock = "reads position 0, which a stub of another document claims too" if number(text) == 0 else (
            "sorts it behind all others" if number(text) < 0 else f"reads {number(text)}")
        found.error((path, line_of(entry, "Position")), "position", f"its Position '{text}' is no number above 0", dock,
                    "a number above 0 that no other stub of the document has")


def read_conditions(found, path, root, entry):
    nodes = list(root.below("Condition"))
    own = {id(node) for node in entry.all("Condition")}
    for node in nodes:
        if id(node) not in own:
            found.warning((path, node.line), "condition-place", "a condition stands outside the entry",
                          "takes it for the entry's: it takes every condition in the file", "it within the Element")
    return [conditions.check(found, path, node, node is nodes[-1]) for node in nodes]


def documents_of(stubs):
    """The documents that the dock builds: those that it knows and those that a button's flyout lists."""
    named = {stub.params for stub in stubs if stub.action == "xml" and stub.document in (MAIN, USER)}
    return set(KNOWN_DOCUMENTS) | named


def check_flyouts(found, stubs):
    """That something fills each flyout."""
    filled = {stub.document for stub in stubs}
    for stub in stubs:
        if stub.action == "xml" and stub.document in (MAIN, USER) and stub.params not in filled:
            found.warning((stub.path, 1), "flyout-empty", f"no stub fills the flyout {stub.params}",
                          "shows a flyout without rows, unless there are stubs of it elsewhere",
                          f"stubs called {stub.params}.NAME.dstb")


def check_names(found, path, stub, documents):
    """Which documents take the file for a stub of theirs, by the name alone."""
    if stub is None:
        return  # what is wrong with it is reported already
    name, own = path.name.lower(), stub.document
    if not name.startswith(own.lower()):
        found.error((path, 1), "file-name", f"the file of a stub of {own} isn't called after it",
                    "never finds it", f"{own}.NAME.dstb")
    elif own not in documents:
        found.warning((path, 1), "no-flyout", f"no button in these folders opens a flyout of {own}",
                      "never builds that document, unless a button elsewhere opens it",
                      "a button of the bar with the ActionType xml and this name as its ActionParams")
    for document in sorted(documents):
        if document != own and name.startswith(document.lower()):
            dock = f"reads it as an empty entry at position 0 of {document}"
            dock += {MAIN: ": the bar doesn't come up", USER: ", which makes no button"}.get(document, "")
            found.error((path, 1), "caught", f"its name begins with that of {document}", dock,
                        "names of documents of which none begins with another's")


def chains(locales):
    """The chains of folders that machines search, by the locale that each begins with."""
    for locale in sorted(filter(LOCALE.fullmatch, locales)):
        language, _, country = locale.partition("_")
        if locale == "xx_xx":
            yield locale, [locale]
        elif country == "xx" and language not in ABBREVIATIONS:
            yield locale, [locale, "xx_xx"]
        elif country != "xx":
            yield locale, [locale, f"{language}_xx", "xx_xx"]


def check_positions(found, by_locale):
    """Which stub wins a position, in each chain."""
    reported = set()
    for locale, chain in chains(by_locale):
        claims = defaultdict(list)
        for folder in chain:
            for stub in sorted(by_locale.get(folder, []), key=lambda stub: stub.path.name.upper()):
                claims[stub.document, stub.position].append(stub)
        for (document, position), stubs in claims.items():
            check_claims(found, reported, locale, document, position, stubs)
        check_counts(found, reported, locale, claims)


def check_claims(found, reported, locale, document, position, stubs):
    for at, loser in enumerate(stubs):
        winner = next((stub for stub in stubs[:at] if not conditions.exclude(stub.conditions, loser.conditions)), None)
        if winner is None or (winner.path, loser.path) in reported:
            continue
        reported.add((winner.path, loser.path))
        here = winner.path.parent == loser.path.parent
        if winner.path.name.lower() == loser.path.name.lower() or is_variant(winner, loser):
            continue  # a translation, or one entry under several conditions
        shown = winner.path.name if here else f"{winner.path.parent.name}/{winner.path.name}"
        report = found.error if here else found.warning
        report((loser.path, loser.line), "position-twice",
               f"{shown} and this one both claim position {position} of {document}",
               f"in {locale}, shows {winner.path.name} where its conditions hold"
               + (": NTFS lists it first" if here else ": its folder comes first"),
               "another position, conditions of which only one can hold, or the file's name for a translation")


def is_variant(one, other):
    return (one.action, one.params, one.path.parent) == (other.action, other.params, other.path.parent)


def check_counts(found, reported, locale, claims):
    """More buttons than the bar has room for, where no conditions choose among them."""
    for document, limit in ((MAIN, FIXED_BUTTONS), (USER, USER_BUTTONS)):
        certain = sorted((position, stubs[0]) for (name, position), stubs in claims.items() if name == document)
        for _, stub in certain[limit:]:
            if stub.path not in reported:
                reported.add(stub.path)
                found.warning((stub.path, stub.line), "too-many",
                              f"in {locale}, {document} may have more than {limit} entries",
                              f"shows the first {limit} by their positions",
                              "a flyout for what doesn't fit, or conditions of which not all hold")
