"""What the dock knows: its words, its documents, its texts and the places where labels stand. A test holds the words
against those that the code compares (tests/script/content-words-test)."""
import re

WINDOW = "Lumenor.MainFrame.Windows.DockViewWindow"
MAIN = f"{WINDOW}.Main"
USER = f"{WINDOW}.User"
FOR_YOU_TEXTS = f"{WINDOW}.ForYou"
JUMP_LIST = "Lumenor.MainFrame.Controls.JumpList.Main"
WELCOME = "Lumenor.MainFrame.Controls.WelcomeWindow"
FOR_YOU_LIST = "Lumenor.MainFrame.Controls.DockPopup.ForYou"
KNOWN_DOCUMENTS = (MAIN, USER, FOR_YOU_TEXTS, JUMP_LIST)

CHILDREN = ("Head", "ToolTip", "ActionType", "ActionParams", "ActionParamsBackup", "Image", "Position")
PROVIDER_CHILDREN = ("Head", "ActionType", "ActionParams", "Image")
SUGGESTION_CHILDREN = ("Head", "ToolTip", "ActionType", "ActionParams", "Image")
LENGTHS = {"Head", "ToolTip"}  # the children with MaxLength

ACTIONS = ("url", "exe", "xml", "eccategory", "pillar")
SEARCH_ACTIONS = ("url", "helpSearch")
COMMANDS = ("flyout", "foryou", "resetConfirmation", "searchProvider", "search", "close")
PILLARS = 3

CONDITION_TYPES = ("File", "Registry")
LOGIC = {"File": ("FileExist", "FileNotExist"), "Registry": ("KeyExist", "KeyNotExist", "CheckValue")}
PARAMS = ("Logic", "Key", "ValueName", "ValueData", "ValueType")
TEXT_VALUES = ("REG_SZ", "REG_EXPAND_SZ", "REG_MULTI_SZ", "REG_BINARY")
NUMBER_VALUES = ("REG_DWORD", "REG_QWORD")
VALUE_TYPES = TEXT_VALUES + NUMBER_VALUES
ROOTS = ("HKEY_LOCAL_MACHINE", "HKEY_CURRENT_USER", "HKEY_USERS", "HKEY_CURRENT_CONFIG", "HKEY_CLASSES_ROOT")
SHORT_ROOTS = {"HKLM": ROOTS[0], "HKCU": ROOTS[1], "HKU": ROOTS[2], "HKCC": ROOTS[3], "HKCR": ROOTS[4]}

FIXED_BUTTONS, USER_BUTTONS, LIST_ROWS = 3, 30, 5
# The sizes that fill their places at 144 dots per inch pixel by pixel: the box of a user's button is 32 by 28 at 96, all
# others are square.
PICTURE, USER_PICTURE = (48, 48), (48, 42)

# The half-width characters that fit the places where a label is cut with an ellipsis.
LABEL_WIDTHS = {"button": 14, "row": 28, "dialog button": 11, "tour": 24, "feature": 62}
CYRILLIC_FEATURE = 54  # Cyrillic letters are wider in the font of the features

TEXT_IDS = {
    WINDOW: {f"Button.Tooltip.{name}" for name in ("DockAtTop", "DockAtBottom", "Reset", "Close")}
    | {f"SearchBox.{name}ToolTip" for name in ("SelectProvider", "Button")}
    | {f"ResetWindow.{name}" for name in ("Title", "Description", "ResetButton", "CancelButton")},
    WELCOME: {f"TextBlock.Feature{row}{half}" for row in range(1, 5) for half in "ab"}
    | {f"TextBlock.{name}" for name in ("WindowTitle", "FeaturesHeading", "ViewTour", "OptOutPreferences",
                                        "ButtonClose", "AllowToUpdate", "OptOutLabel")}
    | {"Button.Tooltip.Close"},
}
LANGUAGE_FILES = (f"{WINDOW}.xml", f"{WINDOW}.ForYou.xml", f"{WELCOME}.xml", "SearchProviders.xml")

LOCALE = re.compile(r"[a-z]{2,3}_[a-z]{2}")  # the name of a locale's folder

# What the machine's registry may hold as its platform, and the folder that it reads.
PLATFORMS = {"TWD": "VRA", "VRA": "VRA", "VRB": "VRA", "VRC": "VRC", "VRD": "VRD", "VRE": "VRE"}

# The platform's abbreviations of languages, and their tags.
ABBREVIATIONS = {
    "ara": "ar", "bgr": "bg", "chs": "zh", "cht": "zh", "csy": "cs", "dan": "da", "dea": "de", "des": "de",
    "deu": "de", "ell": "el", "ena": "en", "enc": "en", "eng": "en", "enu": "en", "esm": "es", "esn": "es",
    "esp": "es", "fin": "fi", "fra": "fr", "frb": "fr", "frc": "fr", "frs": "fr", "heb": "he", "hrv": "hr",
    "hun": "hu", "ita": "it", "jpn": "ja", "kor": "ko", "nld": "nl", "nor": "nb", "plk": "pl", "ptb": "pt",
    "ptg": "pt", "rom": "ro", "rus": "ru", "sky": "sk", "slv": "sl", "sve": "sv", "tha": "th", "trk": "tr",
    "ukr": "uk",
}
