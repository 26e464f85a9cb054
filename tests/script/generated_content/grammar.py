"""The grammar of a schema in product/schema, as far as these schemas use the language."""
import xml.etree.ElementTree as ET
from dataclasses import dataclass, field

XS = "{http://www.w3.org/2001/XMLSchema}"
UNBOUNDED = 1_000_000
DOCUMENT = "DOCUMENT"  # stands for an element of any name: the document's


@dataclass
class Value:
    """A simple type."""
    base: str = "string"
    words: list = field(default_factory=list)  # the enumeration, empty for none
    least: int | None = None


@dataclass
class Attribute:
    name: str
    value: Value
    required: bool


@dataclass
class Declaration:
    """An element: how often it may stand in its parent, and what it may hold."""
    name: str
    least: int = 1
    most: int = 1
    value: Value | None = None  # its text; None where it holds elements
    attributes: list = field(default_factory=list)
    children: list = field(default_factory=list)
    is_choice: bool = False  # one of the children, once
    distinct: set = field(default_factory=set)  # (child, attribute) whose values differ

    def __deepcopy__(self, _):
        return self  # copies of a tree share what the grammar says


class Grammar:
    def __init__(self, schema):
        self.types, self.elements = {}, {}
        self.load(schema)

    def load(self, path):
        for node in ET.parse(path).getroot():
            if node.tag == f"{XS}include":
                self.load(path.parent / node.get("schemaLocation"))
            elif node.tag in (f"{XS}complexType", f"{XS}simpleType"):
                self.types[node.get("name")] = node
            elif node.tag == f"{XS}element":
                self.elements[node.get("name")] = node
            elif node.tag != f"{XS}annotation":
                raise ValueError(f"{path}: {node.tag} is new here")

    def root(self):
        """The element that a file has: the one that no other refers to and that isn't a document."""
        name = "UIRoot" if "UIRoot" in self.elements else next(iter(self.elements))
        return self.declaration(self.elements[name])

    def documents(self):
        """The documents that the schema knows by name."""
        return [name for name, node in self.elements.items() if node.get("type") == "document"]

    def declaration(self, node):
        if node.tag == f"{XS}any":
            return Declaration(DOCUMENT, children=[self.declaration(self.elements["Elements"])])
        least, most = int(node.get("minOccurs", 1)), node.get("maxOccurs", "1")
        if node.get("ref"):
            node = self.elements[node.get("ref")]
        declaration = Declaration(node.get("name"), least, UNBOUNDED if most == "unbounded" else int(most))
        self.take_type(declaration, node)
        self.take_constraints(declaration, node)
        return declaration

    def take_type(self, declaration, node):
        name = node.get("type")
        if name is None:
            inner = [child for child in node if child.tag in (f"{XS}complexType", f"{XS}simpleType")]
            (definition,) = inner
        elif name in self.types:
            definition = self.types[name]
        else:
            declaration.value = self.value(name)
            return
        if definition.tag == f"{XS}simpleType":
            declaration.value = self.simple(definition)
        else:
            self.take_content(declaration, definition)

    def take_content(self, declaration, definition):
        for node in definition:
            tag = node.tag.removeprefix(XS)
            if tag in ("sequence", "all"):
                declaration.children += [self.declaration(child) for child in node]
            elif tag == "choice":
                declaration.children += [self.declaration(child) for child in node]
                if node.get("maxOccurs") == "unbounded":
                    for child in declaration.children:
                        child.least, child.most = 0, UNBOUNDED
                else:
                    declaration.is_choice = True
            elif tag == "attribute":
                value = self.value(node.get("type"))
                declaration.attributes.append(Attribute(node.get("name"), value, node.get("use") == "required"))
            elif tag in ("simpleContent", "complexContent"):
                (extension,) = node
                base = extension.get("base")
                if tag == "simpleContent":
                    declaration.value = self.value(base)
                else:
                    self.take_content(declaration, self.types[base])
                self.take_content(declaration, extension)
            else:
                raise ValueError(f"{declaration.name}: {tag} is new here")

    @staticmethod
    def take_constraints(declaration, node):
        for constraint in node:
            kind = constraint.tag.removeprefix(XS)
            if kind not in ("unique", "key"):
                continue
            selector = constraint.find(f"{XS}selector").get("xpath")
            place = constraint.find(f"{XS}field").get("xpath")
            if selector != ".":
                declaration.distinct.add((selector, place.removeprefix("@")))
                continue
            for child in declaration.children:
                if child.name == place:
                    child.least, child.most = int(kind == "key"), 1

    def value(self, name):
        if name in self.types:
            return self.simple(self.types[name])
        return Value(name.removeprefix("xs:"))

    def simple(self, definition):
        (restriction,) = definition
        inherited = self.value(restriction.get("base"))
        value = Value(inherited.base, list(inherited.words), inherited.least)
        for facet in restriction:
            if facet.tag == f"{XS}enumeration":
                value.words.append(facet.get("value"))
            elif facet.tag == f"{XS}minInclusive":
                value.least = int(facet.get("value"))
            else:
                raise ValueError(f"{facet.tag} is new here")
        return value
