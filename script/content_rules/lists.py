"""Files that aren't stubs: documents, texts, search providers, the For You list."""
import re

from .entries import (check_action, check_children, check_entry, check_label, check_picture, check_schema, is_document_name,
                      line_of)
from .facts import (FIXED_BUTTONS, FOR_YOU_LIST, FOR_YOU_TEXTS, LIST_ROWS, MAIN, PROVIDER_CHILDREN, SEARCH_ACTIONS,
                    SUGGESTION_CHILDREN, TEXT_IDS, USER, USER_BUTTONS)
from .findings import one_of
from .xml_lines import Unreadable, read

ROW_ACTIONS = ("exe", "eccategory", "pillar")  # which are no search

LABELS = {"ResetWindow.ResetButton": "dialog button", "ResetWindow.CancelButton": "dialog button",
          "TextBlock.ButtonClose": "dialog button", "TextBlock.ViewTour": "tour"}


def root_of(found, path, dock):
    try:
        root = read(path)
    except Unreadable as error:
        found.error((path, error.line), "unreadable", error.what, dock, "well-formed XML without a DOCTYPE")
        return None
    check_schema(found, path, root)
    return root


def entries_of(found, path, name, dock):
    """The Element nodes of a file of this document; None where the dock finds no list."""
    root = root_of(found, path, dock)
    if root is None:
        return None
    document = root.first(name) if root.tag == "UIRoot" and "xmlns" not in root.attributes else None
    listed = document.first("Elements") if document else None
    if listed is None:
        found.error((path, root.line), "shape", f"the file has no list of {name}", dock,
                    f"<UIRoot><{name}><Elements>, without a namespace")
        return None
    for other in listed:
        if other.tag != "Element":
            found.error((path, other.line), "unknown-element", f"Elements has no child '{other.tag}'", "ignores it",
                        "'Element'")
    return listed.all("Element")


def check_count(found, path, nodes, limit, what):
    for node in nodes[limit:]:
        found.error((path, node.line), "too-many", f"there are more than {limit} {what}", f"shows the first {limit}",
                    f"at most {limit}")


def check_document(found, path, pictures):
    name = path.name[:-len(".xml")]
    if not is_document_name(name):
        found.error((path, 1), "document-name", f"no document can be called '{name}'", "never opens the file",
                    "letters, digits, '.', '-' and '_', with a letter or '_' first, and no name of a device")
    nodes = entries_of(found, path, name, "shows none of it, and leaves the file as it is") or []
    limit = {MAIN: FIXED_BUTTONS, USER: USER_BUTTONS}.get(name, len(nodes))
    check_count(found, path, nodes, limit, "buttons")
    for node in nodes:
        check_entry(found, path, node, name, pictures, False)


def check_texts(found, path, _pictures):
    name = path.name[:-len(".xml")]
    nodes = entries_of(found, path, name, "shows blank texts; no other folder is asked")
    if nodes is None:
        return
    seen = set()
    for node in nodes:
        check_text(found, path, node, TEXT_IDS[name], seen)
    for text_id in sorted(TEXT_IDS[name] - seen):
        found.error((path, 1), "text-missing", f"lacks {text_id}", "shows a blank text; no other folder is asked",
                    f'<Element ID="{text_id}"><Head>TEXT</Head></Element>')


def check_text(found, path, node, known, seen):
    text_id, text, place = node.attributes.get("ID", ""), node.text("Head"), (path, node.line)
    if text_id not in known:
        found.error(place, "text-id", f"the dock asks for no text '{text_id}'", "never reads it",
                    one_of(sorted(known - seen), text_id))
    elif text_id in seen:
        found.error(place, "text-twice", f"holds {text_id} twice", "takes the first one", "it once")
    elif not text:
        found.error(place, "text-empty", f"{text_id} is empty", "shows a blank text", "the text in Head")
    seen.add(text_id)
    where = LABELS.get(text_id, "feature" if text_id.startswith("TextBlock.Feature") and text_id[-1] in "ab" else None)
    if where:
        check_label(found, place, text, where)


def check_for_you_texts(found, path, _pictures):
    nodes = entries_of(found, path, FOR_YOU_TEXTS, "shows a flyout without a title, and a button without a tool tip")
    if nodes is None:
        return
    if len(nodes) != 1 or not nodes[0].text("Head") or not nodes[0].text("ToolTip"):
        found.error((path, 1), "for-you-texts", "has to hold one Element with Head and ToolTip",
                    "takes the first of each that there is", "<Element><Head>TITLE</Head><ToolTip>TIP</ToolTip></Element>")


def check_rows(found, path, nodes, children, actions, pictures):
    check_count(found, path, nodes, LIST_ROWS, "rows")
    for node in nodes:
        check_children(found, path, node, children)
        if not node.text("Head"):
            found.error((path, node.line), "label-empty", "a row has no label", "shows a row without a text", "a Head")
        check_label(found, (path, line_of(node, "Head")), node.text("Head"), "row")
        if actions is SEARCH_ACTIONS and node.text("ActionType") in ROW_ACTIONS:
            found.error((path, line_of(node, "ActionType")), "provider-action",
                        f"the action '{node.text('ActionType')}' is none of a search provider",
                        "runs it when it is chosen, and doesn't search", one_of(SEARCH_ACTIONS))
        elif node.text("ActionType") != "helpSearch":
            check_action(found, path, node, actions)
        if node.text("Image"):
            check_picture(found, (path, line_of(node, "Image")), node.text("Image"), pictures)


def check_suggestions(found, path, pictures):
    nodes = entries_of(found, path, FOR_YOU_LIST, "keeps the rows that it has") or []
    check_rows(found, path, nodes, SUGGESTION_CHILDREN, ("url", "exe", "eccategory", "pillar"), pictures)


def check_providers(found, path, pictures):
    root = root_of(found, path, "keeps the providers that it has, at a start none")
    if root is None:
        return
    nodes = root.all("Providers") if root.tag == "SearchingProviders" else []
    if not nodes:
        found.error((path, root.line), "shape", "the file lists no search providers", "shows an empty list, and finds nothing",
                    "<SearchingProviders><Providers>, without a namespace")
    for other in root:
        if root.tag == "SearchingProviders" and other.tag != "Providers":
            found.error((path, other.line), "unknown-element", f"SearchingProviders has no child '{other.tag}'",
                        "ignores it", "'Providers'")
    check_rows(found, path, nodes, PROVIDER_CHILDREN, SEARCH_ACTIONS, pictures)
    for node in nodes:
        address = node.text("ActionParams")
        if node.text("ActionType") == "url" and not re.match(r"https?://", address):
            found.warning((path, line_of(node, "ActionParams")), "search-address", f"searches with '{address}'",
                          "opens this with the encoded text behind it",
                          "the start of a web address, up to the place of the text")
