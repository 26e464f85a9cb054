"""XML as the dock reads it: elements with their lines, texts without the blanks around them."""
from xml.parsers import expat


class Node:
    __slots__ = ("tag", "attributes", "line", "children", "parts")

    def __init__(self, tag, attributes, line):
        self.tag, self.attributes, self.line = tag, attributes, line
        self.children, self.parts = [], []  # the parts are the children and the texts between them

    def __iter__(self):
        return iter(self.children)

    def all(self, tag):
        return [child for child in self.children if child.tag == tag]

    def first(self, tag):
        for child in self.children:
            if child.tag == tag:
                return child
        return None

    def text(self, tag=None):
        """The text of the first child of that name; empty without one. Without a name, this element's."""
        node = self if tag is None else self.first(tag)
        return "" if node is None else node.joined().strip()

    def joined(self):
        return "".join(part if isinstance(part, str) else part.joined() for part in self.parts)

    def below(self, tag):
        for child in self.children:
            if child.tag == tag:
                yield child
            if child.children:
                yield from child.below(tag)


class Unreadable(Exception):
    """The dock refuses the file: the line, and what is wrong."""

    def __init__(self, line, what):
        super().__init__(what)
        self.line, self.what = line, what


def read(path):
    """The root element of the file. Raises Unreadable."""
    parser = expat.ParserCreate()
    parser.buffer_text = True
    top = Node("", {}, 0)
    stack = [top]
    doctypes = []

    def start(tag, attributes):
        node = Node(tag, attributes, parser.CurrentLineNumber)
        stack[-1].parts.append(node)
        stack[-1].children.append(node)
        stack.append(node)

    parser.StartElementHandler = start
    parser.EndElementHandler = lambda tag: stack.pop()
    parser.CharacterDataHandler = lambda text: stack[-1].parts.append(text)
    parser.StartDoctypeDeclHandler = lambda *told: doctypes.append(parser.CurrentLineNumber)
    try:
        parser.Parse(path.read_bytes(), True)
    except expat.ExpatError as error:
        raise Unreadable(error.lineno, f"doesn't parse: {expat.errors.messages[error.code]}") from error
    except (OSError, LookupError, UnicodeError, ValueError) as error:
        raise Unreadable(1, f"can't be read: {error}") from error
    if doctypes:
        raise Unreadable(doctypes[0], "has a DOCTYPE")
    return next(iter(top))
