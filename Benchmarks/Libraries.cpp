#include "Peers/Peers.h"

namespace Bench
{

std::vector<Library> MakeLibraries()
{
    return {
        MakeTalBase(),   MakeViewsBound(),      MakeBlockBound(), MakePooledBound(), MakeStringsBound(),
#ifdef BENCHMARKS_HAS_RAPIDJSON
        MakeRapidJson(), MakeRapidJsonInSitu(),
#endif
#ifdef BENCHMARKS_HAS_PUGIXML
        MakePugiXml(),   MakePugiXmlChar(),
#endif
#ifdef BENCHMARKS_HAS_RAPIDXML
        MakeRapidXml(),
#endif
#ifdef BENCHMARKS_HAS_BOOST
        MakeBoostJson(), MakePropertyTree(),
#endif
#ifdef BENCHMARKS_HAS_NLOHMANN
        MakeNlohmann(),  MakeNlohmannOrdered(),
#endif
#ifdef BENCHMARKS_HAS_JSONCPP
        MakeJsonCpp(),
#endif
    };
}

const char* GetOperationName(OperationKind iKind)
{
    switch (iKind)
    {
    case OperationKind::Parse:
        return "parse";
    case OperationKind::Render:
        return "render";
    case OperationKind::BytesIn:
        return "bytes in";
    case OperationKind::BytesOut:
        return "bytes out";
    case OperationKind::LookUpHit:
        return "look-up hit";
    case OperationKind::LookUpMiss:
        return "look-up miss";
    case OperationKind::Clone:
        return "clone flat";
    case OperationKind::Copy:
        return "deep copy";
    case OperationKind::Equality:
        return "equality";
    case OperationKind::Merge:
        return "merge";
    case OperationKind::StreamOut:
        return "stream out";
    case OperationKind::StreamIn:
        return "stream in";
    }
    return "";
}

} // namespace Bench
