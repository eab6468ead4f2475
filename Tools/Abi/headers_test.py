"""What the sums of headers notice, and what they do not."""
import unittest

import headers

HEADER = '''
#ifndef A_H // the guard
#define A_H
#define TWICE(iValue) \\
    ((iValue) + (iValue))
namespace QBase
{
// Says what it is.
class Range
{
public:
    explicit Range(int iFirst, int iLast = 7) : mFirst(iFirst), mLast(iLast) {}

    /* Both ends count. */
    int GetLength() const
    {
        const int lOne = 1;
        return mLast - mFirst + lOne;
    }

private:
    int mFirst;
    int mLast;
};
template <class T>
inline T Less(T iLeft, T iRight)
{
    const wchar_t* lText = L"a // b";
    return iLeft - iRight;
}
}
#endif
'''


class HeaderTest(unittest.TestCase):
    """Each test rewrites something in HEADER."""

    def is_noticed(self, old, new):
        """Returns whether the sum is another one when every old is a new."""
        self.assertIn(old, HEADER)
        return headers.sum_of(HEADER) != headers.sum_of(HEADER.replace(old, new))

    def test_tokens_of_a_declaration(self):
        self.assertEqual(headers.tokens_of("int Add(int iLeft, int iRight = 3); // adds\n\nvoid Go(int iRight);"),
                         ["int", "Add", "(", "int", "$1", ",", "int", "$2", "=", "3", ")", ";",
                          "void", "Go", "(", "int", "$1", ")", ";"])

    def test_what_a_client_compiles_is_noticed(self):
        for old, new in (("iLast = 7", "iLast = 8"), ("iLast = 7", "iLast"), ("+ lOne", "+ lOne + lOne"),
                         ("((iValue) + (iValue))", "((iValue) * (iValue))"), ("A_H\n#define", "B_H\n#define"),
                         ("iLeft - iRight;", "iRight - iLeft;"), ("a // b", "a // c"), ("explicit ", ""),
                         ("mLast(iLast)", "mLast(iFirst)"), ("int mFirst;\n    int mLast;", "int mLast, mFirst;"),
                         ("lOne = 1", "lOne = 10"), ("class T", "class U")):
            self.assertTrue(self.is_noticed(old, new), f"{old} becomes {new}")

    def test_comments_layout_and_names_inside_are_not(self):
        for old, new in (("Says what it is.", "Says what."), ("/* Both ends count. */\n", ""), (" // the guard", ""),
                         ("iFirst", "iBegin"), ("iLast", "oEnd"), ("lOne", "lBoth"), ("iValue", "iNumber"),
                         ("    int GetLength() const\n    {", "int GetLength()const{"),
                         ("T iLeft, T iRight", "T iLeft,\n              T iRight")):
            self.assertFalse(self.is_noticed(old, new), f"{old} becomes {new}")

    def test_a_name_in_one_declaration_is_nothing_to_another(self):
        self.assertFalse(self.is_noticed("Range(int iFirst, int iLast = 7) : mFirst(iFirst), mLast(iLast)",
                                         "Range(int iLeft, int iLast = 7) : mFirst(iLeft), mLast(iLast)"))


if __name__ == "__main__":
    unittest.main()
