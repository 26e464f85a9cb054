"""What is found: where, how bad, what is wrong, what the dock does then, and how to write it."""
import difflib
import json
from collections import namedtuple

Finding = namedtuple("Finding", "file line level rule what dock write")


class Findings(list):
    def error(self, place, rule, what, dock, write):
        """The dock does something else than what is written."""
        self.append(Finding(str(place[0]), place[1], "error", rule, what, dock, write))

    def warning(self, place, rule, what, dock, write):
        """It does what is written, and that may not be what is meant."""
        self.append(Finding(str(place[0]), place[1], "warning", rule, what, dock, write))

    def errors(self):
        return sum(finding.level == "error" for finding in self)

    def as_json(self, read):
        errors = self.errors()
        return json.dumps({"files": read, "errors": errors, "warnings": len(self) - errors,
                           "findings": [finding._asdict() for finding in self]}, indent=2, ensure_ascii=False)

    def as_text(self):
        return "\n".join(f"{found.file}:{found.line}: {found.level}: {found.what} [{found.rule}]\n"
                         f"    the dock: {found.dock}\n    write:    {found.write}" for found in self)


def one_of(words, given=""):
    """How to write it: the nearest of the words, or all of them."""
    lower = {word.lower(): word for word in words}
    near = difflib.get_close_matches(given.strip().lower(), lower, 1, 0.7)
    return f"'{lower[near[0]]}'" if near else "one of " + ", ".join(f"'{word}'" for word in words)
