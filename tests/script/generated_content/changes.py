"""The changes: each makes one file of a right one. What becomes of the meaning is not decided here."""
import copy

from .files import DECLARATION, Node, Raw, file_of, markup

OTHER, STRAY, NAMESPACE = "something else", "stray", "urn:tools"


def replace(parent, node, items):
    at = next(number for number, item in enumerate(parent.items) if item is node)
    parent.items[at:at + 1] = items


def before(parent, node, item):
    replace(parent, node, [item, node])


def twin(node, text=None):
    """A copy; with `text` in the place of each of its texts, if one is given."""
    made = copy.deepcopy(node)
    if text is None:
        return made
    if made.declaration is not None and made.declaration.value is not None:
        made.items = ["777" if made.declaration.value.base == "int" else text]
    made.items = [twin(item, text) if isinstance(item, Node) else item for item in made.items]
    return made


def swap_with_next(parent, node):
    nodes = parent.nodes()
    at = next(number for number, item in enumerate(nodes) if item is node)
    if at + 1 == len(nodes):
        return False
    follower = nodes[at + 1]
    replace(parent, follower, [])
    before(parent, node, follower)
    return True


def split_text(node, inner):
    if not (node.items and isinstance(node.items[0], str) and len(node.items[0]) > 1):
        return False
    text = node.items[0]
    node.items[:1] = [text[:2], inner, text[2:]]
    return True


def first_text(node, made):
    """Writes the node's text another way."""
    if not (node.items and isinstance(node.items[0], str)):
        return False
    node.items[0] = made(node.items[0])
    return True


def wrap(parent, node, name):
    replace(parent, node, [Node(name, items=[node])])


def wrap_content(node, name):
    node.items = [Node(name, items=node.items)]


def rename(node, name):
    changed = name != node.name
    node.name = name
    return changed


def attribute(node, *pairs):
    node.attributes += [list(pair) for pair in pairs]


def prefixed(node, declare):
    node.name = f"t:{node.name}"
    if declare:
        attribute(node, ("xmlns:t", NAMESPACE))


def deep(levels):
    return Raw("<b>" * levels + "</b>" * levels)


# Of an element that has a parent. A change that says False isn't possible there.
OF_ELEMENTS = {
    "missing": lambda parent, node: replace(parent, node, []),
    "twice": lambda parent, node: before(parent, node, twin(node)),
    "twice, first another": lambda parent, node: before(parent, node, twin(node, OTHER)),
    "twice, then another": lambda parent, node: replace(parent, node, [node, twin(node, OTHER)]),
    "unknown before": lambda parent, node: before(parent, node, Node("Colour", items=["green"])),
    "unknown empty before": lambda parent, node: before(parent, node, Node("Colour")),
    "unknown with attribute before": lambda parent, node: before(parent, node, Node("Colour", [["tone", "green"]])),
    "text before": lambda parent, node: before(parent, node, STRAY),
    "comment before": lambda parent, node: before(parent, node, Raw("<!-- a comment -->")),
    "instruction before": lambda parent, node: before(parent, node, Raw("<?tool do?>")),
    "section before": lambda parent, node: before(parent, node, Raw("<![CDATA[stray]]>")),
    "blank section before": lambda parent, node: before(parent, node, Raw("<![CDATA[ ]]>")),
    "lines before": lambda parent, node: before(parent, node, "\n\t\n"),
    "next first": swap_with_next,
    "within its own name": lambda parent, node: wrap(parent, node, node.name),
    "within another": lambda parent, node: wrap(parent, node, "Group"),
    "opened, not closed": lambda parent, node: before(parent, node, Raw("<b>")),
    "closed, not opened": lambda parent, node: before(parent, node, Raw("</b>")),
    "100 deep before": lambda parent, node: before(parent, node, deep(100)),
    "300 deep before": lambda parent, node: before(parent, node, deep(300)),
}

# Of any element, the root too.
WITHIN_ELEMENTS = {
    "lower case": lambda node: rename(node, node.name.lower()),
    "upper case": lambda node: rename(node, node.name.upper()),
    "another name": lambda node: rename(node, "Other"),
    "no XML name": lambda node: rename(node, f"1{node.name}"),
    "without content": lambda node: bool(node.items) and node.items.clear() is None,
    "blank content": lambda node: setattr(node, "items", [" \n "]),
    "text inside": lambda node: node.items.append(STRAY),
    "comment inside": lambda node: node.items.append(Raw("<!-- a comment -->")),
    "content within another": lambda node: wrap_content(node, "Group"),
    "content within its own name": lambda node: wrap_content(node, node.name),
    "prefix": lambda node: prefixed(node, True),
    "prefix of nothing": lambda node: prefixed(node, False),
    "namespace": lambda node: attribute(node, ("xmlns", NAMESPACE)),
    "namespace unused": lambda node: attribute(node, ("xmlns:t", NAMESPACE)),
    "namespace of none": lambda node: attribute(node, ("xmlns", "")),
    "unknown attribute": lambda node: attribute(node, ("colour", "green")),
    "unknown empty attribute": lambda node: attribute(node, ("colour", "")),
    "unknown attribute twice": lambda node: attribute(node, ("colour", "green"), ("colour", "blue")),
    "attribute with a prefix": lambda node: attribute(node, ("xmlns:t", NAMESPACE), ("t:colour", "green")),
    "xml:space": lambda node: attribute(node, ("xml:space", "preserve")),
    "xml:lang": lambda node: attribute(node, ("xml:lang", "tlh")),
    "xsi:nil": lambda node: attribute(node, ("xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"),
                                      ("xsi:nil", "true")),
    "attribute without quotes": lambda node: attribute(node, ("colour", Raw("green"))),
}

# Of an element that holds a text.
OF_TEXTS = {
    "element within": lambda node: split_text(node, Node("b", items=["bold"])),
    "empty element within": lambda node: split_text(node, Node("b")),
    "comment within": lambda node: split_text(node, Raw("<!-- a comment -->")),
    "instruction within": lambda node: split_text(node, Raw("<?tool do?>")),
    "section within": lambda node: split_text(node, Raw("<![CDATA[<&>]]>")),
    "reference within": lambda node: split_text(node, Raw("&#38;")),
    "entity within": lambda node: split_text(node, Raw("&amp;")),
    "unknown entity within": lambda node: split_text(node, Raw("&nbsp;")),
    "bare & within": lambda node: split_text(node, Raw("&")),
    "bare < within": lambda node: split_text(node, Raw("<")),
    "]]> within": lambda node: split_text(node, Raw("]]>")),
    "control character within": lambda node: split_text(node, Raw("\x01")),
    "reference to a control character within": lambda node: split_text(node, Raw("&#1;")),
    "reference to half a character within": lambda node: split_text(node, Raw("&#xD800;")),
    "all a section": lambda node: first_text(node, lambda text: Raw(f"<![CDATA[{text}]]>")),
    "all references": lambda node: first_text(node, lambda text: Raw("".join(f"&#{ord(c)};" for c in text))),
    "blanks around": lambda node: first_text(node, lambda text: f" \n\t{text} \n"),
    "references to blanks around": lambda node: first_text(node, lambda text: Raw(f"&#32;{markup(text)}&#10;")),
    "hard blanks around": lambda node: first_text(node, lambda text: f"\u00a0{text}\u00a0"),
    "in quotation marks": lambda node: first_text(node, lambda text: f'"{text}"'),
    "very long": lambda node: first_text(node, lambda text: text + "z" * 70000),
}

# Of an attribute: the name and value that take its place, given as a list.
OF_ATTRIBUTES = {
    "missing": lambda name, value: [],
    "empty": lambda name, value: [[name, ""]],
    "blanks around": lambda name, value: [[name, f" {value} "]],
    "name in lower case": lambda name, value: [[name.lower(), value]] if name != name.lower() else None,
    "name in upper case": lambda name, value: [[name.upper(), value]] if name != name.upper() else None,
    "twice": lambda name, value: [[name, value], [name, value]],
    "prefix": lambda name, value: [["xmlns:t", NAMESPACE], [f"t:{name}", value]],
    "single quotes": lambda name, value: [[name, Raw(f"'{value}'")]],
    "without quotes": lambda name, value: [[name, Raw(value)]],
    "all references": lambda name, value: [[name, Raw('"' + "".join(f"&#{ord(c)};" for c in value) + '"')]],
    "bare <": lambda name, value: [[name, Raw(f'"{value}<"')]],
}

NUMBERS = ["0", "1", "-1", "-0", "+7", "007", "7.0", "7th", "first", "0x10", "1e3", "7 8", "2147483647", "2147483648",
           "99999999999", "-2147483648", "٣"]
PARAMS = {
    "Logic": ["FileExist", "FileNotExist", "KeyExist", "KeyNotExist", "CheckValue", "fileexist", OTHER],
    "Key": ["%windir%", "C:\\no such file", "HKEY_LOCAL_MACHINE", "HKEY_LOCAL_MACHINE\\", "HKLM\\SOFTWARE",
            "hkey_local_machine\\SOFTWARE", "HKEY_USERS\\.Default", "HKEY_LOCAL_MACHINE\\%os%", "\\", "HKEY_CLASSES_ROOT\\\\"],
    "ValueName": ["another value"],
    "ValueData": ["1", OTHER],
    "ValueType": ["REG_SZ", "REG_EXPAND_SZ", "REG_MULTI_SZ", "REG_BINARY", "REG_DWORD", "REG_QWORD", "REG_NONE", "reg_sz"],
}


def words_for(value, present):
    """Values to try for one of this type, beside the one that is there."""
    if value.words:
        tried = value.words + [OTHER, present.lower(), present.upper(), f"{present}s", f"{present} {present}"]
    elif value.base == "int":
        tried = NUMBERS
    else:
        tried = []
    return [word for word in dict.fromkeys(tried) if word != present]


def encode(codec, mark=b"", name=None):
    """The file in another encoding, which its declaration names unless it is to name another."""
    def change(text):
        return mark + text.replace("utf-8", name or codec, 1).encode(codec, "xmlcharrefreplace")
    return change


def doctype(inner=""):
    return lambda text: text.replace(DECLARATION, f"{DECLARATION}<!DOCTYPE UIRoot{inner}>\n", 1).encode()


# Of the whole file, as a text with its declaration.
OF_FILES = {
    "no declaration": lambda text: text.removeprefix(DECLARATION).encode(),
    "version 1.1": lambda text: text.replace("1.0", "1.1", 1).encode(),
    "version 2": lambda text: text.replace("1.0", "2", 1).encode(),
    "standalone": lambda text: text.replace("?>", ' standalone="yes"?>', 1).encode(),
    "declaration without version": lambda text: text.replace(' version="1.0"', "", 1).encode(),
    "declaration in upper case": lambda text: text.replace("<?xml", "<?XML", 1).encode(),
    "blank ahead of the declaration": lambda text: (" " + text).encode(),
    "declaration twice": lambda text: (DECLARATION + text).encode(),
    "byte order mark": lambda text: b"\xef\xbb\xbf" + text.encode(),
    "UTF-16, little end first": encode("utf-16-le", b"\xff\xfe", "utf-16"),
    "UTF-16, big end first": encode("utf-16-be", b"\xfe\xff", "utf-16"),
    "UTF-16 without a mark": encode("utf-16-le", b"", "utf-16"),
    "UTF-16 that is declared as UTF-8": encode("utf-16-le", b"\xff\xfe", "utf-8"),
    "UTF-8 that is declared as UTF-16": encode("utf-8", b"", "utf-16"),
    "ISO 8859-1": encode("iso-8859-1"),
    "ISO 8859-1 that is declared as UTF-8": lambda text: text.replace("</", "ä</", 1).encode("iso-8859-1", "replace"),
    "Windows-1252": encode("windows-1252"),
    "ASCII": encode("us-ascii"),
    "no such encoding": encode("utf-8", b"", "x-none"),
    "carriage returns": lambda text: text.replace("><", ">\r\n<").encode(),
    "lines and tabs": lambda text: text.replace("><", ">\n\t<").encode(),
    "document type": doctype(),
    "document type with an entity": doctype(' [<!ENTITY who "you">]'),
    "document type with a grammar": doctype(" [<!ELEMENT UIRoot ANY>]"),
    "document type of a file": doctype(' SYSTEM "none.dtd"'),
    "style sheet": lambda text: text.replace(DECLARATION, f'{DECLARATION}<?xml-stylesheet href="a.css"?>', 1).encode(),
    "comment ahead": lambda text: text.replace(DECLARATION, f"{DECLARATION}<!-- a comment -->", 1).encode(),
    "comment with --": lambda text: text.replace(DECLARATION, f"{DECLARATION}<!-- a -- b -->", 1).encode(),
    "comment behind": lambda text: f"{text}<!-- a comment -->".encode(),
    "instruction behind": lambda text: f"{text}<?tool do?>".encode(),
    "text ahead": lambda text: text.replace(DECLARATION, DECLARATION + STRAY, 1).encode(),
    "text behind": lambda text: (text + STRAY).encode(),
    "a second root": lambda text: (text + text.removeprefix(DECLARATION)).encode(),
    "half of it": lambda text: text[:len(text) // 2].encode(),
    "its last tag missing": lambda text: text[:text.rindex("</")].encode(),
    "nothing": lambda text: b"",
    "a blank": lambda text: b" ",
    "the declaration alone": lambda text: DECLARATION.encode(),
    "HTML": lambda text: b"<html><body><p>not here<br></body></html>",
    "JSON": lambda text: b'{"UIRoot": {}}',
}


def walk(tree):
    """Each node with its parent and its place: the names above it, a condition's type and a parameter's name behind
    a colon."""
    def visit(parent, node, above):
        place = f"{above}/{node.name}" if above else node.name
        if told := node.get("type") or node.get("name"):
            place += f":{told}"
        yield parent, node, place
        for child in node.nodes():
            yield from visit(node, child, place)
    yield from visit(None, tree, "")


def of_node(node, parent):
    """The changes of one node: names, and functions that make them on the node and its parent."""
    for name, change in OF_ELEMENTS.items() if parent is not None else ():
        yield name, "", change
    for name, change in WITHIN_ELEMENTS.items():
        yield name, "", lambda _, node, change=change: change(node)
    if node.declaration.value is not None:
        for name, change in OF_TEXTS.items():
            yield name, "", lambda _, node, change=change: change(node)
        yield from of_value(node)
    for number, (name, value) in enumerate(node.attributes):
        yield from of_attribute(node, number, name, value)


def of_value(node):
    present = node.items[0] if node.items else ""
    words = PARAMS[node.get("name")] if node.name == "param" else words_for(node.declaration.value, present)
    for word in words:
        if word != present:
            yield f"value {word}", "", lambda _, node, word=word: setattr(node, "items", [word] if word else [])


def of_attribute(node, number, name, value):
    def put(entries):
        def change(_, node):
            if entries is None:
                return False
            node.attributes[number:number + 1] = [list(entry) for entry in entries]
            return True
        return change

    for change, made in OF_ATTRIBUTES.items():
        yield change, f"@{name}", put(made(name, value))
    known = next(attribute for attribute in node.declaration.attributes if attribute.name == name)
    for word in words_for(known.value, value):
        yield f"value {word}", f"@{name}", put([[name, word]])


def changed(tree):
    """Each file that one change makes of the tree: what was done, where, and its bytes."""
    places = set()
    for number, (parent, node, place) in enumerate(walk(tree)):
        if place in places:
            continue  # a second one of a list
        places.add(place)
        for name, part, change in of_node(node, parent):
            copied = copy.deepcopy(tree)
            copied_parent, copied_node, _ = list(walk(copied))[number]
            if change(copied_parent, copied_node) is not False:
                yield name, place + part, file_of(copied)
    text = file_of(tree).decode()
    for name, change in OF_FILES.items():
        yield name, "", change(text)
