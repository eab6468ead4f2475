// A read stream that answers from a script of any of the primitives, notes what it was asked and in what state the
// caller's variable came in, and can fail, or leave the variable alone, wherever the script says so.

#ifndef TESTS_SUPPORT_SCRIPTEDSTREAM_H
#define TESTS_SUPPORT_SCRIPTEDSTREAM_H

#include "QSerialization/DataStream.h"

#include "Tests/Support/CallLog.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Support
{

// The variable stays as it came in; a string reads as the empty one.
struct Untouched
{
};

// The stream throws a StreamFailure.
struct Failing
{
};

// What the stream answers to one primitive.
class Answer
{
public:
    enum class Kind
    {
        Flag,
        Number32,
        Number64,
        Text,
        Nothing,
        Failure
    };

    Answer(bool iValue);
    Answer(unsigned int iValue);
    Answer(unsigned long iValue);
    Answer(const wchar_t* ipValue);
    Answer(Untouched);
    Answer(Failing);

    Kind mKind;
    unsigned long mNumber = 0;
    std::wstring mText;
};

// Notes L"stream.ReadBool(false)", L"stream.ReadUInt32(0)", L"stream.ReadUInt64(0)", each with the value that came in,
// or L"stream.ReadWString", and then gives the next answer. Asked beyond the end of the script it throws a
// StreamFailure; asked for another kind than the script has next, it fails the test as well.
class AnsweringReadStream : public QSerialization::ReadDataStream
{
public:
    AnsweringReadStream(std::vector<Answer> iScript, CallLog& oLog);

    void ReadBool(bool& oValue) override;
    void ReadUInt32(unsigned int& oValue) override;
    void ReadUInt64(unsigned long& oValue) override;
    QBase::ReturnWString ReadWString() override;

    // Returns how many answers nobody has asked for.
    std::size_t GetRemaining() const;

private:
    const Answer& hNext(Answer::Kind iKind);

    std::vector<Answer> mScript;
    Recorder mRecorder;
    std::size_t mAsked = 0;
};

} // namespace Support

#endif
