"""What holds for the factory content besides: the same entries and texts in every language and on every platform, the
pictures of the program, and that all of it was rendered from its tables and drawings."""
import re
import subprocess
import tempfile
from pathlib import Path
from xml.etree import ElementTree

from .entries import png_size
from .facts import FOR_YOU_TEXTS, JUMP_LIST, LANGUAGE_FILES, PLATFORMS, TEXT_IDS

# What the program's own code asks for by name.
PROGRAM_PICTURES = {
    "foryou_idle": (48, 48), "foryou_active": (48, 48), "arrow": (14, 16), "search": (26, 28),
    "reset-icon": (32, 32), "close-icon": (32, 32), "move_to_top": (32, 32), "move_to_bottom": (32, 32),
    "arrow-down": (20, 20), "arrow-up": (20, 20), "scroll_left": (24, 48), "scroll_right": (24, 48),
    "ResetImage": (48, 48), "backgroundwindow": (760, 450), "arrowIcon": (24, 20),
    "handswithIconsGraphic": (560, 320), "LaunchVideo": (48, 16),
}
BUILT_IN_PICTURES = {"default": (48, 48), "splitter": (2, 60)}
STUB_NAME = re.compile(r"(Lumenor\.MainFrame\.[A-Za-z.]+)\.\d{3}-[a-z0-9-]+\.dstb")


class Product:
    """`root` holds product/, src/ and script/. Faults are lines of a file and what is wrong."""

    def __init__(self, root):
        self.root, self.product, self.faults = root, root / "product", []

    def fault(self, path, text):
        self.faults.append(f"{path}: {text}")

    def check(self):
        locales = self.check_stubs()
        languages = self.check_texts()
        for name in sorted((locales - {"xx_xx"}) ^ (languages - {"en_xx"})):
            self.fault(name, "is a language of the buttons or of the texts alone")
        self.check_asked_texts()
        self.check_pictures()
        self.check_rendered()
        return f"{len(locales)} folders of stubs, {len(languages)} of texts on {len(set(PLATFORMS.values()))} platforms"

    def check_stubs(self):
        names = {folder.name: self.stub_names(folder) for folder in (self.product / "LangRes").iterdir()}
        for name in sorted(names):
            if names[name] != names["xx_xx"]:
                self.fault(self.product / "LangRes" / name, f"lacks or adds {sorted(names[name] ^ names['xx_xx'])}")
        return set(names)

    def stub_names(self, folder):
        """Those of the translated stubs."""
        names = set()
        for path in sorted(folder.iterdir()):
            match = STUB_NAME.fullmatch(path.name)
            if not match:
                self.fault(path, "isn't named like a stub of ours")
            elif match[1] not in (JUMP_LIST, FOR_YOU_TEXTS):
                names.add(path.name)
                self.check_stub_style(path)
        return names

    def check_stub_style(self, path):
        text = path.read_text(encoding="utf-8")
        if re.search(r"<(Head|ToolTip)[^>]*/>|<(Head|ToolTip)[^>]*></", text):
            self.fault(path, "has no label or no tool tip")
        if not re.search(r"<Image>\.\.\\resources\\[A-Za-z_-]+\.png</Image>", text):
            self.fault(path, "its picture isn't one of the installation")

    def check_texts(self):
        base = self.product / "BaseContent/LangRes"
        trees = {path.name: files(path) for path in base.iterdir()}
        wanted = {f"LangRes_{code}" for code in PLATFORMS.values()}
        for name in sorted(wanted ^ trees.keys()):
            self.fault(base / name, "is missing, or is the tree of no platform")
        first = trees.get("LangRes_VRA", {})
        for name, tree in trees.items():
            for path in sorted(first.keys() | tree.keys()):
                if first.get(path) != tree.get(path):
                    self.fault(base / name / path, "differs from that of LangRes_VRA")
        languages = {path.parts[0] for path in first}
        for language in languages:
            names = {path.name for path in first if path.parts[0] == language}
            if names != set(LANGUAGE_FILES):
                self.fault(base / "LangRes_VRA" / language, f"lacks or adds {sorted(names ^ set(LANGUAGE_FILES))}")
        return languages

    def check_asked_texts(self):
        """Those of the features, which the program composes, aren't in its table."""
        table = (self.root / "src/dock/TextIds.h").read_text(encoding="utf-8")
        for text_id in sorted(set(re.findall(r'TextId\[\] = L"([A-Za-z0-9.]+)"', table)) - set().union(*TEXT_IDS.values())):
            self.fault(self.root / "src", f"asks for the text {text_id}, which no language has")

    def check_pictures(self):
        places = (("resources", self.product / "resources", PROGRAM_PICTURES),
                  ("built-in", self.root / "src/resources", BUILT_IN_PICTURES))
        for drawings, pictures, sizes in places:
            for name, size in sizes.items():
                path = pictures / f"{name}.png"
                if not path.is_file() or rgba_size(path) != size:
                    self.fault(path, f"has to be an RGBA picture of {size[0]} by {size[1]}")
            art = self.product / "art" / drawings
            for name in sorted({path.stem for path in art.glob("*.svg")} ^ {path.stem for path in pictures.glob("*.png")}):
                self.fault(pictures / f"{name}.png", "drawing and picture don't come together")
            for path in sorted(art.glob("*.svg")):
                self.check_drawing(path)

    def check_drawing(self, path):
        try:
            ElementTree.parse(path)
        except ElementTree.ParseError as error:
            self.fault(path, f"doesn't parse: {error}")

    def check_rendered(self):
        with tempfile.TemporaryDirectory() as scratch:
            subprocess.run([self.root / "script/render-content", scratch], check=True)
            for tree in ("LangRes", "BaseContent"):
                here, fresh = files(self.product / tree), files(Path(scratch) / tree)
                for name in sorted(set(here) | set(fresh)):
                    if here.get(name) != fresh.get(name):
                        self.fault(self.product / tree / name, "differs from the tables: run script/render-content")


def files(folder):
    return {path.relative_to(folder): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


def rgba_size(path):
    return png_size(path) if path.read_bytes()[24:26] == bytes((8, 6)) else None
