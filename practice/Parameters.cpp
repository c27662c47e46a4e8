#include "practice/Parameters.h"

#include "practice/Text.h"

namespace practice {

std::string serverParamMessage(int halfCycles) {
    std::string out = "(server_param";
    for (Parameter const& p : PARAMETERS) {
        appendText(out, ' ', p.name == "halfTime" ? halfCycles : p.value);
    }
    return out + ")";
}

/// One type only, which all eleven may have; the other values bound what a second type could be.
std::string playerParamMessage() {
    return "(player_param 1 3 11 0 0 0 -0.1 0.1 25 0 0 -100 -0.1 0.1 1 0 50 -0.004 -0.004)";
}

std::string playerTypeMessage() {
    return text("(player_type 0 ", parameter("playerSpeedMax"), ' ', parameter("staminaInc"), ' ',
                parameter("playerDecay"), ' ', parameter("inertiaMoment"), ' ',
                parameter("dashPowerRate"), ' ', PLAYER_SIZE, ' ', parameter("kickableMargin"), ' ',
                parameter("kickRandom"), ' ', EXTRA_STAMINA, ' ', parameter("effortInit"), ' ',
                parameter("effortMin"), ')');
}

} // namespace practice
