// The locale in which the C library knows characters, whatever the user's is: it has UTF-8 and is always there.

#ifndef TALBASETOOL_TEXT_UTF8LOCALE_H
#define TALBASETOOL_TEXT_UTF8LOCALE_H

#include <locale.h>

namespace TalBaseTool
{

// It is read from files, so once for all.
inline locale_t GetUtf8Locale()
{
    static const locale_t lLocale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return lLocale;
}

// What the C library does in this thread while this lives, it does in that locale.
class Utf8Locale
{
public:
    Utf8Locale() : mOld(::uselocale(GetUtf8Locale())) {}

    ~Utf8Locale()
    {
        ::uselocale(mOld);
    }

    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;

private:
    locale_t mOld;
};

} // namespace TalBaseTool

#endif
