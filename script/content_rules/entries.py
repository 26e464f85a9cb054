"""Entries: the buttons, the rows and the icons of the jump list, with their labels and pictures."""
import re
import struct
import unicodedata

from .facts import (ACTIONS, CHILDREN, COMMANDS, CYRILLIC_FEATURE, FOR_YOU_TEXTS, JUMP_LIST, LABEL_WIDTHS, LENGTHS, MAIN,
                    PICTURE, PILLARS, USER, USER_PICTURE)
from .findings import one_of


def width(text):
    """The width of a text in half-width characters; combining marks and marks of direction have none."""
    return sum(0 if unicodedata.combining(c) or unicodedata.category(c) == "Cf"
               else 2 if unicodedata.east_asian_width(c) in "WF" else 1 for c in text)


def is_cyrillic(letter):
    return "\u0400" <= letter <= "\u052f"


def fits(text, where):
    wide = width(text)
    if where == "feature":
        wide += sum(map(is_cyrillic, text)) * (LABEL_WIDTHS[where] / CYRILLIC_FEATURE - 1)
    return wide <= LABEL_WIDTHS[where]


def check_label(found, place, text, where):
    if not fits(text, where):
        found.error(place, "label-width", f"the label '{text}' doesn't fit a {where}", "cuts it with an ellipsis",
                    f"at most {LABEL_WIDTHS[where]} narrow or {LABEL_WIDTHS[where] // 2} wide characters")


def number(text):
    """As the dock reads a number: the digits at the front, and 0 without any."""
    match = re.match(r"\s*([+-]?\d+)", text)
    return int(match[1]) if match else 0


def line_of(node, tag):
    child = node.first(tag)
    return node.line if child is None else child.line


def check_children(found, path, node, known, conditions=False):
    """Which children and attributes the dock reads; conditions are checked elsewhere."""
    seen = set()
    for child in node:
        place = path, child.line
        if conditions and child.tag == "Condition":
            continue
        if child.tag not in known:
            found.error(place, "unknown-element", f"{node.tag} has no child '{child.tag}'", "ignores it",
                        one_of(known, child.tag))
        elif child.tag in seen:
            found.error(place, "element-twice", f"'{child.tag}' is here twice", "takes the first one", "it once")
        seen.add(child.tag)
        for name in child.attributes:
            if name != "MaxLength" or child.tag not in LENGTHS or "Position" not in known:
                found.error(place, "unknown-attribute", f"{child.tag} has no attribute '{name}'", "ignores it",
                            "it without this attribute")
        if child.tag in LENGTHS and "MaxLength" in child.attributes:
            check_length(found, place, child)


def check_length(found, place, child):
    told, text = child.attributes["MaxLength"], child.text()
    if not re.fullmatch(r"[1-9]\d*", told.strip()):
        found.error(place, "max-length", f"MaxLength '{told}' is no number above 0", f"keeps {number(told)}",
                    "the number in digits, or no MaxLength")
    elif len(text) > int(told):
        found.warning(place, "max-length", f"'{text}' is longer than its MaxLength of {told}",
                      "shows it all the same, if there is room", "a shorter text, or the length that it has")


def check_entry(found, path, node, document, pictures, conditions):
    """`conditions` says whether the entry may have any."""
    check_children(found, path, node, CHILDREN, conditions)
    if node.attributes:
        found.error((path, node.line), "unknown-attribute", f"an entry has no attribute '{next(iter(node.attributes))}'",
                    "ignores it", "it without this attribute")
    if document == JUMP_LIST:
        check_icon(found, (path, line_of(node, "Image")), node.text("Image"), pictures)
        return
    check_label(found, (path, line_of(node, "Head")), node.text("Head"), "button" if document in (MAIN, USER) else "row")
    check_action(found, path, node, is_on_bar=document in (MAIN, USER, FOR_YOU_TEXTS))
    check_picture_of(found, path, node, document, pictures)


def check_schema(found, path, root):
    """An editor that finds the schema by itself adds the name of it to the file."""
    for name in root.attributes:
        if name.split(":")[-1] in ("schemaLocation", "noNamespaceSchemaLocation"):
            found.error((path, root.line), "schema-location", f"the file names a schema by {name}",
                        "may load that schema from where it says, and refuse the file",
                        "the schema's name in the editor's settings, not in the file")


def program_of(command_line):
    """What a command line starts, in its quotation marks or without."""
    quoted = re.match(r'\s*"([^"]*)"?', command_line)
    return quoted[1] if quoted else (command_line.split() or [""])[0]


def check_action(found, path, node, actions=ACTIONS, is_on_bar=False):
    """`is_on_bar` says whether the entry is a button of the bar, which knows the commands of the dock."""
    action, params = node.text("ActionType"), node.text("ActionParams")
    place, params_place = (path, line_of(node, "ActionType")), (path, line_of(node, "ActionParams"))
    program = program_of(params)
    if is_on_bar and action != "xml" and program in COMMANDS:
        if params.strip(' "') != program:
            found.warning(params_place, "command", f"'{params}' begins with a command of the dock",
                          f"runs the command '{program}', whatever is behind it",
                          "the command alone, or the whole path of the program")
        return
    if action == "xml" and not is_on_bar:
        found.error(place, "row-action", "a row opens no flyout", "does nothing at a click", "a button of the bar for it")
    elif params in COMMANDS and not is_on_bar:
        found.error(params_place, "row-action", f"'{params}' is a command of the dock, which rows don't know",
                    "starts a program of that name", "a button of the bar for it")
    elif action not in actions:
        found.error(place, "action-type", f"there is no action '{action}'", "does nothing at a click",
                    one_of(actions, action))
    elif not params:
        found.error(params_place, "action-params", f"the action '{action}' has no ActionParams", "opens nothing",
                    "what the action opens")
    elif action == "pillar" and not (params.isdigit() and int(params) < PILLARS):
        found.error(params_place, "pillar", f"there is no view '{params}' of the main application",
                    "opens the main application without a view" if not 0 <= number(params) < PILLARS
                    else f"opens view {number(params)}", "0, 1 or 2")
    elif action == "xml" and not is_document_name(params):
        found.error(params_place, "document-name", f"no document can be called '{params}'", "shows a flyout without rows",
                    "letters, digits, '.', '-' and '_', with a letter or '_' first, and no name of a device")
    elif action == "url" and not re.match(r"[A-Za-z][A-Za-z0-9+.-]*:", params):
        found.error(params_place, "address", f"the address '{params}' has no scheme",
                    "hands it to the shell, which takes it for a file", "the whole address, with https:// or the like")
    elif is_on_bar and params.lower() in {command.lower() for command in COMMANDS}:
        found.warning(params_place, "command", f"'{params}' differs from a command of the dock by its case alone",
                      "starts a program of that name", one_of(COMMANDS, params))


def is_document_name(name):
    if len(name) > 128 or not re.fullmatch(r"(?:[A-Za-z_]|[^\x00-\x7f])(?:[A-Za-z0-9_.-]|[^\x00-\x7f])*", name):
        return False
    return not re.fullmatch(r"(?i:con|prn|aux|nul|(com|lpt)\d)", name.partition(".")[0])


def check_picture_of(found, path, node, document, pictures):
    image, place = node.text("Image"), (path, line_of(node, "Image"))
    if image:
        check_picture(found, place, image, pictures, USER_PICTURE if document == USER else PICTURE)
    elif document in (MAIN, USER) and node.text("ActionType") != "exe":
        dock = "can't make the button, and the bar doesn't come up" if document == MAIN else "makes no button"
        found.error(place, "no-picture", "a button that starts no program has no picture", dock,
                    "an Image; only a program's button can do without, and takes the program's icon")


def check_picture(found, place, image, pictures, wanted=PICTURE):
    if "%" in image:
        found.error(place, "picture-path", f"the picture '{image}' has a variable",
                    "expands none here: it finds no file and shows the built-in picture",
                    "..\\resources\\NAME.png, or the whole path")
        return
    if re.match(r"[A-Za-z]:\\|\\\\", image):
        return  # of the machine that it names
    picture = pictures.find(image)
    if picture is None:
        found.error(place, "picture-missing", f"the picture '{image}' isn't found", "shows the built-in picture",
                    "..\\resources\\NAME.png for a picture of the installation, NAME.png for one beside the locale folders")
    elif (size := pictures.size(picture)) and size != wanted:
        found.warning(place, "picture-size", f"the picture '{image}' is {size[0]} by {size[1]}",
                      "scales it to its place, whatever its proportions",
                      f"a picture of {wanted[0]} by {wanted[1]}")


def check_icon(found, place, image, pictures):
    """The shell takes whole paths only: those that aren't found from the program's own folder are completed to one."""
    if not image.lower().endswith(".ico"):
        found.error(place, "icon", f"'{image}' is no icon", "hands it to the shell, which shows none",
                    "resources\\NAME.ico")
    elif image.startswith(".."):
        found.error(place, "icon", f"'{image}' is found from the program's folder, and so isn't completed",
                    "hands it to the shell as it is, which doesn't find it", "resources\\NAME.ico")
    elif not re.match(r"[A-Za-z]:\\|\\\\", image) and pictures.find(image) is None:
        found.error(place, "picture-missing", f"the icon '{image}' isn't found", "shows a blank page",
                    "resources\\NAME.ico")


class Pictures:
    """The files that pictures may be, in what is checked and in what ships with the dock."""

    def __init__(self, installations, stub_roots):
        self.installations = installations  # folders with resources/
        self.stub_roots = stub_roots
        self.known, self.sizes = {}, {}

    def find(self, image):
        """The file, in the order in which the dock looks: from its program's folder, the installation, the stubs."""
        if image not in self.known:
            self.known[image] = self.look(image.replace("\\", "/"))
        return self.known[image]

    def look(self, image):
        beside = image.removeprefix("../")
        folders = self.installations if beside != image else self.installations + self.stub_roots
        return next((file for folder in folders if (file := file_in(folder, beside))), None)

    def size(self, path):
        if path not in self.sizes:
            self.sizes[path] = png_size(path)
        return self.sizes[path]


def file_in(folder, name):
    """The file, whatever the case of its name."""
    for part in name.split("/"):
        if not folder.is_dir():
            return None
        folder = next((entry for entry in folder.iterdir() if entry.name.lower() == part.lower()), folder / part)
    return folder if folder.is_file() else None


def png_size(path):
    """None for a picture of another kind."""
    with path.open("rb") as file:
        data = file.read(24)
    return struct.unpack(">II", data[16:24]) if data[:8] == b"\x89PNG\r\n\x1a\n" else None
