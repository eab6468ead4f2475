// Two bags that must be told apart by nothing: one of the library, one of the plain implementation.

#ifndef TESTS_SUPPORT_TWINS_H
#define TESTS_SUPPORT_TWINS_H

#include "Tests/Support/Describe.h"

#include <array>
#include <functional>
#include <string>

namespace Support
{

enum Side
{
    Library,
    PlainSide
};

struct Twins
{
    std::array<BagPtr, 2> mBags;
};

// Make bags of one side, as the library's factories do.
BagPtr MakeBag(Side iSide);
BagPtr MakeBag(Side iSide, const std::wstring& iBegin, const std::wstring& iEnd);
BagPtr MakeBag(Side iSide, const std::wstring& iText);

// Makes a bag of a class of one's own that does not remove plain values, or nests, when they are replaced or removed,
// so that it and its clones hold names twice.
BagPtr MakeKeeper(Side iSide, bool iKeepsValues, bool iKeepsNests);
bool IsKeeper(const QTalBase::PropertyBag& iBag);

// How many levels of nests a bag has, and how many properties and nests at all of them.
unsigned int DepthOf(const QTalBase::PropertyBag& iBag);
std::size_t CountAll(const QTalBase::PropertyBag& iBag);

// What one side answers: a result, or an exception's class and text. Exceptions that no operation promises pass on.
std::wstring Outcome(const std::function<std::wstring()>& iOperation);

} // namespace Support

#endif
