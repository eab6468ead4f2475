// The libraries that the bag is compared with, each in a source of its own, which is built where the peer was found.

#ifndef BENCHMARKS_PEERS_PEERS_H
#define BENCHMARKS_PEERS_PEERS_H

#include "Subject.h"

namespace Bench
{

Library MakeTalBase();

// Written by hand for one kind of tree each: how fast the same work can be done without an interface around it.
Library MakeStringsBound(); // a vector of pairs of std::wstring for each record
Library MakePooledBound();  // the same with the strings and vectors of a document in a pool
Library MakeBlockBound();   // the texts of a document copied into one block
Library MakeViewsBound();   // nothing copied: views into the text

Library MakeRapidJson();
Library MakeRapidJsonInSitu();
Library MakePugiXml();
Library MakePugiXmlChar();
Library MakeRapidXml();
Library MakeNlohmann();
Library MakeNlohmannOrdered();
Library MakePropertyTree();
Library MakeJsonCpp();
Library MakeBoostJson();

} // namespace Bench

#endif
