// What the commands are called, what their help says, and which options they have, in groups.

#ifndef TALBASETOOL_PROGRAM_COMMANDGROUPS_H
#define TALBASETOOL_PROGRAM_COMMANDGROUPS_H

#include "Program/CommandLine.h"

namespace TalBaseTool
{

void AddShow(CLI::App& oApp, ChosenCommand& oChosen);
void AddCheck(CLI::App& oApp, ChosenCommand& oChosen);
void AddDiff(CLI::App& oApp, ChosenCommand& oChosen);
void AddWindow(CLI::App& oApp, ChosenCommand& oChosen);
void AddGuid(CLI::App& oApp, ChosenCommand& oChosen);

void AddGet(CLI::App& oApp, ChosenCommand& oChosen);
void AddHas(CLI::App& oApp, ChosenCommand& oChosen);
void AddGrep(CLI::App& oApp, ChosenCommand& oChosen);
void AddList(CLI::App& oApp, ChosenCommand& oChosen);
void AddFromList(CLI::App& oApp, ChosenCommand& oChosen);

void AddSet(CLI::App& oApp, ChosenCommand& oChosen);
void AddEdit(CLI::App& oApp, ChosenCommand& oChosen);
void AddRemove(CLI::App& oApp, ChosenCommand& oChosen);
void AddMove(CLI::App& oApp, ChosenCommand& oChosen);
void AddEmbed(CLI::App& oApp, ChosenCommand& oChosen);
void AddMerge(CLI::App& oApp, ChosenCommand& oChosen);
void AddRedact(CLI::App& oApp, ChosenCommand& oChosen);
void AddDelimiters(CLI::App& oApp, ChosenCommand& oChosen);

void AddToJson(CLI::App& oApp, ChosenCommand& oChosen);
void AddFromJson(CLI::App& oApp, ChosenCommand& oChosen);

} // namespace TalBaseTool

#endif
