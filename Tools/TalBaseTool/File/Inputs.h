// What a command reads that takes many bags: files, the files in folders, and standard input, which has one text form
// or JSON lines. Those are text forms as JSON strings, or bags as JSON objects, one a line; they are read as they come,
// and each is let go before the next. A bag that cannot be read does not stop the others.

#ifndef TALBASETOOL_FILE_INPUTS_H
#define TALBASETOOL_FILE_INPUTS_H

#include "File/Document.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace TalBaseTool
{

struct InputOptions
{
    std::vector<std::string> mFiles; // none is standard input, as "-" is
    bool mIsRecursive = false;       // folders stand for all regular files below them, in order, without links
    bool mHasLines = false;          // files have JSON lines; standard input may have them in any case
    RawPair mPair;
    SecretOptions mSecrets;
    int mUnreadable = 2; // the status where a text is no bag's
};

// One of the texts.
class Input
{
public:
    // iRead: what gives its text.
    Input(std::string iName, bool iIsOneOfMany, std::function<std::wstring()> iRead)
        : mName(std::move(iName)), mIsOneOfMany(iIsOneOfMany), mRead(std::move(iRead))
    {
    }

    // As Document::mFile: "job.bag", "-", "bags.jsonl:3".
    const std::string& GetName() const
    {
        return mName;
    }

    // Whether others come beside it, so that who shows it names it.
    bool IsOneOfMany() const
    {
        return mIsOneOfMany;
    }

    // Throws what ReadText throws, and TextError for a line that holds no text. May be called once.
    std::wstring Read()
    {
        return mRead();
    }

private:
    std::string mName;
    bool mIsOneOfMany;
    std::function<std::wstring()> mRead;
};

// Hands every text on. What is thrown about one, also by iTake, is told on standard error; the returned status is then
// that of an unreadable text, and ExitTrouble where the system refused. Throws UsageError before anything is read.
int ForEachInput(const InputOptions& iOptions, const Streams& iStreams, const std::function<void(Input&)>& iTake);

// The same with the bags of the texts, and whether others come beside it.
int ForEachBag(const InputOptions& iOptions, const Streams& iStreams,
               const std::function<void(const Document&, bool)>& iTake);

} // namespace TalBaseTool

#endif
