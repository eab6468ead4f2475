// What a name says of where a value comes from. The part between the marks stands in CONTRIBUTING.md.

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

// [names]
unsigned int gOpenWindows = 0; // g: a global

class Counter
{
public:
    void AddNames(const wchar_t* ipText, bool iSkipEmpty, std::vector<std::wstring>& oNames); // ip, i, o: parameters

private:
    void hGrow();             // h: a helper of the implementation
    unsigned long mCount = 0; // m: a member
};

void Counter::AddNames(const wchar_t* ipText, bool iSkipEmpty, std::vector<std::wstring>& oNames)
{
    const std::wstring_view lText = ipText; // l: a local
    if (!lText.empty() || !iSkipEmpty)
    {
        oNames.emplace_back(lText);
        hGrow();
    }
}
// [names]

void Counter::hGrow()
{
    ++mCount;
    std::printf("%lu counted\n", mCount);
}

int main()
{
    std::vector<std::wstring> lNames;
    Counter lCounter;
    lCounter.AddNames(L"", true, lNames);
    lCounter.AddNames(L"north", true, lNames);
    gOpenWindows = static_cast<unsigned int>(lNames.size());
    std::printf("%u open\n", gOpenWindows);
}
