// Every failure of the library, brought about for real, and what was seen.

#ifndef TESTS_CONTRACT_DOCUMENTS_PROVOCATIONS_H
#define TESTS_CONTRACT_DOCUMENTS_PROVOCATIONS_H

#include <string>
#include <vector>

namespace Documents
{

// The values that stand for the placeholders of the documents.
inline const wchar_t* const gRefusedValue = L"x]]y";     // <value>
inline const wchar_t* const gRefusedText = L"a++++1***"; // <text>
inline const wchar_t* const gBegin = L"[[";              // <begin>
inline const wchar_t* const gEnd = L"]]";                // <end>
inline const wchar_t* const gPlace = L"2";               // <n>
inline const wchar_t* const gMissingPath = L"n/m";       // <path>
inline const wchar_t* const gUnreadablePath = L"n\\";    // <bad path>, which is shown of one that goes on

// What a message was given for its placeholders.
struct Placeholders
{
    std::wstring mValue = gRefusedValue;
    std::wstring mBegin = gBegin;
    std::wstring mEnd = gEnd;
};

// What one provoked failure showed.
struct Observation
{
    std::string mOperation; // as the documents name it: "PropertyBag::SetProperty"
    std::string mClass; // the class C of the thrown ExceptionImpl<C>, without the library's namespace, or another one
    std::wstring mText; // of a message of the library
    bool mIsUnchanged;  // whether the object that was asked is as it was before
    Placeholders mPlaceholders;
};

// Return what was seen of the library and of the platform family. Throw std::runtime_error where nothing is thrown.
std::vector<Observation> ProvokeLibrary();
std::vector<Observation> ProvokePlatform();

} // namespace Documents

#endif
