#include "Tests/Support/ScriptedStream.h"

#include "Tests/Support/RecordingStreams.h"

#include <gtest/gtest.h>

#include <utility>

namespace Support
{

Answer::Answer(bool iValue) : mKind(Kind::Flag), mNumber(iValue ? 1 : 0) {}

Answer::Answer(unsigned int iValue) : mKind(Kind::Number32), mNumber(iValue) {}

Answer::Answer(unsigned long iValue) : mKind(Kind::Number64), mNumber(iValue) {}

Answer::Answer(const wchar_t* ipValue) : mKind(Kind::Text), mText(ipValue) {}

Answer::Answer(Untouched) : mKind(Kind::Nothing) {}

Answer::Answer(Failing) : mKind(Kind::Failure) {}

AnsweringReadStream::AnsweringReadStream(std::vector<Answer> iScript, CallLog& oLog)
    : mScript(std::move(iScript)), mRecorder(oLog, L"stream")
{
}

void AnsweringReadStream::ReadBool(bool& oValue)
{
    mRecorder.Call(L"ReadBool", oValue);
    const Answer& lAnswer = hNext(Answer::Kind::Flag);
    if (lAnswer.mKind == Answer::Kind::Flag)
    {
        oValue = lAnswer.mNumber != 0;
    }
}

void AnsweringReadStream::ReadUInt32(unsigned int& oValue)
{
    mRecorder.Call(L"ReadUInt32", oValue);
    const Answer& lAnswer = hNext(Answer::Kind::Number32);
    if (lAnswer.mKind == Answer::Kind::Number32)
    {
        oValue = static_cast<unsigned int>(lAnswer.mNumber);
    }
}

void AnsweringReadStream::ReadUInt64(unsigned long& oValue)
{
    mRecorder.Call(L"ReadUInt64", std::to_wstring(oValue).c_str());
    const Answer& lAnswer = hNext(Answer::Kind::Number64);
    if (lAnswer.mKind == Answer::Kind::Number64)
    {
        oValue = lAnswer.mNumber;
    }
}

QBase::ReturnWString AnsweringReadStream::ReadWString()
{
    mRecorder.Call(L"ReadWString");
    return hNext(Answer::Kind::Text).mText.c_str();
}

std::size_t AnsweringReadStream::GetRemaining() const
{
    return mAsked < mScript.size() ? mScript.size() - mAsked : 0;
}

const Answer& AnsweringReadStream::hNext(Answer::Kind iKind)
{
    const std::size_t lPosition = mAsked++;
    if (lPosition >= mScript.size() || mScript[lPosition].mKind == Answer::Kind::Failure)
    {
        throw StreamFailure();
    }
    const Answer& lAnswer = mScript[lPosition];
    if (lAnswer.mKind != iKind && lAnswer.mKind != Answer::Kind::Nothing)
    {
        ADD_FAILURE() << "primitive " << mAsked << " is of another kind than the script has there";
        throw StreamFailure();
    }
    return lAnswer;
}

} // namespace Support
