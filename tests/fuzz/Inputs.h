#pragma once
// Inputs that others could write: built from a grammar, or a shipped file with some of its bytes changed.

#include <string>
#include <vector>

#include "fuzz/Random.h"

namespace lumenor::fuzz {

/// `bytes` with some of them changed, taken out, doubled or cut off.
std::string Mutated(Random &random, std::string bytes);

/// Any bytes, some thousands at most.
std::string AnyBytes(Random &random);

/// A text in UTF-8 that somebody could write into a field: a usual one, a number, a path, a registry key, one with
/// variables or control characters, a very long one.
std::string AnyText(Random &random);

/// What the elements of a document are called, and in which order they stand in each other: `list` is the path from the
/// root to the entries.
struct Grammar {
  std::vector<std::string> list;
  std::string entry;
  std::vector<std::string> fields;
  bool hasConditions = false;
};

/// A document of this grammar with a few faults in its structure, its values or its encoding, or with none. Most are
/// well-formed.
std::string AnyXml(Random &random, const Grammar &grammar);

enum class PictureKind { Png, Bmp, Icon, Jpeg, Gif };

/// The head of a picture with any sizes and flags, and some data behind it.
std::string AnyPicture(Random &random, PictureKind kind);

/// A program for 64 bits whose resources are an icon and texts, the text with the number 1 among them, with a few of
/// its numbers replaced, or with none.
std::string AnyProgram(Random &random);

/// A shortcut to an address of the web.
std::string AnyWebShortcut(Random &random);

} // namespace lumenor::fuzz
