"""What the dock should read of a file that its schema takes, by a reading of its own and in the words of the test
program. Only for such files: what a schema refuses needs no model."""
import xml.etree.ElementTree as ET

FIELDS = ["Head", "ToolTip", "ActionType", "ActionParams", "ActionParamsBackup", "Image", "Position"]
OF_KIND = {
    "stub": FIELDS,
    "document": [name for name in FIELDS if name != "ActionParamsBackup"],
    "for-you": ["Head", "ToolTip", "ActionType", "ActionParams", "Image"],
    "search-providers": ["Head", "ActionType", "ActionParams", "Image"],
}
FOR_YOU_TEXTS = "Lumenor.MainFrame.Windows.DockViewWindow.ForYou"


def trimmed(node):
    return "".join(node.itertext()).strip(" \t\r\n") if node is not None else ""


def number(text):
    return str(int(text)) if text and int(text) else ""


def conditions(root):
    """All in the file count, wherever they stand."""
    for condition in root.iter("Condition"):
        params = {param.get("name"): trimmed(param) for param in condition.findall("param")}
        words = [condition.get("type"), params.get("Logic", ""), params.get("Key", "")]
        if params.get("ValueName"):
            words += [params.get(name, "") for name in ("ValueName", "ValueData", "ValueType")]
        yield "Condition", ",".join(words)


def described(entry, kind, root):
    values = []
    for name in OF_KIND[kind]:
        child = entry.find(name)
        text = trimmed(child)
        values.append((name, number(text) if name == "Position" else text))
        if name in ("Head", "ToolTip") and child is not None and kind in ("stub", "document"):
            values.append((f"{name}MaxLength", number(child.get("MaxLength"))))
    if kind == "stub":
        values += conditions(root)
    return "|".join(f"{name}={text}" for name, text in values if text)


def texts(root, name, ids):
    entries = root.findall(f"{name}/Elements/Element")
    if name == FOR_YOU_TEXTS:
        found = [(child, trimmed(entries[0].find(child))) for child in ("Head", "ToolTip")]
    else:
        found = [(known, trimmed(entry.find("Head"))) for known in ids for entry in entries if entry.get("ID") == known]
    return "|".join(f"{key}={text}" for key, text in found if text)


def expected(kind, name, content, ids):
    root = ET.fromstring(content)
    if kind == "texts":
        return texts(root, name, ids)
    entries = root.findall("Providers" if kind == "search-providers" else f"{name}/Elements/Element")
    read = ""
    for entry in entries[:1] if kind == "stub" else entries:  # nothing parts an entry from empty ones ahead of it
        read += (" / " if read else "") + described(entry, kind, root)
    return read
