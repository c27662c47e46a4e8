#pragma once

#include <fstream>
#include <string_view>

class WorldModel;

/// Writes what an agent believes, one record a line, for a viewer to lay over what was true. A
/// record is `<cycle> <shirt number> 9 <belief>`, where the belief is one of
///
///   self (x,y) body head       itself; the first record of each decision
///   ball (x,y) (vx,vy)         left out while the ball is unknown
///   mate N (x,y)               players of the last see; N is 0 for a number not recognised
///   opponent N (x,y)
///   unknown 0 (x,y)            of a team not recognised
///   case WORD                  the case of the behaviour that was taken
///
/// Metres and metres per cycle in the agent's own frame, own goal at negative x, y down; degrees as
/// the world model keeps them: 0 along x, 90 up the picture.
///
/// Created in the main thread by `PlanLogs`. A file that cannot be written makes every call do
/// nothing.
class BeliefLogger {
public:
    /// Opens "./agentplanlog/beliefs<shirt number>.log", emptied. Takes the number from the world
    /// model, so not before the server has told it.
    explicit BeliefLogger(WorldModel const& world);

    /// Appends the records of the present decision and flushes.
    void write(std::string_view takenCase);

private:
    std::ostream& startRecord();

    WorldModel const& world_;
    int number_;
    std::ofstream file_;
};
