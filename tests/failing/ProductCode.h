#pragma once
// Which code of this program is the product's: calls of the platform are made to fail only there, and not where the
// test, the run-time libraries or GoogleTest make them. It is told by the names in the program's own symbol table.

#include <string>

namespace lumenor::failing {

/// Reads the symbol table of this program's file; once, before the others.
void ReadSymbols();

/// Whether the address lies in a function of the product.
bool IsProductCode(const void *address);

/// The function at the address and the distance from its begin, as in "lumenor::Window::Render()+0x12".
std::string DescribeCode(const void *address);

} // namespace lumenor::failing
