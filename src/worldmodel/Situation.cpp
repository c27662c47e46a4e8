#include "worldmodel/Situation.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "config/ConfigFile.h"
#include "worldmodel/SayAlphabet.h"

namespace {

using Mode = RCC_PlayMode::Mode;

/// What a word of the referee is to the program when it is ours, and when it is theirs or nobody's.
struct PlayModePair {
    Mode word;
    PlayMode ours;
    PlayMode theirs;
};

// clang-format off
constexpr std::array PLAY_MODES = {
    PlayModePair{Mode::none,                PM_NONE,                     PM_NONE},
    PlayModePair{Mode::beforeKickOff,       PM_BEFORE_KICK_OFF,          PM_BEFORE_KICK_OFF},
    PlayModePair{Mode::timeOver,            PM_TIME_OVER,                PM_TIME_OVER},
    PlayModePair{Mode::playOn,              PM_PLAY_ON,                  PM_PLAY_ON},
    PlayModePair{Mode::kickOff,             PM_OUR_KICK_OFF,             PM_THEIR_KICK_OFF},
    PlayModePair{Mode::kickIn,              PM_OUR_KICK_IN,              PM_THEIR_KICK_IN},
    PlayModePair{Mode::freeKick,            PM_OUR_FREE_KICK,            PM_THEIR_FREE_KICK},
    PlayModePair{Mode::cornerKick,          PM_OUR_CORNER_KICK,          PM_THEIR_CORNER_KICK},
    PlayModePair{Mode::goalKick,            PM_OUR_GOAL_KICK,            PM_THEIR_GOAL_KICK},
    PlayModePair{Mode::goal,                PM_OUR_GOAL,                 PM_THEIR_GOAL},
    PlayModePair{Mode::dropBall,            PM_DROP_BALL,                PM_DROP_BALL},
    PlayModePair{Mode::offside,             PM_OUR_OFFSIDE,              PM_THEIR_OFFSIDE},
    PlayModePair{Mode::penaltyKick,         PM_OUR_PENALTY_KICK,         PM_THEIR_PENALTY_KICK},
    PlayModePair{Mode::firstHalfOver,       PM_FIRST_HALF_OVER,          PM_FIRST_HALF_OVER},
    PlayModePair{Mode::pause,               PM_PAUSE,                    PM_PAUSE},
    PlayModePair{Mode::humanJudge,          PM_HUMAN_JUDGE,              PM_HUMAN_JUDGE},
    PlayModePair{Mode::foulCharge,          PM_OUR_FOUL_CHARGE,          PM_THEIR_FOUL_CHARGE},
    PlayModePair{Mode::foulPush,            PM_OUR_FOUL_PUSH,            PM_THEIR_FOUL_PUSH},
    PlayModePair{Mode::foulMultipleAttack,  PM_OUR_FOUL_MULTIPLE_ATTACK, PM_THEIR_FOUL_MULTIPLE_ATTACK},
    PlayModePair{Mode::foulBallout,         PM_OUR_FOUL_BALLOUT,         PM_THEIR_FOUL_BALLOUT},
    PlayModePair{Mode::backPass,            PM_OUR_BACK_PASS,            PM_THEIR_BACK_PASS},
    PlayModePair{Mode::timeUp,              PM_TIME_UP,                  PM_TIME_UP},
    PlayModePair{Mode::timeUpWithoutATeam,  PM_TIME_UP_WITHOUT_A_TEAM,   PM_TIME_UP_WITHOUT_A_TEAM},
    PlayModePair{Mode::timeExtended,        PM_TIME_EXTENDED,            PM_TIME_EXTENDED},
    PlayModePair{Mode::halfTime,            PM_HALF_TIME,                PM_HALF_TIME},
    PlayModePair{Mode::goalieCatchBall,     PM_OUR_GOALIE_CATCH,         PM_THEIR_GOALIE_CATCH},
    PlayModePair{Mode::goalWithScore,       PM_OUR_GOAL_SCORED,          PM_THEIR_GOAL_SCORED},
};
// clang-format on

constexpr std::size_t REPORT_LENGTH = 9;
constexpr float VELOCITY_STEPS = 20.0F; ///< a report counts velocities in twentieths

/// The value of one sign and one symbol of a ball report.
float decode(std::string_view report, std::size_t sign) {
    float const magnitude = SayAlphabet::valueOf(report[sign + 1]);
    return report[sign] == 'y' ? -magnitude : magnitude;
}

} // namespace

Situation::Situation() {
    myTeam.players.reserve(RCC_Visual::MAX_OBJECTS + 1);
    theirTeam.players.reserve(RCC_Visual::MAX_OBJECTS);
    unknownPlayers.reserve(RCC_Visual::MAX_OBJECTS);
    myTeam.players.emplace_back();
}

void Situation::setPlayMode(RCC_PlayMode const& mode) {
    auto const* const pair = std::ranges::find(PLAY_MODES, mode.mode, &PlayModePair::word);
    if (pair != PLAY_MODES.end()) playMode = mode.side == 1 ? pair->ours : pair->theirs;
}

void Situation::integratePlayerAudio(RCC_PlayerAudio const& audio) {
    std::string_view const report = audio.text.view();
    if (report.size() < REPORT_LENGTH) return; // somebody else's
    if (ConfigFile::sayID.empty() || report[0] != ConfigFile::sayID[0]) return;

    Vector2D const saidPosition(decode(report, 1), decode(report, 3), CARTESIAN);
    Vector2D const saidVelocity(decode(report, 5) / VELOCITY_STEPS,
                                decode(report, 7) / VELOCITY_STEPS, CARTESIAN);
    if (saidPosition.x == UNDEFINED_FLOAT || saidPosition.y == UNDEFINED_FLOAT) return;

    if (currentTime > ballSeenTime) {
        ball.position = saidPosition;
        heardBallTime = audio.time;
    }
    if (currentTime - ballVelocitySeenTime < 1) return;
    ball.velocity = saidVelocity;
    ball.position = ball.rollingPosition(1);
    heardBallVelocityTime = audio.time;
}
