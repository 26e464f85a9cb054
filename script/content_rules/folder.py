"""A folder of content: which of its files is what, and what its folders are to the machines that read them."""
from collections import defaultdict
from pathlib import Path

from . import lists, stubs
from .entries import Pictures
from .facts import ABBREVIATIONS, FOR_YOU_LIST, FOR_YOU_TEXTS, LANGUAGE_FILES, LOCALE, PLATFORMS, WELCOME, WINDOW
from .findings import Findings

PICTURES = (".png", ".ico", ".jpg", ".jpeg", ".bmp", ".gif")


def check_folders(folders, installed=()):
    """What is found, and how many files were read. `installed` are folders whose resources/ pictures may be in."""
    found = Findings()
    given = {folder.resolve(): folder for folder in folders}  # the names of those above tell what a file is
    folders = list(given)
    files = sorted({path for folder in folders for path in ([folder] if folder.is_file() else folder.rglob("*"))
                    if path.is_file()})
    stub_files = [path for path in files if path.name.lower().endswith("dstb")]
    other_files = [path for path in files if not path.name.lower().endswith("dstb")]
    stub_roots = list({path.parent.parent: None for path in stub_files})
    beside = [place for root in stub_roots for place in (root, root.parent)]
    pictures = Pictures([*folders, *beside, *map(Path, installed)], stub_roots)
    check_stubs(found, stub_files, pictures)
    read = len(stub_files) + check_files(found, other_files, pictures)
    found[:] = sorted((finding._replace(file=as_given(finding.file, given)) for finding in found),
                      key=lambda finding: (finding.file, finding.line))
    return found, read


def as_given(file, given):
    """The file's path, from the folder on as it was given."""
    for folder, name in given.items():
        if Path(file).is_relative_to(folder):
            return str(name / Path(file).relative_to(folder))
    return file


def check_stubs(found, paths, pictures):
    by_path = {path: stubs.read_stub(found, path, pictures) for path in paths}
    read = [stub for stub in by_path.values() if stub]
    documents = stubs.documents_of(read)
    stubs.check_flyouts(found, read)
    by_root = defaultdict(lambda: defaultdict(list))
    for path, stub in by_path.items():
        stubs.check_names(found, path, stub, documents)
        place = by_root[path.parent.parent][path.parent.name.lower()]
        if stub:
            place.append(stub)
    for root, by_locale in by_root.items():
        check_locales(found, root, by_locale.keys(), "stubs")
        check_shadows(found, root, {name: {stub.path.name for stub in there} for name, there in by_locale.items()})
        stubs.check_positions(found, by_locale)


def check_locales(found, root, names, what):
    for name in names:
        if not LOCALE.fullmatch(name):
            found.error((root / name, 0), "locale", f"'{name}' is no locale's folder", f"never looks for {what} there",
                        "LANGUAGE_COUNTRY, LANGUAGE_xx or xx_xx, with '_' and not '-'")
        elif name.endswith("_xx") and name.partition("_")[0] in ABBREVIATIONS and not any(
                other.startswith(name[:4]) and other != name for other in names):
            found.error((root / name, 0), "locale", f"no machine begins its search with '{name[:4]}'",
                        "searches by this abbreviation only where a folder of language and country exists",
                        f"'{ABBREVIATIONS[name[:3]]}_xx'")


def check_shadows(found, root, files):
    """A folder named by the platform's abbreviations takes a machine away from the folders named by tags."""
    for name, there in files.items():
        language, _, country = name.partition("_")
        tag = ABBREVIATIONS.get(language)
        if tag is None or country == "xx":
            continue
        mine = there | files.get(f"{language}_xx", set())
        theirs = files.get(f"{tag}_{country}", set()) | files.get(f"{tag}_xx", set())
        for missing in sorted(theirs - mine)[:1]:
            found.warning((root / name, 0), "shadow", f"'{name}' lacks {len(theirs - mine)} files of '{tag}_{country}' or "
                          f"'{tag}_xx', such as {missing}",
                          f"on a machine of '{name}', reads neither of these: the entries come from xx_xx, if at all",
                          f"all of them in '{name}' too, or none there")


def kind_of(path):
    """The check of a file that is no stub; None for one that the dock doesn't read."""
    name = path.name
    if name == "SearchProviders.xml":
        return lists.check_providers
    if name in (f"{WINDOW}.xml", f"{WELCOME}.xml"):
        return lists.check_texts
    if name == f"{FOR_YOU_LIST}.xml":
        return lists.check_suggestions
    if name == f"{FOR_YOU_TEXTS}.xml" and path.parent.parent.name.lower().startswith("langres_"):
        return lists.check_for_you_texts
    return lists.check_document if name.lower().endswith(".xml") else None


def check_files(found, paths, pictures):
    """How many of them the dock reads."""
    read, by_tree = 0, defaultdict(lambda: defaultdict(set))
    for path in paths:
        check, tree = kind_of(path), path.parent.parent
        if tree.name.lower().startswith("langres_"):
            by_tree[tree][path.parent.name.lower()].add(path.name)
        if check:
            check(found, path, pictures)
            read += 1
        elif LOCALE.fullmatch(path.parent.name.lower()) and path.suffix.lower() not in PICTURES:
            found.warning((path, 0), "unread", "the file is nothing that the dock reads", "never opens it",
                          "a stub's name, which ends in dstb, or that of a language file")
    for tree, by_locale in by_tree.items():
        check_texts_tree(found, tree, by_locale)
    return read


def check_texts_tree(found, tree, by_locale):
    code = tree.name[len("LangRes_"):]
    if code.upper() not in PLATFORMS.values():
        found.error((tree, 0), "platform", f"no machine reads the texts of the platform '{code}'",
                    f"on such a machine, reads LangRes_{PLATFORMS.get(code.upper(), 'VRA')}",
                    ", ".join(f"LangRes_{known}" for known in sorted(set(PLATFORMS.values()))))
    check_locales(found, tree, by_locale.keys(), "texts")
    last = by_locale.get("en_xx", set()) | by_locale.get("xx_xx", set())
    for name in LANGUAGE_FILES:
        if name not in last and any(name in there for there in by_locale.values()):
            found.warning((tree, 0), "no-fallback", f"neither 'en_xx' nor 'xx_xx' has {name}",
                          "shows nothing of it to users of all other languages", "the file in 'en_xx'")
        for locale in sorted(by_locale):
            if by_locale[locale] & set(LANGUAGE_FILES) and name not in by_locale[locale]:
                found.warning((tree / locale, 0), "language-file", f"'{locale}' lacks {name}",
                              "takes the file from the next folder of the chain", "the file in every language")
