#pragma once

#include "link/CommandRecords.h"

/// The agent's latest sense_body report; all zero before the first. Written by the main thread when
/// it integrates one. The view is read by the sense thread too, which times the cycle by it, and
/// the counts by the SIGINT handler: those are shared.
class BodyInfo {
public:
    int time = 0;          ///< cycle of the report
    SharedInt viewQuality; ///< a ViewQuality
    SharedInt viewWidth;   ///< a ViewMode
    float stamina = 0;
    float effort = 0;
    float speedAmount = 0;    ///< metres per cycle, after decay
    float speedDirection = 0; ///< degrees, as reported
    /// Neck angle relative to the body in degrees, with the sign turned from the server's to the
    /// world model's.
    float headAngle = 0;
    /// Commands that the server has executed since the agent joined.
    ServerCommandCounters executed;

    virtual ~BodyInfo() = default;
};
