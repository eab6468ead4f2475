// UTF-8 to wide characters and back, beside the C library's iconv and a plain copy of ASCII into characters of the
// other size, which no conversion can be faster than.

#include "Runner.h"
#include "Sections.h"

#include "QBase/Convert.h"

#include <iconv.h>
#include <random>
#include <stdexcept>
#include <string>

namespace Bench
{

namespace
{

constexpr double gSecondsPerText = 0.5; // all converters together
constexpr std::size_t gLengths[] = {27, 1000, 100000};

// A text, in wide characters and in UTF-8.
struct Text
{
    std::string mName;
    std::wstring mWide;
    std::string mBytes;
};

wchar_t MakeCharacter(const std::string& iName, std::mt19937& oEngine)
{
    const auto lBelow = [&oEngine](unsigned int iLimit) { return static_cast<unsigned int>(oEngine() % iLimit); };
    if (iName == "Latin" && lBelow(16) == 0)
    {
        return static_cast<wchar_t>(0xC0 + lBelow(0x40));
    }
    if (iName == "Cyrillic" && lBelow(7) != 0)
    {
        return static_cast<wchar_t>(0x410 + lBelow(0x40));
    }
    return static_cast<wchar_t>(iName == "Chinese" ? 0x4E00 + lBelow(0x5000) : 0x20 + lBelow(95));
}

Text MakeText(const std::string& iName, std::size_t iLength)
{
    std::mt19937 lEngine(1);
    Text lText{iName, {}, {}};
    while (lText.mWide.size() < iLength)
    {
        lText.mWide += MakeCharacter(iName, lEngine);
    }
    lText.mBytes = QBase::WideCharToUTF8(lText.mWide.c_str(), true);
    return lText;
}

// Reading is parsing, and writing rendering.
class Converter : public Subject
{
public:
    explicit Converter(const Text& iText) : mText(iText) {}

    Operation Make(OperationKind iKind) override
    {
        const bool lReads = iKind == OperationKind::Parse;
        const auto lRun = [this, lReads](std::size_t iTimes) {
            for (std::size_t lTime = 0; lTime < iTimes; ++lTime)
            {
                lReads ? Keep(Read()) : Keep(Write());
            }
        };
        return {nullptr, lRun, mText.mWide.size()};
    }

    bool Check(OperationKind iKind) override
    {
        return iKind == OperationKind::Parse ? Read() == mText.mWide : Write() == mText.mBytes;
    }

protected:
    virtual std::wstring Read() = 0;
    virtual std::string Write() = 0;

    const Text& mText;
};

class OurConverter : public Converter
{
public:
    using Converter::Converter;

private:
    std::wstring Read() override
    {
        return QBase::UTF8ToWideChar(mText.mBytes, true);
    }

    std::string Write() override
    {
        return QBase::WideCharToUTF8(mText.mWide.c_str(), true);
    }
};

// The result is made as large as it can become, which is filled, and then cut.
class IconvConverter : public Converter
{
public:
    explicit IconvConverter(const Text& iText)
        : Converter(iText), mReader(::iconv_open("WCHAR_T", "UTF-8")), mWriter(::iconv_open("UTF-8", "WCHAR_T"))
    {
    }

    ~IconvConverter() override
    {
        ::iconv_close(mReader);
        ::iconv_close(mWriter);
    }

    IconvConverter(const IconvConverter&) = delete;
    IconvConverter& operator=(const IconvConverter&) = delete;

private:
    template <class To, class From>
    static To Convert(iconv_t ipConverter, const From& iFrom, std::size_t iMost)
    {
        To lTo(iMost, typename To::value_type());
        char* lFrom = const_cast<char*>(reinterpret_cast<const char*>(iFrom.data())); // which iconv only reads
        char* lPlace = reinterpret_cast<char*>(lTo.data());
        std::size_t lLeft = iFrom.size() * sizeof(typename From::value_type);
        std::size_t lRoom = lTo.size() * sizeof(typename To::value_type);
        if (::iconv(ipConverter, &lFrom, &lLeft, &lPlace, &lRoom) == static_cast<std::size_t>(-1))
        {
            throw std::runtime_error("iconv does not convert this");
        }
        lTo.resize(lTo.size() - lRoom / sizeof(typename To::value_type));
        return lTo;
    }

    std::wstring Read() override
    {
        return Convert<std::wstring>(mReader, mText.mBytes, mText.mBytes.size());
    }

    std::string Write() override
    {
        return Convert<std::string>(mWriter, mText.mWide, mText.mBytes.size());
    }

    iconv_t mReader;
    iconv_t mWriter;
};

// As many characters as the text has, all ASCII.
class PlainCopy : public Converter
{
public:
    explicit PlainCopy(const Text& iText)
        : Converter(iText), mBytes(iText.mWide.size(), 'x'), mWide(mBytes.begin(), mBytes.end())
    {
    }

private:
    std::wstring Read() override
    {
        return std::wstring(mBytes.begin(), mBytes.end());
    }

    std::string Write() override
    {
        return std::string(mWide.begin(), mWide.end());
    }

    std::string mBytes;
    std::wstring mWide;
};

std::vector<std::string> MakeRow(const Text& iText, OperationKind iKind)
{
    const SubjectMap lSubjects{{"ours", std::make_shared<OurConverter>(iText)},
                               {"iconv", std::make_shared<IconvConverter>(iText)},
                               {"copy", std::make_shared<PlainCopy>(iText)}};
    if (!lSubjects.at("ours")->Check(iKind) || !lSubjects.at("iconv")->Check(iKind))
    {
        throw std::runtime_error("a text is converted wrongly: " + iText.mName);
    }
    const Samples lSamples = Measure(iKind, lSubjects, gSecondsPerText);
    const std::vector<double>& lOurs = lSamples.at("ours");
    return {iText.mName,
            std::to_string(iText.mWide.size()),
            FormatShort(GetMedian(lOurs)),
            FormatShort(GetMedian(lSamples.at("iconv"))),
            FormatShort(GetMedian(lSamples.at("copy"))),
            Format(GetMedianRatio(lOurs, lSamples.at("iconv")), 2),
            Format(GetMedianRatio(lOurs, lSamples.at("copy")), 2)};
}

Table MakeTable(const std::string& iTitle, OperationKind iKind, const Options& iOptions)
{
    Table lTable{
        iTitle, {"text", "characters", "TalBase", "iconv", "copy", "our time of iconv's", "of the copy's"}, {}};
    for (const char* lName : {"ASCII", "Latin", "Cyrillic", "Chinese"})
    {
        for (const std::size_t lLength : gLengths)
        {
            const std::string lCase = std::string("conversions/") + (iKind == OperationKind::Parse ? "read" : "write");
            if (std::regex_search(lCase + '/' + lName, iOptions.mFilter))
            {
                ShowProgress(iTitle + ": " + lName);
                lTable.mRows.push_back(MakeRow(MakeText(lName, lLength), iKind));
            }
        }
    }
    return lTable;
}

} // namespace

std::vector<Table> MakeConversionTables(const Options& iOptions)
{
    std::vector<Table> lTables{MakeTable("Nanoseconds a character, from UTF-8", OperationKind::Parse, iOptions),
                               MakeTable("Nanoseconds a character, to UTF-8", OperationKind::Render, iOptions)};
    std::erase_if(lTables, [](const Table& iTable) { return iTable.mRows.empty(); });
    return lTables;
}

} // namespace Bench
