// Streams that keep what is written as a list of primitives and play such a list back, and that can fail at a chosen
// primitive.

#ifndef TESTS_SUPPORT_RECORDINGSTREAMS_H
#define TESTS_SUPPORT_RECORDINGSTREAMS_H

#include "QSerialization/DataStream.h"

#include "Tests/Support/CallLog.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Support
{

// What a failing stream throws; no class of the library.
class StreamFailure : public std::runtime_error
{
public:
    StreamFailure() : std::runtime_error("the stream fails") {}
};

inline const std::size_t gNeverFails = static_cast<std::size_t>(-1);

// Notes each primitive as a call, L"stream.WriteWString(++++)"; the one numbered iFailAt, from 0, fails instead.
class RecordingWriteStream : public QSerialization::WriteDataStream
{
public:
    explicit RecordingWriteStream(CallLog& oLog, std::size_t iFailAt = gNeverFails)
        : mRecorder(oLog, L"stream"), mFailAt(iFailAt)
    {
    }

    void WriteWString(const wchar_t* ipText) override
    {
        hCount();
        mRecorder.Call(L"WriteWString", ipText);
    }

    void WriteBool(bool iFlag) override
    {
        hCount();
        mRecorder.Call(L"WriteBool", iFlag);
    }

    void WriteUInt32(unsigned int iNumber) override
    {
        hCount();
        mRecorder.Call(L"WriteUInt32", iNumber);
    }

    void WriteUInt64(unsigned long iNumber) override
    {
        hCount();
        mRecorder.Call(L"WriteUInt64", std::to_wstring(iNumber).c_str());
    }

private:
    void hCount()
    {
        if (mWritten++ == mFailAt)
        {
            throw StreamFailure();
        }
    }

    Recorder mRecorder;
    std::size_t mFailAt;
    std::size_t mWritten = 0;
};

// Gives out wide strings in order, and fails when they run out or something else is asked for.
class ScriptedReadStream : public QSerialization::ReadDataStream
{
public:
    explicit ScriptedReadStream(std::vector<std::wstring> iTexts) : mTexts(std::move(iTexts)) {}

    void ReadBool(bool&) override
    {
        throw StreamFailure();
    }

    void ReadUInt32(unsigned int&) override
    {
        throw StreamFailure();
    }

    void ReadUInt64(unsigned long&) override
    {
        throw StreamFailure();
    }

    QBase::ReturnWString ReadWString() override
    {
        if (mNext == mTexts.size())
        {
            throw StreamFailure();
        }
        return mTexts[mNext++].c_str();
    }

    std::size_t GetRemaining() const
    {
        return mTexts.size() - mNext;
    }

private:
    std::vector<std::wstring> mTexts;
    std::size_t mNext = 0;
};

} // namespace Support

#endif
