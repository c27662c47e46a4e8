#include "worldmodel/Myself.h"

#include <algorithm>
#include <cmath>

#include "physics/Kinematics.h"

Vector2D Myself::predictedPosition(int cycles, float dashPower, float turnAngle) const {
    float stamina = bodyInfo.stamina;
    float effort = bodyInfo.effort;
    float recovery = RECOVER_INIT; // not measured: the server does not tell it
    return predictedWay(cycles, turnAngle, [&] {
        float const power = Kinematics::affordableDash(dashPower, stamina);
        float const sign = power < 0.0F ? -1.0F : 1.0F;
        float const applied = std::abs(power) > stamina ? sign * stamina : power;
        float const push = applied * DASH_POWER_RATE * effort;
        updatePredictedStamina(stamina, effort, recovery, power);
        return push;
    });
}

void Myself::updatePredictedStamina(float& stamina, float& effort, float& recovery,
                                    float dashPower) const { // NOLINT(*-to-static): published so
    stamina -= dashPower > 0.0F ? dashPower : 2.0F * dashPower;
    stamina = std::max(stamina, 0.0F);
    // All thresholds look at the stamina as it is here.
    if (stamina <= STAMINA_MAX * RECOVER_DEC_THR && recovery > RECOVER_MIN) {
        recovery -= RECOVER_DEC;
    }
    if (stamina <= STAMINA_MAX * EFFORT_DEC_THR && effort > EFFORT_MIN) effort -= EFFORT_DEC;
    if (stamina >= STAMINA_MAX * EFFORT_INC_THR && effort < EFFORT_INIT) {
        effort = std::min(effort + EFFORT_INC, EFFORT_INIT);
    }
    stamina = std::min(stamina + STAMINA_INC * recovery, STAMINA_MAX);
}
