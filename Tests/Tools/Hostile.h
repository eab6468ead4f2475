// Texts that cost a careless program much, each with a length to double.

#ifndef TESTS_TOOLS_HOSTILE_H
#define TESTS_TOOLS_HOSTILE_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace ToolTests
{

inline const std::string gHeader = "EndDelimiter***BeginDelimiter++++***";

std::string Repeated(const std::string& iText, std::size_t iCount);

// Bags of mails, each with its fields, a nested bag of header fields and a body of some thousand characters.
std::string MakeMails(std::size_t iBytes);

struct Shape
{
    std::string mName;
    std::function<std::string(std::size_t)> mMake; // some 10 to 100 bytes for each of a number
};

std::vector<Shape> MakeShapes();
std::vector<Shape> MakeJsonShapes();

} // namespace ToolTests

#endif
