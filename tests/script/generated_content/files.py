"""Right files, derived from a grammar: the material of the changes."""
import random
from dataclasses import dataclass, field
from xml.sax.saxutils import escape, quoteattr

from .grammar import DOCUMENT

DECLARATION = '<?xml version="1.0" encoding="utf-8"?>\n'
NAMES = {"for-you": "Lumenor.MainFrame.Controls.DockPopup.ForYou", "search-providers": "SearchProviders"}
OWN_NAME = "My.Tools"

TEXTS = {
    "Head": ["Notepad", "Ärger & Söhne", "a < b > c", "日本語", "two  blanks", "§", "\U0001f600"],
    "ToolTip": ["Edit text files", "Größer als 3", "'single' and \"double\"", "y" * 200],
    "ActionParams": ["%windir%\\notepad.exe", "https://example.org/?a=1&b=2", "My.Flyout", "2", "close"],
    "ActionParamsBackup": ["%windir%\\write.exe", "backup"],
    "Image": ["..\\resources\\notes.png", "C:\\Pictures\\my picture.png"],
}

# Conditions that hold on every machine. Which of their words belong together no schema can say; all that it allows are
# tried as changes.
LOCAL_MACHINE, CURRENT_USER = "HKEY_LOCAL_MACHINE\\SOFTWARE", "HKEY_CURRENT_USER\\Software"
CONDITIONS = [
    ("File", {"Logic": "FileExist", "Key": "%windir%"}),
    ("Registry", {"Logic": "CheckValue", "Key": LOCAL_MACHINE, "ValueName": "no such value", "ValueData": "",
                  "ValueType": "REG_SZ"}),
    ("File", {"Logic": "FileNotExist", "Key": "C:\\no such file"}),
    ("Registry", {"Logic": "KeyExist", "Key": LOCAL_MACHINE}),
    ("Registry", {"Logic": "KeyNotExist", "Key": f"{CURRENT_USER}\\no such key"}),
]


@dataclass
class Raw:
    """Markup that stands in the file as it is."""
    text: str


@dataclass
class Node:
    name: str
    attributes: list = field(default_factory=list)  # [name, value]
    items: list = field(default_factory=list)  # Node, str or Raw
    declaration: object = None  # what the grammar says of it; None for what it doesn't know

    def nodes(self):
        return [item for item in self.items if isinstance(item, Node)]

    def get(self, name):
        return next((value for known, value in self.attributes if known == name), None)


def markup(item):
    if isinstance(item, Raw):
        return item.text
    if isinstance(item, str):
        return escape(item)
    values = [(name, value.text if isinstance(value, Raw) else quoteattr(value)) for name, value in item.attributes]
    listed = "".join(f" {name}={value}" for name, value in values)
    inner = "".join(map(markup, item.items))
    return f"<{item.name}{listed}>{inner}</{item.name}>" if inner else f"<{item.name}{listed}/>"


def file_of(tree):
    return (DECLARATION + markup(tree) + "\n").encode("utf-8")


class Maker:
    """Derives files from a grammar."""

    def __init__(self, kind, grammar, seed):
        self.kind, self.grammar, self.random = kind, grammar, random.Random(f"{kind} {seed}")
        self.name, self.full, self.made_conditions, self.made_texts, self.used = None, False, 0, 0, []

    def names(self):
        """The names that a file of this kind may have."""
        if self.kind in NAMES:
            return [NAMES[self.kind]]
        root = self.grammar.root()
        return [child.name for child in root.children] if root.is_choice else [OWN_NAME] + self.grammar.documents()

    def tree(self, name, full):
        """`full` has all that may be there, lists of two and no text or word twice; otherwise chance decides."""
        self.name, self.full, self.made_conditions, self.made_texts, self.used = name, full, 0, 0, []
        return self.node(self.grammar.root())

    def node(self, declaration):
        if declaration.name == "Condition":
            return self.condition(declaration)
        node = Node(self.name if declaration.name == DOCUMENT else declaration.name, declaration=declaration)
        for attribute in declaration.attributes:
            if attribute.required or self.full or self.random.random() < 0.5:
                node.attributes.append([attribute.name, self.text(attribute.value, declaration.name)])
        if declaration.value is not None:
            node.items = [text for text in [self.text(declaration.value, declaration.name)] if text]
        node.items += self.children(declaration)
        return node

    def condition(self, declaration):
        kind, params = CONDITIONS[self.made_conditions] if self.full else self.random.choice(CONDITIONS)
        self.made_conditions += 1
        (param,) = declaration.children
        return Node("Condition", [["type", kind]], [
            Node("param", [["name", name]], [text] if text else [], param) for name, text in params.items()], declaration)

    def children(self, declaration):
        wanted = [child for child in declaration.children if not declaration.is_choice or child.name == self.name]
        made = [self.node(child) for child in wanted for _ in range(self.count(child))]
        for name, attribute in declaration.distinct:
            self.tell_apart([node for node in made if node.name == name], attribute)
        if not self.full and len(wanted) > 1:
            self.random.shuffle(made)
        return made

    def count(self, declaration):
        if self.full:
            return min(declaration.most, max(declaration.least, 2))
        return self.random.randint(declaration.least, min(declaration.most, max(declaration.least, 3)))

    def text(self, value, element):
        if value.words and self.full:
            self.used.append(self.random.choice([word for word in value.words if word and word not in self.used]))
            return self.used[-1]
        if value.words:
            return self.random.choice(value.words)
        if value.base == "int":
            return str((value.least or 0) + self.random.randint(10, 90))
        if (self.kind, element) == ("document", "ActionParamsBackup"):
            return ""  # the dock writes it there and doesn't read it, which would hide all other differences
        self.made_texts += 1
        return self.random.choice(TEXTS[element]) + (f" {self.made_texts}" if self.full else "")

    def tell_apart(self, nodes, name):
        """Gives the nodes different values of the attribute."""
        known = next(attribute.value.words for node in nodes for attribute in node.declaration.attributes
                     if attribute.name == name)
        for node, word in zip(nodes, self.random.sample(known, len(nodes))):
            node.attributes = [[key, word if key == name else value] for key, value in node.attributes]
