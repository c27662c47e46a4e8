#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "parser/RCC_Parameters.h"

/// The parameters of the match as the server sent them: zero until then, real values narrowed to
/// float. All state is static and constantly initialised, so that the constants of other classes
/// may be references to it.
///
/// Written by the main thread when it integrates the messages, just after connecting, and read by
/// it later on.
class Configuration {
public:
    // --- Server parameters, in the order in which they are printed ---

    // Pitch and players (metres, metres per cycle, rates per cycle)
    inline static float goalWidth = 0;
    inline static float inertiaMoment = 0;
    inline static float playerSize = 0;
    inline static float playerDecay = 0;
    inline static float playerRandom = 0;
    inline static float playerWeight = 0;
    inline static float playerSpeedMax = 0;
    inline static float playerAccelMax = 0;

    // Stamina; thresholds are fractions of staminaMax
    inline static float staminaMax = 0;
    inline static float staminaInc = 0;
    inline static float recoverInit = 0;
    inline static float recoverDecThr = 0;
    inline static float recoverMin = 0;
    inline static float recoverDec = 0;
    inline static float effortInit = 0;
    inline static float effortDecThr = 0;
    inline static float effortMin = 0;
    inline static float effortDec = 0;
    inline static float effortIncThr = 0;
    inline static float effortInc = 0;

    // Noise
    inline static float kickRandom = 0;
    inline static int teamActuatorNoise = 0;
    inline static float playerRandomFactorLeft = 0;
    inline static float playerRandomFactorRight = 0;
    inline static float kickRandFactorLeft = 0;
    inline static float kickRandFactorRight = 0;

    // Ball (metres, metres per cycle)
    inline static float ballSize = 0;
    inline static float ballDecay = 0;
    inline static float ballRandom = 0;
    inline static float ballWeight = 0;
    inline static float ballSpeedMax = 0;
    inline static float ballAccelMax = 0;

    // Commands (metres; moments and angles in degrees)
    inline static float dashPowerRate = 0;
    inline static float kickPowerRate = 0;
    inline static float kickableMargin = 0;
    inline static float controlRadius = 0;
    inline static float controlRadiusWidth = 0;
    inline static float maxPower = 0;
    inline static float minPower = 0;
    inline static float maxMoment = 0;
    inline static float minMoment = 0;
    inline static float maxNeckMoment = 0;
    inline static float minNeckMoment = 0;
    inline static float maxNeckAngle = 0;
    inline static float minNeckAngle = 0;
    inline static float visibleAngle = 0;
    inline static float visibleDist = 0;

    // Wind
    inline static float windDir = 0;
    inline static float windForce = 0;
    inline static float windAngle = 0;
    inline static float windRandom = 0;

    // Kicking and catching (metres)
    inline static float kickableArea = 0;
    inline static float catchAreaLength = 0;
    inline static float catchAreaWidth = 0;
    inline static float catchProbability = 0;
    inline static int goalieMaxMoves = 0;

    // Rules (metres)
    inline static float cornerKickMargin = 0;
    inline static float offsideArea = 0;

    // Wind switched off, wind chosen at random (0 or 1)
    inline static int winNo = 0;
    inline static int winRandom = 0;

    // Online coach
    inline static int sayCntMax = 0;
    inline static int sayCoachMsgSize = 0;
    inline static int clangWinSize = 0;
    inline static int clangDefineWin = 0;
    inline static int clangMetaWin = 0;
    inline static int clangAdviceWin = 0;
    inline static int clangInfoWin = 0;
    inline static int clangMessageDelay = 0;
    inline static int clangMessagesPerCycle = 0;

    // Timing: halfTime in cycles, the steps in milliseconds
    inline static int halfTime = 0;
    inline static int simulatorStep = 0;
    inline static int sendStep = 0;
    inline static int receiveStep = 0;
    inline static int senseBodyStep = 0;
    inline static int lcmStep = 0;

    // Hearing; message size in characters
    inline static int sayMsgSize = 0;
    inline static int hearMax = 0;
    inline static int hearInc = 0;
    inline static int hearDecay = 0;

    // Rules: cycles, a factor, switches (0 or 1)
    inline static int catchBanCycle = 0;
    inline static int slowDownFactor = 0;
    inline static int useOffside = 0;
    inline static int kickoffOffside = 0;

    // Distances of rules and hearing (metres)
    inline static float offsideKickMargin = 0;
    inline static float audioDist = 0;

    // Rounding of what is seen
    inline static float distQuantizeStep = 0;
    inline static float landQuantizeStep = 0;
    inline static float dirQuantizeStep = 0;
    inline static float distQuantizeStepLeft = 0;
    inline static float distQuantizeStepRight = 0;
    inline static float landQuantizeStepLeft = 0;
    inline static float landQuantizeStepRight = 0;
    inline static float dirQuantizeStepLeft = 0;
    inline static float dirQuantizeStepRight = 0;

    // Trainer, start score and full state
    inline static int coachMode = 0;
    inline static int coachWithRefMode = 0;
    inline static int oldHear = 0;
    inline static int coachSendVisualStep = 0;
    inline static int startGoalLeft = 0;
    inline static int startGoalRight = 0;
    inline static int fullstateLeft = 0;
    inline static int fullstateRight = 0;

    // Cycles until an untaken set piece becomes a drop ball
    inline static int dropBallTime = 0;

    // --- Player parameters, in the order of the message ---

    // Player types: how many there are, how many may be changed or shared
    inline static int playerTypes = 0;
    inline static int subsMax = 0;
    inline static int playerTypesMax = 0;

    // How far a type may differ from the default player
    inline static float playerSpeedMaxDeltaMin = 0;
    inline static float playerSpeedMaxDeltaMax = 0;
    inline static float staminaIncMaxDeltaFactor = 0;
    inline static float playerDecayDeltaMin = 0;
    inline static float playerDecayDeltaMax = 0;
    inline static float inertiaMomentDeltaFactor = 0;
    inline static float dashPowerRateDeltaMin = 0;
    inline static float dashPowerRateDeltaMax = 0;
    inline static float playerSizeDeltaFactor = 0;
    inline static float kickableMarginDeltaMin = 0;
    inline static float kickableMarginDeltaMax = 0;
    inline static float kickRandomDeltaFactor = 0;
    inline static float extraStaminaDeltaMin = 0;
    inline static float extraStaminaDeltaMax = 0;
    inline static float effortMaxDeltaFactor = 0;
    inline static float effortMinDeltaFactor = 0;

    // --- Player types ---

    /// In the order of arrival. The server sends 18; the limit keeps a peer that goes on sending
    /// from filling the memory.
    inline static std::vector<RCC_PlayerType> playerTypesV;
    static constexpr std::size_t MAX_PLAYER_TYPES = 64;

    /// Each overwrites every member of its kind.
    static void integrateServerParam(RCC_ServerParam const& p);
    static void integratePlayerParam(RCC_PlayerParam const& p);

    /// Appends, also when a type of the same id is there; drops t when MAX_PLAYER_TYPES are kept.
    static void addPlayerType(RCC_PlayerType const& t);

    /// One line on standard output: a blank, then each value followed by a blank, in the order
    /// above.
    static void printServerParam();
    static void printPlayerParam();

    /// Each stored type in the type's own form.
    static void printPlayerTypes(std::ostream& os);
};
