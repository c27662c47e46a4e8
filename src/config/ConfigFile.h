#pragma once

#include <string>

/// The player's own settings: compiled-in defaults, overridden by what "player.conf" names. The
/// sample "player.conf" at the top of the repository says what each one means, and in which unit.
///
/// Written only by parseConfigFile, which the main thread calls before it starts any other;
/// afterwards read from any thread, without a lock.
class ConfigFile {
public:
    // Who we are and where the match is
    inline static std::string teamname = "Tallowmere2002";
    inline static std::string serverHost = "localhost";
    inline static int serverPort = 6000;

    // When to send, as fractions of the cycle of 100 ms
    inline static double noSeeFraction = 0.5;
    inline static double firstHalfFraction = 0.7;
    inline static double lastHalfFraction = 0.8;

    // Skills: degrees, powers from 0 to 100, metres
    inline static double angleWhenToTurn = 8.0;
    inline static double dribbleKickPower = 30.0;
    inline static double stopBallPowerThr = 15.0;
    inline static double positioningTolerance = 3.0;

    // Behaviours: metres, metres per cycle, cycles, powers, degrees
    inline static double dribbleAreaX = 15.0;
    inline static double passAreaX = 0.0;
    inline static double passEndSpeed = 1.2;
    inline static double passMinDelay = 35.0;
    inline static double passScanDelay = 20.0;
    inline static double walkPower = 50.0;
    inline static double stopBallAngleTolerance = 60.0;
    inline static double stopBallVelocityThreshold = 1.0;
    inline static double stopBallSectorFrom = -120.0;
    inline static double stopBallSectorTo = 120.0;

    /// Its first character marks the team's own say messages.
    inline static std::string sayID = "v";

    /// Reads the file at path into the members above. False, in silence, when it cannot be read;
    /// false, with a message on standard error, when it has an error: reading stops there, and what
    /// stood before the error stays in force. The switches write a trace of the scanner (a line a
    /// token) and of the parser to standard error.
    static bool parseConfigFile(char const* path, bool scannerDebug, bool parserDebug);
};
