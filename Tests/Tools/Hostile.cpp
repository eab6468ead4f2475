#include "Tests/Tools/Hostile.h"

namespace ToolTests
{

namespace
{

// What iMake makes of each number from 0 on.
template <class Make>
std::string Each(std::size_t iCount, const Make& iMake)
{
    std::string lText;
    for (std::size_t lNumber = 0; lNumber < iCount; ++lNumber)
    {
        lText += iMake(std::to_string(lNumber));
    }
    return lText;
}

// With a header, and with n, which the commands take out and move.
Shape BagOf(const std::string& iName, const std::function<std::string(std::size_t)>& iMake)
{
    return {iName, [iMake](std::size_t iCount) { return gHeader + "n++++1***" + iMake(iCount); }};
}

Shape BagOfEach(const std::string& iName, const std::function<std::string(const std::string&)>& iMake)
{
    return BagOf(iName, [iMake](std::size_t iCount) { return Each(iCount, iMake); });
}

Shape DocumentOfEach(const std::string& iName, const std::function<std::string(const std::string&)>& iMake)
{
    return {iName, [iMake](std::size_t iCount) { return "{" + Each(iCount, iMake) + "\"z\":\"z\"}"; }};
}

} // namespace

std::string Repeated(const std::string& iText, std::size_t iCount)
{
    std::string lText;
    lText.reserve(iText.size() * iCount);
    for (std::size_t lIndex = 0; lIndex < iCount; ++lIndex)
    {
        lText += iText;
    }
    return lText;
}

std::string MakeMails(std::size_t iBytes)
{
    std::string lText = gHeader;
    for (std::size_t lNumber = 0; lText.size() < iBytes; ++lNumber)
    {
        const std::string lId = std::to_string(lNumber);
        lText += "Job " + lId +
                 "++++Queued++++2026-01-02T03:04:05.678901Z***Attempts++++0***Subject++++Message number " + lId +
                 "***Size++++" + std::to_string(2000 + lNumber % 3000) + "***Body++++" +
                 Repeated("Lines of some seventy characters, as mails have them since long ago,\n", 40 + lNumber % 9) +
                 "***Account++++FTPServerPassword++++secret " + lId + "******Header++++" +
                 Each(12,
                      [&](const std::string& iField) {
                          return "Received " + iField + "++++from mx" + iField +
                                 ".example.com (192.0.2.1) by example.org "
                                 "for <someone@example.org>***";
                      }) +
                 "******";
    }
    return lText;
}

std::vector<Shape> MakeShapes()
{
    return {
        BagOf("levels", [](std::size_t i) { return Repeated("n++++", i) + "k++++v***" + Repeated("***", i); }),
        BagOf("levels of nothing", [](std::size_t i) { return Repeated("n++++", i) + Repeated("***", i); }),
        BagOf("levels that do not end", [](std::size_t i) { return Repeated("n++++", i); }),
        BagOfEach("names", [](const std::string& i) { return "name " + i + "++++v***"; }),
        BagOf("one name", [](std::size_t i) { return Repeated("name++++v***", i); }),
        BagOf("one name of bags", [](std::size_t i) { return Repeated("name++++k++++v******", i); }),
        BagOfEach("bags", [](const std::string& i) { return "bag " + i + "++++k++++v***l++++w******"; }),
        BagOfEach("empty values", [](const std::string& i) { return "name " + i + "++++***\n"; }),
        BagOfEach("empty bags", [](const std::string& i) { return "bag " + i + "++++k++++******"; }),
        BagOfEach("secrets", [](const std::string& i) { return i + " FTPServerPassword++++secret***"; }),
        BagOfEach("bags of secrets",
                  [](const std::string& i) { return "bag " + i + "++++FTPServerPassword++++secret******"; }),
        BagOf("a long value", [](std::size_t i) { return "v++++" + Repeated("some words of a value, ", i) + "***"; }),
        BagOf("escapes", [](std::size_t i) { return "v++++" + Repeated("&#42;&#43;&", i) + "***"; }),
        BagOf("a long name", [](std::size_t i) { return Repeated("some words of a name, ", i) + "++++v***"; }),
        BagOf("a long tail", [](std::size_t i) { return "a++++b***" + Repeated("tail\n", i); }),
        BagOf("long words behind a fault",
              [](std::size_t i) { return "Job***1++++" + Repeated(std::string(3000, 'x') + " ", i / 100 + 1); }),
        BagOf("one word behind a fault", [](std::size_t i) { return "Job***1++++" + Repeated("QUJDREVG", i); })};
}

std::vector<Shape> MakeJsonShapes()
{
    return {
        {"levels of losses",
         [](std::size_t i) { return Repeated("{\"e\":\"\",\"n\":", i) + "{\"k\":1}" + Repeated("}", i); }},
        {"levels of arrays", [](std::size_t i) { return Repeated("[\"a\",", i) + "\"b\"" + Repeated("]", i); }},
        DocumentOfEach("names", [](const std::string& i) { return "\"name " + i + "\":\"v\","; }),
        DocumentOfEach("one name", [](const std::string&) { return "\"name\":\"v\","; }),
        DocumentOfEach("one name of objects", [](const std::string&) { return "\"name\":{\"a\":{\"k\":\"v\"}},"; }),
        DocumentOfEach("values behind objects",
                       [](const std::string& i) { return "\"o" + i + "\":{\"k\":\"v\"},\"v" + i + "\":\"v\","; }),
        DocumentOfEach("empty objects", [](const std::string& i) { return "\"e" + i + "\":{\"f\":{}},"; }),
        DocumentOfEach("names of an array", [](const std::string& i) { return "\"" + i + "\":1,"; }),
        {"a long text", [](std::size_t i) { return "{\"v\":\"" + Repeated("some words + of *a value, ", i) + "\"}"; }},
        {"a fault at the end", [](std::size_t i) { return "[" + Repeated("1,\n", i) + "x]"; }}};
}

} // namespace ToolTests
