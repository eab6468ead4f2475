// The left column of the table in Docs/ComingFromPropertyTrees.md, and what that page says of Boost.PropertyTree.

#define BOOST_BIND_GLOBAL_PLACEHOLDERS // older parsers of Boost rely on them, and say so otherwise

#include "Check.h"

#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <sstream>
#include <string>

namespace
{

using boost::property_tree::wptree;

void Map()
{
    wptree lTree;
    lTree.put(L"a", L"1");
    lTree.put(L"n", 42);
    Check(lTree.get(L"n", 0) == 42, "typed value with a default");
    wptree lOther;
    lOther.put(L"k", L"v");
    lTree.put_child(L"o", lOther);
    Check(lTree.get_child(L"o").size() == 1, "child");
    Check(lTree.get<std::wstring>(L"o.k") == L"v", "value by path");
    lTree.put(L"o.k", 7);
    Check(lTree.get<std::wstring>(L"o.k") == L"7", "value set by path");
    const bool lHas = lTree.find(L"o") != lTree.not_found();
    Check(lHas, "find");
    Check(lTree.size() == 3, "size");
    std::size_t lSeen = 0;
    for (const auto& [lName, lChild] : lTree)
    {
        lSeen += lName.size() + (lChild.empty() && lChild.data().empty() ? 1 : 0);
    }
    Check(lSeen == 3, "loop");
    lTree.erase(L"a");
    Check(lTree.size() == 2, "erase");
    std::wstringstream lText;
    write_json(lText, lTree);
    wptree lRead;
    read_json(lText, lRead);
    Check(lRead == lTree, "text and equality");
    const wptree lCopy = lTree;
    Check(lCopy == lTree, "copy");
}

void Differences()
{
    wptree lTree;
    lTree.put(L"a", L"1");
    lTree.put(L"a.k", L"v");
    Check(lTree.get<std::wstring>(L"a") == L"1" && lTree.get_child(L"a").size() == 1, "a node has data and children");
    lTree.add(L"a", L"2");
    Check(lTree.count(L"a") == 2 && lTree.get<std::wstring>(L"a") == L"1", "names repeat, and the first is found");
    wptree lOrdered;
    lOrdered.put(L"b", L"1");
    lOrdered.put(L"a", L"2");
    wptree lOther;
    lOther.put(L"a", L"2");
    lOther.put(L"b", L"1");
    Check(lOrdered != lOther, "order counts in a comparison");
    lOrdered.put(L"b", L"3");
    Check(lOrdered.front().first == L"b", "a value that is put again stays where it was");
    lTree.put(L"www.north.example", L"1");
    Check(lTree.get_child(L"www").size() == 1, "a dot makes a path");
    lTree.put(L"empty", L"");
    Check(lTree.get<std::wstring>(L"empty").empty() && lTree.count(L"empty") == 1, "empty values stay");
    lTree.put(L"n", L"12 apples");
    Check(!lTree.get_optional<int>(L"n") && lTree.get(L"n", -1) == -1, "a text that is no number is none");
    wptree lCopy = lTree;
    lCopy.put(L"a.k", L"w");
    Check(lTree.get<std::wstring>(L"a.k") == L"v", "copies go to the bottom");
}

} // namespace

int main()
{
    Map();
    Differences();
}
