// Makes a subject from a library's few own lines. Traits gives
//   Text, Document                    types; a Document is default-constructed and then filled
//   Name                              a name to look up, as the library takes it
//   static Text MakeText(const Record&)
//   static Name MakeName(const std::wstring&)
//   static void Parse(const Text&, Document&)
//   static void AddTotals(const Document&, Totals&)
//   static constexpr bool gCountsBytes  whether its characters are UTF-8 bytes
// and, where the library has it,
//   static Result Render(const Document&)      an owned text
//   static Text ToText(Result&&)               what Parse reads back
//   static Result LookUp(const Document&, const Name&)
//   static void Copy(const Document&, Document& oCopy)
//   static bool Equal(const Document&, const Document&)
//   static void Merge(const Document&, Document& oTarget)   the same however often it is repeated, unless
//   static constexpr bool gMergeGrows = true                each merge needs a target of its own
//   static void Clone(const Document&)         where a copy without nested records is something else than Copy
//   static void Prepare(const Text&, Document&) what the operations need beside the parsed document, untimed
//   static std::string ToBytes(const Document&) where its own characters are not UTF-8
//   static void FromBytes(const std::string&, Document&)
//   static Bytes Write(const Document&)
//   static void Read(const Bytes&, Document&)

#ifndef BENCHMARKS_PEERS_DOCUMENTSUBJECT_H
#define BENCHMARKS_PEERS_DOCUMENTSUBJECT_H

#include "Subject.h"

#include <deque>
#include <memory>

namespace Bench
{

template <class Traits>
class DocumentSubject : public Subject
{
    using Document = typename Traits::Document;

public:
    explicit DocumentSubject(const DataSet& iData) : mData(iData)
    {
        for (const Record& lRecord : iData.mDocuments)
        {
            mTexts.push_back(Traits::MakeText(lRecord));
            Traits::Parse(mTexts.back(), mDocuments.emplace_back());
            Traits::Parse(mTexts.back(), mEquals.emplace_back());
            if constexpr (requires { Traits::Prepare(mTexts.back(), mDocuments.back()); })
            {
                Traits::Prepare(mTexts.back(), mDocuments.back());
                Traits::Prepare(mTexts.back(), mEquals.back());
            }
        }
        for (const auto& [lName, lValue] : iData.mDocuments.front().mValues)
        {
            mHits.push_back(Traits::MakeName(lName));
            mMisses.push_back(Traits::MakeName(lName + L"X"));
            if (mHits.size() == gLookUps)
            {
                break;
            }
        }
    }

    Operation Make(OperationKind iKind) override
    {
        switch (iKind)
        {
        case OperationKind::Parse:
            return MakeParse();
        case OperationKind::Render:
            return MakeRender();
        case OperationKind::BytesIn:
            return MakeBytesIn();
        case OperationKind::BytesOut:
            return MakeBytesOut();
        case OperationKind::LookUpHit:
            return MakeLookUp(mHits);
        case OperationKind::LookUpMiss:
            return MakeLookUp(mMisses);
        case OperationKind::Clone:
            return MakeClone();
        case OperationKind::Copy:
            return MakeCopy();
        case OperationKind::Equality:
            return MakeEquality();
        case OperationKind::Merge:
            return MakeMerge();
        case OperationKind::StreamOut:
            return MakeStreamOut();
        case OperationKind::StreamIn:
            return MakeStreamIn();
        }
        return {};
    }

    bool Check(OperationKind iKind) override
    {
        const Operation lOperation = Make(iKind);
        if (lOperation.mPrepare)
        {
            lOperation.mPrepare(1);
        }
        lOperation.mRun(1);
        return CheckResult(iKind);
    }

private:
    static constexpr std::size_t gLookUps = 20; // names at most: look-ups are meant for small documents

    static constexpr bool gHasRender = requires(const Document& iDocument)
    {
        Traits::Render(iDocument);
    };
    static constexpr bool gHasBytes = requires(const Document& iDocument)
    {
        Traits::ToBytes(iDocument);
    };
    static constexpr bool gHasCopy = requires(Document & oDocument)
    {
        Traits::Copy(oDocument, oDocument);
    };
    static constexpr bool gHasEqual = requires(const Document& iDocument)
    {
        Traits::Equal(iDocument, iDocument);
    };
    static constexpr bool gHasMerge = requires(Document & oDocument)
    {
        Traits::Merge(oDocument, oDocument);
    };
    static constexpr bool gHasStream = requires(const Document& iDocument)
    {
        Traits::Write(iDocument);
    };
    static constexpr bool gMergeNeedsTargets = requires
    {
        Traits::gMergeGrows;
    };

    // An operation that is done for each document in turn.
    template <class Step>
    Operation ForEach(Step iStep)
    {
        const auto lRun = [this, iStep](std::size_t iTimes) {
            for (std::size_t lTime = 0; lTime < iTimes; ++lTime)
            {
                for (std::size_t lIndex = 0; lIndex < mDocuments.size(); ++lIndex)
                {
                    iStep(lIndex);
                }
            }
        };
        return {nullptr, lRun, mData.mUnits};
    }

    Operation MakeParse()
    {
        return ForEach([this](std::size_t iIndex) {
            Document lDocument;
            Traits::Parse(mTexts[iIndex], lDocument);
            Keep(lDocument);
        });
    }

    Operation MakeRender()
    {
        if constexpr (gHasRender)
        {
            return ForEach([this](std::size_t iIndex) { Keep(Traits::Render(mDocuments[iIndex])); });
        }
        return {};
    }

    Operation MakeBytesIn()
    {
        if constexpr (gHasBytes)
        {
            std::vector<std::string> lBytes;
            for (const Document& lDocument : mDocuments)
            {
                lBytes.push_back(Traits::ToBytes(lDocument));
            }
            return ForEach([lBytes = std::move(lBytes)](std::size_t iIndex) {
                Document lDocument;
                Traits::FromBytes(lBytes[iIndex], lDocument);
                Keep(lDocument);
            });
        }
        return Traits::gCountsBytes ? MakeParse() : Operation();
    }

    Operation MakeBytesOut()
    {
        if constexpr (gHasBytes)
        {
            return ForEach([this](std::size_t iIndex) { Keep(Traits::ToBytes(mDocuments[iIndex])); });
        }
        return Traits::gCountsBytes ? MakeRender() : Operation();
    }

    Operation MakeLookUp(const std::vector<typename Traits::Name>& iNames)
    {
        const auto lRun = [this, &iNames](std::size_t iTimes) {
            for (std::size_t lTime = 0; lTime < iTimes; ++lTime)
            {
                for (const typename Traits::Name& lName : iNames)
                {
                    Keep(Traits::LookUp(mDocuments.front(), lName));
                }
            }
        };
        return {nullptr, lRun, iNames.size()};
    }

    Operation MakeClone()
    {
        if constexpr (requires { Traits::Clone(mDocuments.front()); })
        {
            return ForEach([this](std::size_t iIndex) { Traits::Clone(mDocuments[iIndex]); });
        }
        else
        {
            return MakeCopy();
        }
    }

    Operation MakeCopy()
    {
        if constexpr (gHasCopy)
        {
            return ForEach([this](std::size_t iIndex) {
                Document lCopy;
                Traits::Copy(mDocuments[iIndex], lCopy);
                Keep(lCopy);
            });
        }
        return {};
    }

    Operation MakeEquality()
    {
        if constexpr (gHasEqual)
        {
            return ForEach([this](std::size_t iIndex) { Keep(Traits::Equal(mDocuments[iIndex], mEquals[iIndex])); });
        }
        return {};
    }

    Operation MakeMerge()
    {
        if constexpr (gHasMerge && gMergeNeedsTargets)
        {
            const auto lPrepare = [this](std::size_t iTimes) {
                mTargets.clear();
                for (std::size_t lTarget = 0; lTarget < iTimes * mDocuments.size(); ++lTarget)
                {
                    Traits::Copy(mDocuments[lTarget % mDocuments.size()], mTargets.emplace_back());
                }
            };
            const auto lRun = [this](std::size_t iTimes) {
                for (std::size_t lTarget = 0; lTarget < iTimes * mDocuments.size(); ++lTarget)
                {
                    Traits::Merge(mDocuments[lTarget % mDocuments.size()], mTargets[lTarget]);
                }
            };
            return {lPrepare, lRun, mData.mUnits};
        }
        else if constexpr (gHasMerge)
        {
            return ForEach([this](std::size_t iIndex) { Traits::Merge(mDocuments[iIndex], mEquals[iIndex]); });
        }
        return {};
    }

    Operation MakeStreamOut()
    {
        if constexpr (gHasStream)
        {
            return ForEach([this](std::size_t iIndex) { Keep(Traits::Write(mDocuments[iIndex])); });
        }
        return {};
    }

    Operation MakeStreamIn()
    {
        if constexpr (gHasStream)
        {
            std::vector<decltype(Traits::Write(mDocuments.front()))> lBytes;
            for (const Document& lDocument : mDocuments)
            {
                lBytes.push_back(Traits::Write(lDocument));
            }
            return ForEach([lBytes = std::move(lBytes)](std::size_t iIndex) {
                Document lDocument;
                Traits::Read(lBytes[iIndex], lDocument);
                Keep(lDocument);
            });
        }
        return {};
    }

    bool HasContent(const Document& iDocument, std::size_t iIndex) const
    {
        Totals lTotals;
        Traits::AddTotals(iDocument, lTotals);
        return lTotals == CountTotals(mData.mDocuments[iIndex], Traits::gCountsBytes);
    }

    bool CheckDocument(OperationKind iKind, std::size_t iIndex)
    {
        Document lResult;
        switch (iKind)
        {
        case OperationKind::Parse:
            return HasContent(mDocuments[iIndex], iIndex);
        case OperationKind::Render:
            if constexpr (gHasRender)
            {
                const typename Traits::Text lText = Traits::ToText(Traits::Render(mDocuments[iIndex]));
                Traits::Parse(lText, lResult);
                return HasContent(lResult, iIndex);
            }
            break;
        case OperationKind::BytesIn:
        case OperationKind::BytesOut:
            if constexpr (gHasBytes)
            {
                Traits::FromBytes(Traits::ToBytes(mDocuments[iIndex]), lResult);
                return HasContent(lResult, iIndex);
            }
            return CheckDocument(iKind == OperationKind::BytesIn ? OperationKind::Parse : OperationKind::Render,
                                 iIndex);
        case OperationKind::Clone:
        case OperationKind::Copy:
            if constexpr (gHasCopy)
            {
                Traits::Copy(mDocuments[iIndex], lResult);
                return HasContent(lResult, iIndex);
            }
            break;
        case OperationKind::Equality:
            if constexpr (gHasEqual)
            {
                return Traits::Equal(mDocuments[iIndex], mEquals[iIndex]);
            }
            break;
        case OperationKind::Merge:
            return HasContent(gMergeNeedsTargets ? mTargets[iIndex] : mEquals[iIndex], iIndex);
        case OperationKind::StreamOut:
        case OperationKind::StreamIn:
            if constexpr (gHasStream)
            {
                Traits::Read(Traits::Write(mDocuments[iIndex]), lResult);
                return HasContent(lResult, iIndex);
            }
            break;
        default:
            break;
        }
        return false;
    }

    template <class Result>
    static std::size_t CountCharacters(const Result& iText)
    {
        if constexpr (requires { iText.size(); })
        {
            return iText.size();
        }
        else
        {
            return iText.GetLength();
        }
    }

    bool CheckLookUps()
    {
        Totals lExpected;
        for (std::size_t lIndex = 0; lIndex < mHits.size(); ++lIndex)
        {
            lExpected.mCharacters += mData.mDocuments.front().mValues[lIndex].second.size();
        }
        Totals lFound;
        for (std::size_t lIndex = 0; lIndex < mHits.size(); ++lIndex)
        {
            lFound.mCharacters += CountCharacters(Traits::LookUp(mDocuments.front(), mHits[lIndex]));
            lFound.mCharacters += CountCharacters(Traits::LookUp(mDocuments.front(), mMisses[lIndex]));
        }
        return lFound == lExpected;
    }

    bool CheckResult(OperationKind iKind)
    {
        if (iKind == OperationKind::LookUpHit || iKind == OperationKind::LookUpMiss)
        {
            return CheckLookUps();
        }
        for (std::size_t lIndex = 0; lIndex < mDocuments.size(); ++lIndex)
        {
            if (!CheckDocument(iKind, lIndex))
            {
                return false;
            }
        }
        return true;
    }

    const DataSet& mData;
    std::deque<typename Traits::Text> mTexts; // documents may point into these
    std::deque<Document> mDocuments;
    std::deque<Document> mEquals;
    std::deque<Document> mTargets;
    std::vector<typename Traits::Name> mHits;
    std::vector<typename Traits::Name> mMisses;
};

template <class Traits>
Library MakeLibrary(const char* ipName, const std::string& iVersion = {})
{
    return {ipName, iVersion, [](const DataSet& iData) { return std::make_unique<DocumentSubject<Traits>>(iData); }};
}

} // namespace Bench

#endif
