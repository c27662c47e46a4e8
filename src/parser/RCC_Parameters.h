#pragma once

#include <iosfwd>

/// The parameters of the match, in the order in which the server lists them. In the form with names
/// a parameter that the server leaves out is 0, except for the two that follow from others:
/// kickableArea and controlRadiusWidth.
struct RCC_ServerParam {
    // Pitch and players (metres, metres per cycle, rates per cycle)
    double goalWidth = 0;
    double inertiaMoment = 0;
    double playerSize = 0;
    double playerDecay = 0;
    double playerRandom = 0;
    double playerWeight = 0;
    double playerSpeedMax = 0;
    double playerAccelMax = 0;

    // Stamina; thresholds are fractions of staminaMax
    double staminaMax = 0;
    double staminaInc = 0;
    double recoverInit = 0;
    double recoverDecThr = 0;
    double recoverMin = 0;
    double recoverDec = 0;
    double effortInit = 0;
    double effortDecThr = 0;
    double effortMin = 0;
    double effortDec = 0;
    double effortIncThr = 0;
    double effortInc = 0;

    // Noise
    double kickRandom = 0;
    int teamActuatorNoise = 0;
    double playerRandomFactorLeft = 0;
    double playerRandomFactorRight = 0;
    double kickRandFactorLeft = 0;
    double kickRandFactorRight = 0;

    // Ball
    double ballSize = 0;
    double ballDecay = 0;
    double ballRandom = 0;
    double ballWeight = 0;
    double ballSpeedMax = 0;
    double ballAccelMax = 0;

    // Commands (metres; moments and angles in degrees)
    double dashPowerRate = 0;
    double kickPowerRate = 0;
    double kickableMargin = 0;
    double controlRadius = 0;
    double controlRadiusWidth = 0;
    double maxPower = 0;
    double minPower = 0;
    double maxMoment = 0;
    double minMoment = 0;
    double maxNeckMoment = 0;
    double minNeckMoment = 0;
    double maxNeckAngle = 0;
    double minNeckAngle = 0;
    double visibleAngle = 0;
    double visibleDist = 0;

    // Wind
    double windDir = 0;
    double windForce = 0;
    double windAngle = 0;
    double windRandom = 0;

    // Kicking and catching (metres)
    double kickableArea = 0;
    double catchAreaLength = 0;
    double catchAreaWidth = 0;
    double catchProbability = 0;
    int goalieMaxMoves = 0;

    // Rules (metres)
    double cornerKickMargin = 0;
    double offsideArea = 0;

    // Wind switched off, wind chosen at random (0 or 1)
    int winNo = 0;
    int winRandom = 0;

    // Online coach
    int sayCntMax = 0;
    int sayCoachMsgSize = 0;
    int clangWinSize = 0;
    int clangDefineWin = 0;
    int clangMetaWin = 0;
    int clangAdviceWin = 0;
    int clangInfoWin = 0;
    int clangMessageDelay = 0;
    int clangMessagesPerCycle = 0;

    // Timing: halfTime in cycles, the steps in milliseconds
    int halfTime = 0;
    int simulatorStep = 0;
    int sendStep = 0;
    int receiveStep = 0;
    int senseBodyStep = 0;
    int lcmStep = 0;

    // Hearing; message size in characters
    int sayMsgSize = 0;
    int hearMax = 0;
    int hearInc = 0;
    int hearDecay = 0;

    // Rules, in cycles, and switches (0 or 1)
    int catchBanCycle = 0;
    int slowDownFactor = 0;
    int useOffside = 0;
    int kickoffOffside = 0;

    // Distances of rules and hearing (metres)
    double offsideKickMargin = 0;
    double audioDist = 0;

    // Rounding of what is seen; -1 stands for a step that is not in force
    double distQuantizeStep = 0;
    double landQuantizeStep = 0;
    double dirQuantizeStep = 0;
    double distQuantizeStepLeft = 0;
    double distQuantizeStepRight = 0;
    double landQuantizeStepLeft = 0;
    double landQuantizeStepRight = 0;
    double dirQuantizeStepLeft = 0;
    double dirQuantizeStepRight = 0;

    // Trainer, start score and full state
    int coachMode = 0;
    int coachWithRefMode = 0;
    int oldHear = 0;
    int coachSendVisualStep = 0;
    int startGoalLeft = 0;
    int startGoalRight = 0;
    int fullstateLeft = 0;
    int fullstateRight = 0;

    // Cycles until an untaken set piece becomes a drop ball
    int dropBallTime = 0;
};

/// How many player types there are and how far they may differ from the default player.
struct RCC_PlayerParam {
    int playerTypes = 0;
    int subsMax = 0;
    int playerTypesMax = 0;
    double playerSpeedMaxDeltaMin = 0;
    double playerSpeedMaxDeltaMax = 0;
    double staminaIncMaxDeltaFactor = 0;
    double playerDecayDeltaMin = 0;
    double playerDecayDeltaMax = 0;
    double inertiaMomentDeltaFactor = 0;
    double dashPowerRateDeltaMin = 0;
    double dashPowerRateDeltaMax = 0;
    double playerSizeDeltaFactor = 0;
    double kickableMarginDeltaMin = 0;
    double kickableMarginDeltaMax = 0;
    double kickRandomDeltaFactor = 0;
    double extraStaminaDeltaMin = 0;
    double extraStaminaDeltaMax = 0;
    double effortMaxDeltaFactor = 0;
    double effortMinDeltaFactor = 0;
};

/// One of the player types; type 0 is the default player.
struct RCC_PlayerType {
    RCC_PlayerType() = default;
    RCC_PlayerType(RCC_PlayerType const&) = default;
    RCC_PlayerType& operator=(RCC_PlayerType const&) = default;
    virtual ~RCC_PlayerType() = default;

    int id = 0;
    double playerSpeedMax = 0;
    double staminaIncMax = 0;
    double playerDecay = 0;
    double inertiaMoment = 0;
    double dashPowerRate = 0;
    double playerSize = 0;
    double kickableMargin = 0;
    double kickRand = 0;
    double extraStamina = 0;
    double effortMax = 0;
    double effortMin = 0;

    /// One line: a blank, then each value followed by a blank, in the order above.
    virtual void print(std::ostream& os) const;
};
