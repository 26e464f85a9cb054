"""The conditions of a stub."""
import re
from collections import namedtuple

from .facts import CONDITION_TYPES, LOGIC, NUMBER_VALUES, PARAMS, ROOTS, SHORT_ROOTS, TEXT_VALUES, VALUE_TYPES
from .findings import one_of

Condition = namedtuple("Condition", "type logic key name data value_type")

HIDES = "leaves the entry out on every machine"
OPPOSITE = {"FileExist": "FileNotExist", "FileNotExist": "FileExist", "KeyExist": "KeyNotExist",
            "KeyNotExist": "KeyExist"}


def check(found, path, node, is_last):
    """The condition; what is wrong with it is reported."""
    params = read_params(found, path, node)
    condition = Condition(node.attributes.get("type", ""), *(params.get(name, "") for name in (
        "Logic", "Key", "ValueName", "ValueData", "ValueType")))
    place = path, node.line
    if check_words(found, place, condition):
        if condition.type == "File":
            check_file(found, place, condition.key)
        else:
            check_key(found, place, condition)
            if condition.logic == "CheckValue":
                check_value(found, place, condition, is_last)
    return condition


def read_params(found, path, node):
    params = {}
    for child in node:
        name = child.attributes.get("name", "")
        place = path, child.line
        if child.tag != "param":
            found.error(place, "unknown-element", f"a condition holds no '{child.tag}'", "ignores it", "'param'")
        elif name not in PARAMS:
            found.error(place, "unknown-param", f"a condition has no parameter '{name}'", "ignores it",
                        one_of(PARAMS, name))
        elif name in params:
            found.error(place, "param-twice", f"the parameter '{name}' is here twice", "takes the last one",
                        "it once; another condition for another check")
        if child.tag == "param":
            params[name] = child.text()
    return params


def check_words(found, place, condition):
    """Whether the type and its check are such that the dock looks at the rest."""
    if condition.type not in CONDITION_TYPES:
        found.error(place, "condition-type", f"a condition has the type '{condition.type}'", HIDES,
                    one_of(CONDITION_TYPES, condition.type))
        return False
    if condition.logic not in LOGIC[condition.type]:
        dock = "skips the condition" if condition.type == "File" else HIDES
        found.error(place, "condition-logic", f"a condition of the type '{condition.type}' asks '{condition.logic}'",
                    dock, one_of(LOGIC[condition.type], condition.logic))
        return False
    return True


def check_file(found, place, key):
    if not key:
        found.error(place, "file-key", "a condition asks for no file", "finds none", "the file's path as Key")
    elif re.search(r'[*?"<>|]', key):
        found.error(place, "file-key", f"no file can be called '{key}'", "finds none",
                    "the path alone, without quotation marks and wildcards")
    elif not re.match(r"[A-Za-z]:\\|\\\\|%[^%]+%", key):
        found.warning(place, "file-key", f"'{key}' is no whole path",
                      "looks for it from the folder of its own program", "the whole path, such as %windir%\\notepad.exe")


def check_key(found, place, condition):
    key, (root, behind, subkey) = condition.key, condition.key.partition("\\")
    if not key or (behind and not subkey):
        found.error(place, "key-empty", f"the registry key '{key}' has nothing behind its root",
                    "fails: it can't build the document, and the bar doesn't come up", "root, \\ and the path of the key")
    elif root not in ROOTS:
        fails = "finds the key missing" + (", and so the condition met" if condition.logic == "KeyNotExist" else "")
        found.error(place, "key-root", f"'{key}' begins with no root of the registry", fails,
                    f"'{SHORT_ROOTS[root.upper()]}'" if root.upper() in SHORT_ROOTS else one_of(ROOTS, root))


def check_value(found, place, condition, is_last):
    if condition.value_type not in VALUE_TYPES:
        found.error(place, "value-type", f"a condition asks for a value of the type '{condition.value_type}'", HIDES,
                    one_of(VALUE_TYPES, condition.value_type))
        return
    if "%" in condition.key:
        found.error(place, "value-key", f"the key '{condition.key}' of a value has a variable",
                    "expands none here and finds no such key: the entry is never shown",
                    "the key without a variable; KeyExist and KeyNotExist do expand them")
    if condition.value_type in NUMBER_VALUES:
        check_number(found, place, condition)
    else:
        check_text(found, place, condition, is_last)


def check_number(found, place, condition):
    if not re.fullmatch(r"[+-]?\d+", condition.data):
        taken = re.match(r"[+-]?\d+", condition.data)
        found.error(place, "value-number", f"'{condition.data}' is no decimal number",
                    f"compares with {taken[0] if taken else '0'}", "the number in decimal digits")


def check_text(found, place, condition, is_last):
    if not condition.data and is_last and condition.value_type == "REG_BINARY":
        return  # the one way to ask that a value be missing, whatever its type would be
    if not condition.data:
        rest = "" if is_last else ", and looks at none of the conditions that follow"
        report = found.warning if is_last else found.error
        report(place, "empty-rule", "a condition asks for a value without data",
               f"takes a missing value for the stub's whole verdict: the entry is shown{rest}",
               "this condition last, if a missing value is meant; otherwise the ValueData")
    elif condition.value_type == "REG_MULTI_SZ":
        found.error(place, "value-multi", "a condition compares a value of several texts",
                    "reads it as one text, of which such a value has none: the entry is never shown",
                    "another value; REG_MULTI_SZ only matches values that are stored as REG_SZ")
    elif condition.value_type == "REG_EXPAND_SZ" and "%" in condition.data:
        found.error(place, "value-expanded", f"'{condition.data}' is compared with an expanded text",
                    "expands what is stored and not this: they are never equal", "the text as it is once expanded")


def exclude(first, second):
    """Whether two lists of conditions can't both hold: one wants what the other refuses."""
    return any(clash(a, b) or clash(b, a) for a in first for b in second)


def clash(wanted, refused):
    if OPPOSITE.get(wanted.logic) == refused.logic:
        return wanted.key.lower() == refused.key.lower()
    if wanted.logic != "CheckValue" or wanted.key.lower() != refused.key.lower():
        return False
    if refused.logic == "KeyNotExist":
        return True
    # Of one value: a type that one of them asks for and the other can't have, or other data.
    return (refused.logic == "CheckValue" and wanted.name.lower() == refused.name.lower()
            and (kind(wanted), wanted.data.lower()) != (kind(refused), refused.data.lower()))


def kind(condition):
    return "text" if condition.value_type in TEXT_VALUES else condition.value_type
