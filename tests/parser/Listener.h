#pragma once

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "tests/parser/Rows.h"

/// What handlers were called with.
struct Log {
    int calls = 0;
    std::string row; ///< of the latest record
};

/// Keeps a copy of the latest record of one kind.
template <typename T>
struct Recorder : RCC_Handler<RCC_Pointer<T>> {
    Recorder(RCC_Parser::Handlers<T>& handlers, Log& common) : log(common) {
        handlers.push_back(this);
    }

    void handle(RCC_Pointer<T> const& record) override {
        last = *record;
        log.row = Row::of(last);
        ++log.calls;
    }

    Log& log;
    T last;
};

/// A parser of the team Alpha with a handler for every kind.
struct Listener {
    RCC_Parser parser{0, "Alpha", 0};
    Log log;
    Recorder<RCC_Visual> visual{parser.visualHandlers, log};
    Recorder<RCC_SenseBody> senseBody{parser.senseBodyHandlers, log};
    Recorder<RCC_RefAudio> refAudio{parser.refAudioHandlers, log};
    Recorder<RCC_SelfAudio> selfAudio{parser.selfAudioHandlers, log};
    Recorder<RCC_PlayerAudio> playerAudio{parser.playerAudioHandlers, log};
    Recorder<RCC_CoachAudio> coachAudio{parser.coachAudioHandlers, log};
    Recorder<RCC_Score> score{parser.scoreHandlers, log};
    Recorder<RCC_Substitution> substitution{parser.substitutionHandlers, log};
    Recorder<RCC_Error> error{parser.errorHandlers, log};
    Recorder<RCC_InitMsg> initMsg{parser.initMsgHandlers, log};
    Recorder<RCC_ServerParam> serverParam{parser.serverParamHandlers, log};
    Recorder<RCC_PlayerParam> playerParam{parser.playerParamHandlers, log};
    Recorder<RCC_PlayerType> playerType{parser.playerTypeHandlers, log};
    Recorder<RCC_FullState> fullState{parser.fullStateHandlers, log};

    /// The row of the record that the message has become: exactly one handler was called and the
    /// record returned, or neither.
    std::string heard(std::string_view message) {
        int const before = log.calls;
        RCC_Object* const record = parser.parse(RCC_String(message));
        RCC_Memory::remove(record);
        EXPECT_EQ(before + (record != nullptr ? 1 : 0), log.calls) << message;
        return record != nullptr ? log.row : "dropped";
    }
    bool hears(std::string_view message) { return heard(message) != "dropped"; }
};

/// A test of what a listener hears.
struct Listening : testing::Test, Listener {
    /// Refuses each part, put between before and after.
    void expectRefused(std::string const& before, std::vector<std::string> const& parts,
                       std::string const& after) {
        for (std::string const& part : parts) {
            std::string message(before);
            message.append(part).append(after);
            EXPECT_FALSE(hears(message)) << message;
        }
    }
};

/// " first first+1 ...", count numbers: with it, each value names its place in a message.
inline std::string numbersFrom(int first, int count) {
    std::string text;
    for (int i = first; i < first + count; ++i) {
        text.append(" ").append(std::to_string(i));
    }
    return text;
}
